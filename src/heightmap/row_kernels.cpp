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

SCANLINE_WIDE_KERNEL int largestUpTo(int limit, const int* row, std::size_t count) {
  int largest = -1;
  for (std::size_t i = 0; i < count; ++i) {
    const int value = row[i] <= limit ? row[i] : -1;
    largest = value > largest ? value : largest;
  }
  return largest;
}

}  // namespace scanline::detail
