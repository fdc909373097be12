// Smooths lines by a moving mean, as a whole or between steps.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <memory>
#include <numeric>
#include <vector>

#include <scanline/conditioning.h>
#include "conditioning/smoothing_kernels.h"
#include "records/new_array.h"

namespace {

using scanline::detail::gatherHeights;
using scanline::detail::gatherHeightsAndSteps;
using scanline::detail::meanWindows;
using scanline::detail::newArray;
using scanline::detail::storeMeans;

/// Up to this half-width, all pieces of a line are summed in one pass: the windows that begin in
/// the gaps between the pieces cost less than a pass for each piece.
constexpr int kNarrow = 8;

/// Storage for heights, with zeros beyond the ends of a piece, and for the numbers of measured
/// heights by which the sums are divided.
struct PaddedHeights {
  explicit PaddedHeights(std::size_t room)
      : z(newArray<double>(room)), measuredBefore(newArray<int>(room + 1)) {}

  /// Sets the number of measured heights before each of the first `count` heights, and before their
  /// end.
  void countMeasured(std::size_t count) const {
    int measured = 0;
    for (std::size_t k = 0; k < count; ++k) {
      measuredBefore[k] = measured;
      measured += static_cast<int>(z[k] > 0.0);
    }
    measuredBefore[count] = measured;
  }

  std::unique_ptr<double[]> z;
  std::unique_ptr<int[]> measuredBefore;
};

/// The heights of a line and the means that replace them.
struct SmoothedHeights {
  explicit SmoothedHeights(std::size_t size)
      : count(size), heights(newArray<double>(size)), means(newArray<double>(size)) {}

  std::size_t count;
  std::unique_ptr<double[]> heights;
  std::unique_ptr<double[]> means;
};

double meanOf(double sum, int measured) {
  return sum / measured;
}

/// Computes the means of the piece of `count` samples at `start`.
void meanPiece(SmoothedHeights& line,
               std::size_t start,
               std::size_t count,
               std::size_t half,
               PaddedHeights& padded) {
  // Beyond the ends of the piece there is nothing to add, so a window need not reach farther.
  const std::size_t reach = std::min(half, count - 1);
  double* const z = padded.z.get();
  double* const means = &line.means[start];
  std::copy_n(&line.heights[start], count, z);
  std::fill_n(z + count, reach, 0.0);
  padded.countMeasured(count + reach);
  double sum = std::accumulate(z, z + reach, 0.0);
  if (reach == count - 1) {
    std::fill_n(means, count, meanOf(sum + z[reach], padded.measuredBefore[count]));
    return;
  }
  // The windows of the samples up to `reach` all begin with the piece: each sum continues the
  // preceding one.
  for (std::size_t i = 0; i <= reach; ++i) {
    sum += z[i + reach];
    means[i] = meanOf(sum, padded.measuredBefore[i + reach + 1]);
  }
  meanWindows(z + 1, &padded.measuredBefore[1], 2 * reach + 1, count - reach - 1,
              means + reach + 1);
}

/// Computes the means piece by piece.
void meanPieces(SmoothedHeights& line, const int* isStep, std::size_t half) {
  PaddedHeights padded(2 * line.count);
  std::size_t start = 0;
  for (std::size_t i = 1; i < line.count; ++i) {
    if (isStep[i] != 0) {
      meanPiece(line, start, i - start, half, padded);
      start = i;
    }
  }
  meanPiece(line, start, line.count - start, half, padded);
}

/// Computes the means of all pieces in one pass: the pieces are laid out with `half` zeros before,
/// between and after them.
void meanPiecesTogether(SmoothedHeights& line, const int* isStep, std::size_t half) {
  const auto steps = static_cast<std::size_t>(std::accumulate(isStep, isStep + line.count, 0));
  const std::size_t windowCount = line.count + steps * half;
  const std::size_t paddedCount = windowCount + 2 * half;
  PaddedHeights padded(paddedCount);
  const auto windows = newArray<std::size_t>(line.count);
  const auto means = newArray<double>(windowCount);
  std::fill_n(padded.z.get(), paddedCount, 0.0);
  std::size_t gaps = 0;
  for (std::size_t i = 0; i < line.count; ++i) {
    // Steps follow no pattern, so there is no branch on them.
    gaps += half * static_cast<std::size_t>(isStep[i]);
    windows[i] = gaps + i;
    padded.z[half + windows[i]] = line.heights[i];
  }
  padded.countMeasured(paddedCount);
  meanWindows(padded.z.get(), padded.measuredBefore.get(), 2 * half + 1, windowCount, means.get());
  for (std::size_t i = 0; i < line.count; ++i) {
    line.means[i] = means[windows[i]];
  }
}

/// Sets all means to that of an empty window, NaN.
void meanNothing(SmoothedHeights& line) {
  std::fill_n(line.means.get(), line.count, meanOf(0.0, 0));
}

/// Smooths the pieces between the steps of a line. The first measured sample is no step.
void smoothPieces(STesk3DPosition* samples, std::size_t count, double yTh, double zTh, int half) {
  SmoothedHeights line(count);
  const auto isStep = newArray<int>(count);
  gatherHeightsAndSteps(samples, count, yTh, zTh, line.heights.get(), isStep.get());
  const double* const heights = line.heights.get();
  const auto firstMeasured =
      std::find_if(heights, heights + count, [](double z) { return z > 0.0; });
  if (firstMeasured != heights + count) {
    isStep[static_cast<std::size_t>(firstMeasured - heights)] = 0;
  }
  if (half < 0) {
    meanNothing(line);
  } else if (half <= kNarrow) {
    meanPiecesTogether(line, isStep.get(), static_cast<std::size_t>(half));
  } else {
    meanPieces(line, isStep.get(), static_cast<std::size_t>(half));
  }
  storeMeans(line.heights.get(), line.means.get(), count, samples);
}

}  // namespace

void qo_lineDataSmoothing(std::vector<STesk3DPosition>& input,
                          int smoothWin,
                          std::vector<STesk3DPosition>& lineDataOut) {
  assert(&lineDataOut != &input);
  SmoothedHeights line(input.size());
  PaddedHeights padded(2 * line.count);
  lineDataOut = input;
  if (input.empty()) {
    return;
  }
  gatherHeights(input.data(), line.count, line.heights.get());
  const int half = smoothWin / 2;
  if (half < 0) {
    meanNothing(line);
  } else {
    meanPiece(line, 0, line.count, static_cast<std::size_t>(half), padded);
  }
  storeMeans(line.heights.get(), line.means.get(), line.count, lineDataOut.data());
}

void qo_lineSegSmoothing(std::vector<STesk3DPosition>& input,
                         double seg_y_deltaTh,
                         double seg_z_deltaTh,
                         int smoothWin,
                         std::vector<STesk3DPosition>& lineDataOut) {
  assert(&lineDataOut != &input);
  if (input.empty()) {
    return;
  }
  const std::size_t base = lineDataOut.size();
  lineDataOut.insert(lineDataOut.end(), input.begin(), input.end());
  try {
    smoothPieces(&lineDataOut[base], input.size(), seg_y_deltaTh, seg_z_deltaTh, smoothWin / 2);
  } catch (...) {
    lineDataOut.resize(base);
    throw;
  }
}
