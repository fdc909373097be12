#pragma once

#include <cstddef>
#include <vector>

/// Non-maximum suppression along a line.
namespace scanline::detail {

/// Extrema of one kind, in line order.
struct Candidates {
  explicit Candidates(std::size_t count) : y(count), strength(count) {}

  [[nodiscard]] int count() const {
    return static_cast<int>(y.size());
  }

  std::vector<double> y;
  std::vector<double> strength;  ///< NaN in the last one at most.
};

/// The candidates that no stronger one in their window suppresses, by their indices. The window
/// extends in both directions up to the first candidate farther away in y, with a squared distance
/// above `windowSquared`.
std::vector<int> findUnsuppressed(const Candidates& candidates, double windowSquared);

/// The same for some of the candidates only. The others still suppress and still end windows.
std::vector<int> findUnsuppressed(const Candidates& candidates,
                                  double windowSquared,
                                  std::vector<int> tested);

}  // namespace scanline::detail
