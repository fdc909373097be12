#pragma once

#include <array>
#include <cstddef>

/// The steps of a chamfer scan on chunks of rows. Rows and columns count in the direction of the
/// pass: forward (1) from the first pixel, backward (-1) from the last one.
namespace scanline::detail {

/// Cost of a step to a neighbour.
struct ChamferWeights {
  float axial;
  float diagonal;
};

/// Number of rows that are relaxed together.
constexpr int kChamferRows = 6;

constexpr int kChamferChunk = 32;
using ChamferChunk = std::array<float, kChamferChunk>;

/// A candidate replaces the distance only if it is smaller, so a NaN neither spreads nor
/// disappears.
inline float smaller(float distance, float candidate) {
  return candidate < distance ? candidate : distance;
}

/**
 * Relaxes `count` pixels of a row with their three neighbours in the adjacent rows. All pointers
 * are to lowest addresses. The results do not depend on each other, so the loop vectorises.
 */
template <int kDirection>
void relaxAcrossRows(const float* pixels,
                     const float* rowBefore,
                     const float* rowAfter,
                     int count,
                     const ChamferWeights& weights,
                     float* __restrict result) {
  for (int k = 0; k < count; ++k) {
    float distance = pixels[k];
    distance = smaller(distance, rowBefore[k - kDirection] + weights.diagonal);
    distance = smaller(distance, rowBefore[k] + weights.axial);
    result[k] = smaller(distance, rowAfter[k - kDirection] + weights.diagonal);
  }
}

/**
 * Relaxes each pixel of the chunks with the one before it; `before` is the one before each chunk.
 *
 * Along a row each result depends on the one before it. So the rows are worked together, as these
 * chains do not depend on each other.
 */
template <int kDirection>
void relaxAlongRow(const ChamferWeights& weights,
                   std::array<float, kChamferRows> before,
                   std::array<ChamferChunk, kChamferRows>& rows) {
  for (int k = 0; k < kChamferChunk; ++k) {
    const int at = kDirection > 0 ? k : kChamferChunk - 1 - k;
    for (int i = 0; i < kChamferRows; ++i) {
      before[i] = smaller(rows[i][at], before[i] + weights.axial);
      rows[i][at] = before[i];
    }
  }
}

}  // namespace scanline::detail
