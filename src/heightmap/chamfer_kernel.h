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

/// Number of rows that are relaxed side by side.
constexpr int kChamferRows = 6;

constexpr int kChamferChunk = 32;
using ChamferChunk = std::array<float, kChamferChunk>;

/// A candidate must be smaller to replace: not-a-numbers neither spread nor vanish.
inline float smaller(float distance, float candidate) {
  return candidate < distance ? candidate : distance;
}

/**
 * Relaxes `count` pixels of a row with their three neighbours in the rows beside it. All pointers
 * are to lowest addresses. There is no chain from pixel to pixel, so the loop vectorises.
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
 * Relaxes the pixels of a chunk with the one before each; `before` is the one before the chunk.
 *
 * Along a row each pixel waits for the one before it. The chains of all rows run side by side.
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
