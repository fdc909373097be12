#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace program {

/// What the header of an NPY file states.
struct NpyHeader {
  bool isBigEndian = false;
  char kind = 'f';  ///< 'f', 'i' or 'u'.
  std::size_t itemSize = 8;
  std::vector<std::uint64_t> shape;  ///< Two sizes, or three of which the last is 3.
  std::uint64_t dataAt = 0;
};

/// Reads the header of an NPY file that can be a scan, and checks its shape against the length of
/// the file. @throws Failure (badInput)
NpyHeader readNpyHeader(const std::string& path);

}  // namespace program
