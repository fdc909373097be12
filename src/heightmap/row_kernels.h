#pragma once

#include <cstddef>

/// Loops over rows of pixels that the compiler vectorises.
namespace scanline::detail {

/// out[i] = min(a[i], b[i]). `a` and `b` may overlap each other, but not `out`.
void minimumOfRows(const int* a, const int* b, std::size_t count, int* __restrict out);

struct RowExtrema {
  int smallest;
  int largest;
};

/// Extends the range of values to those of a row.
void extendBy(const int* row, std::size_t count, RowExtrema& extrema);

/// The largest value of a row that is not above `limit`, or -1 if that is negative.
int largestUpTo(int limit, const int* row, std::size_t count);

}  // namespace scanline::detail
