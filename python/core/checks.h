#pragma once

/// Preconditions that the library does not check, as functions for the tables of functions.

#include <string>
#include <vector>

#include "errors.h"
#include "records.h"

namespace binding {

/// Throws py::value_error unless the condition holds.
inline void require(bool condition,
                    const char* argument,
                    const std::string& expected,
                    const std::string& found) {
  if (!condition) {
    failValue(Name{argument}, expected, found);
  }
}

inline void requireAbove0(double value, const char* argument) {
  require(value > 0.0, argument, "a number above 0", std::to_string(value));
}

/// That `nPointIdx` of each sample is its index.
void requireIndexStamps(const STesk3DPosition* line, std::size_t size);
/// That no line is shorter than the first.
void requireNoShorterLine(const std::vector<std::size_t>& sizes, const char* argument);
std::vector<std::size_t> lineSizes(const STesk3DLaserLine* lines, int count);

template <typename T>
std::vector<std::size_t> lineSizes(const std::vector<std::vector<T>>& lines) {
  std::vector<std::size_t> sizes;
  for (const auto& line : lines) {
    sizes.push_back(line.size());
  }
  return sizes;
}

}  // namespace binding
