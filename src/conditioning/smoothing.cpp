#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include <scanline/conditioning.h>
#include "records/sample_rules.h"

namespace {

using scanline::detail::isAboveNoSample;

/// As many windows are summed side by side; their sums stay in the nearest cache.
constexpr std::size_t kBlock = 256;
using Sums = std::array<double, kBlock>;

/// Sums window i over the `width` heights from `z + i` on, for the `count` windows of a block. Each
/// is added up one by one, from its first height to its last.
void sumWindows(const double* z, std::size_t width, std::size_t count, Sums& sums) {
  std::copy_n(z, count, sums.begin());
  // Two heights at a time, as the width is odd, halve the traffic of the sums.
  for (std::size_t k = 1; k < width; k += 2) {
    for (std::size_t i = 0; i < count; ++i) {
      sums[i] = sums[i] + z[i + k] + z[i + k + 1];
    }
  }
}

/// The moving mean, run over one piece of a line after the other with the same working storage.
class MovingMean {
 public:
  /// Allocates all that pieces of up to `longest` samples need.
  MovingMean(int smoothWin, std::size_t longest) : half_(smoothWin / 2) {
    heights_.reserve(longest + reachWithin(longest));
  }

  /// Smooths the piece of `count` samples in place.
  void smooth(STesk3DPosition* piece, std::size_t count) {
    if (count == 0) {
      return;
    }
    const std::size_t reach = reachWithin(count);
    loadHeights(piece, count, reach);
    if (half_ < 0) {
      for (std::size_t i = 0; i < count; ++i) {
        setMean(piece, i, 0.0, 0);
      }
      return;
    }
    const int measured = smoothStart(piece, reach);
    smoothRest(piece, count, reach, measured);
  }

 private:
  /// How far the window reaches to each side. One that reaches beyond both ends of the piece may as
  /// well end there.
  [[nodiscard]] std::size_t reachWithin(std::size_t count) const {
    const std::size_t last = std::max<std::size_t>(count, 1) - 1;
    return std::min(static_cast<std::size_t>(std::max(half_, 0)), last);
  }

  /// Takes the measured z, with 0.0 for every hole and for what lies beyond the piece's end. Such a
  /// zero changes no bit of a sum of measured z, which is never a negative zero.
  void loadHeights(const STesk3DPosition* piece, std::size_t count, std::size_t reach) {
    heights_.assign(count + reach, 0.0);
    for (std::size_t i = 0; i < count; ++i) {
      const double z = piece[i].pt3D.z;
      heights_[i] = isAboveNoSample(z) ? z : 0.0;
    }
  }

  [[nodiscard]] bool isMeasured(std::size_t k) const {
    return heights_[k] > 0.0;
  }

  void setMean(STesk3DPosition* piece, std::size_t i, double sum, int measured) const {
    if (isMeasured(i)) {
      piece[i].pt3D.z = sum / measured;
    }
  }

  /// Smooths the samples up to `reach`, whose windows all begin with the piece: each sum goes on
  /// from the one before. Returns how many heights of the last window are measured.
  int smoothStart(STesk3DPosition* piece, std::size_t reach) const {
    double sum = 0.0;
    int measured = 0;
    for (std::size_t k = 0; k <= 2 * reach; ++k) {
      sum += heights_[k];
      measured += static_cast<int>(isMeasured(k));
      if (k >= reach) {
        setMean(piece, k - reach, sum, measured);
      }
    }
    return measured;
  }

  /// Smooths the samples beyond `reach`, whose windows begin one sample after the other.
  void smoothRest(STesk3DPosition* piece,
                  std::size_t count,
                  std::size_t reach,
                  int measured) const {
    const std::size_t width = 2 * reach + 1;
    Sums sums;
    for (std::size_t first = reach + 1; first < count; first += kBlock) {
      const std::size_t blockEnd = std::min(first + kBlock, count);
      sumWindows(heights_.data() + first - reach, width, blockEnd - first, sums);
      for (std::size_t i = first; i < blockEnd; ++i) {
        measured +=
            static_cast<int>(isMeasured(i + reach)) - static_cast<int>(isMeasured(i - reach - 1));
        setMean(piece, i, sums[i - first], measured);
      }
    }
  }

  int half_;  ///< Half-width of the window; below 0 the window is empty.
  std::vector<double> heights_;
};

/// Whether two neighbours differ by more than a limit; exactly the limit, or a NaN, is no step.
bool isStep(const STesk3DPoint& from, const STesk3DPoint& to, double yTh, double zTh) {
  return std::fabs(to.y - from.y) > yTh || std::fabs(to.z - from.z) > zTh;
}

}  // namespace

void qo_lineDataSmoothing(std::vector<STesk3DPosition>& input,
                          int smoothWin,
                          std::vector<STesk3DPosition>& lineDataOut) {
  MovingMean mean(smoothWin, input.size());
  lineDataOut = input;
  mean.smooth(lineDataOut.data(), lineDataOut.size());
}

void qo_lineSegSmoothing(std::vector<STesk3DPosition>& input,
                         double seg_y_deltaTh,
                         double seg_z_deltaTh,
                         int smoothWin,
                         std::vector<STesk3DPosition>& lineDataOut) {
  MovingMean mean(smoothWin, input.size());
  const std::size_t base = lineDataOut.size();
  lineDataOut.insert(lineDataOut.end(), input.begin(), input.end());
  STesk3DPosition* const out = lineDataOut.data() + base;
  std::size_t start = 0;
  bool measuredSeen = false;
  for (std::size_t i = 0; i < input.size(); ++i) {
    if (!isAboveNoSample(input[i].pt3D.z)) {
      continue;
    }
    // The neighbour counts even if it is a hole: a hole, too, can be one side of a step.
    if (measuredSeen && isStep(input[i - 1].pt3D, input[i].pt3D, seg_y_deltaTh, seg_z_deltaTh)) {
      mean.smooth(out + start, i - start);
      start = i;
    }
    measuredSeen = true;
  }
  mean.smooth(out + start, input.size() - start);
}
