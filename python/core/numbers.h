#pragma once

/// Numbers from and to Python.

#include <cstdint>
#include <limits>
#include <string>
#include <type_traits>

#include "errors.h"

namespace binding {

double realFrom(py::handle value, const Name& name);
bool boolFrom(py::handle value, const Name& name);
/// An integer of a range; a float is refused, even a whole one.
std::int64_t integerFrom(py::handle value, const Name& name, std::int64_t low, std::int64_t high);
std::uint64_t wordFrom(py::handle value, const Name& name);

template <typename T>
T numberFrom(py::handle value, const Name& name) {
  if constexpr (std::is_same_v<T, bool>) {
    return boolFrom(value, name);
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<T>(realFrom(value, name));
  } else if constexpr (sizeof(T) == sizeof(std::uint64_t)) {
    return wordFrom(value, name);
  } else {
    using Limits = std::numeric_limits<T>;
    return static_cast<T>(integerFrom(value, name, Limits::min(), Limits::max()));
  }
}

/// The name that a stub gives to a number.
template <typename T>
constexpr const char* numberAnnotation() {
  return std::is_same_v<T, bool> ? "bool" : std::is_floating_point_v<T> ? "float" : "int";
}

}  // namespace binding
