#pragma once

/// The roles of the parameters of exported functions, and what every argument has in common.

#include <type_traits>

#include "errors.h"

namespace binding {

/// Only read.
struct In {
  static constexpr const char* text = "read";
};
/// The caller's object is changed.
struct InOut {
  static constexpr const char* text = "changed";
};
/// Returned; a list that the function appends to can be given by keyword.
struct Out {
  static constexpr const char* text = "returned";
};
/// Read and changed, and returned as a new array since its size changes.
struct Changed {
  static constexpr const char* text = "read and returned";
};
/// Trees: returned, and the caller's list is continued if given by keyword.
struct Grown {
  static constexpr const char* text = "continued and returned";
};
/// The number of samples or lines to which the preceding parameter points.
struct Count {
  static constexpr const char* text = "count";
};
/// A pointer to the record of one line, which is changed.
struct OneLine : InOut {};
/// An image of a `CV_` type, only read.
template <int type>
struct Image : In {};
/// The same, changed in place.
template <int type>
struct ChangedImage : InOut {};
/// An image of zeros and ones of any type, only read.
struct BinaryImage : In {};

/// The object given for a parameter; null for one that is not given.
struct Source {
  py::handle value;
  Name name;
};

enum class Given { kNever, kPosition, kKeyword };

/// The base of all: not given, not returned, and without work on samples.
struct ArgumentBase {
  static constexpr Given given = Given::kPosition;
  static constexpr bool isReturned = false;
  static constexpr bool visitsSamples = false;
  void finish() {}
};

/// Not given, and returned.
struct ResultBase : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
};

template <typename Role, typename P, typename = void>
struct Argument;

template <typename T>
using Bare = std::remove_cv_t<std::remove_pointer_t<std::remove_reference_t<T>>>;
template <typename T>
constexpr bool isNumber = std::is_arithmetic_v<T>;

}  // namespace binding
