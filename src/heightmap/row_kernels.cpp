#include "heightmap/row_kernels.h"

#include <algorithm>

#include "records/wide_kernel.h"

namespace scanline::detail {

SCANLINE_WIDE_KERNEL void minimumOfRows(const int* a,
                                        const int* b,
                                        std::size_t count,
                                        int* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) {
    out[i] = b[i] < a[i] ? b[i] : a[i];
  }
}

SCANLINE_WIDE_KERNEL void extendBy(const int* row, std::size_t count, RowExtrema& extrema) {
  int smallest = extrema.smallest;
  int largest = extrema.largest;
  for (std::size_t i = 0; i < count; ++i) {
    smallest = row[i] < smallest ? row[i] : smallest;
    largest = row[i] > largest ? row[i] : largest;
  }
  extrema = {smallest, largest};
}

SCANLINE_WIDE_KERNEL bool raiseMaxima(const float* row,
                                      std::size_t count,
                                      float* __restrict maxima) {
  int hasUnordered = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const float value = row[i];
    hasUnordered |= value >= 0.0F ? 0 : 1;
    maxima[i] = value > maxima[i] ? value : maxima[i];
  }
  return hasUnordered != 0;
}

SCANLINE_WIDE_KERNEL void maximumOfRows(const float* a,
                                        const float* b,
                                        std::size_t count,
                                        float* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) {
    out[i] = b[i] > a[i] ? b[i] : a[i];
  }
}

SCANLINE_WIDE_KERNEL float largestOf(const float* values, std::size_t count) {
  constexpr std::size_t kLanes = 8;
  float lanes[kLanes] = {-1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F, -1.0F};
  std::size_t i = 0;
  for (; i + kLanes <= count; i += kLanes) {
    for (std::size_t k = 0; k < kLanes; ++k) {
      lanes[k] = values[i + k] > lanes[k] ? values[i + k] : lanes[k];
    }
  }
  float largest = -1.0F;
  for (; i < count; ++i) {
    largest = std::max(largest, values[i]);
  }
  for (const float lane : lanes) {
    largest = std::max(largest, lane);
  }
  return largest;
}

SCANLINE_WIDE_KERNEL int largestUpTo(int limit, const int* row, std::size_t count) {
  int largest = -1;
  for (std::size_t i = 0; i < count; ++i) {
    const int value = row[i] <= limit ? row[i] : -1;
    largest = value > largest ? value : largest;
  }
  return largest;
}

}  // namespace scanline::detail
