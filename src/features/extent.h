#pragma once

#include <limits>

namespace scanline::detail {

/// The extent of some values, which shows whether any of them is far from a given one. NaN is left
/// out.
struct Extent {
  double min = std::numeric_limits<double>::infinity();
  double max = -std::numeric_limits<double>::infinity();

  void take(double value) {
    min = value < min ? value : min;
    max = value > max ? value : max;
  }
  void take(const Extent& other) {
    min = other.min < min ? other.min : min;
    max = other.max > max ? other.max : max;
  }

  /// Whether one of the values passes `isFar`, which must pass all values beyond one that it
  /// passes.
  template <typename Test>
  [[nodiscard]] bool anyFar(Test isFar) const {
    return min <= max && (isFar(min) || isFar(max));
  }
};

}  // namespace scanline::detail
