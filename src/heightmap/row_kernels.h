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

/// Raises maxima to the values of a row. Returns whether any of these is negative or NaN.
bool raiseMaxima(const float* row, std::size_t count, float* __restrict maxima);

/// out[i] = max(a[i], b[i]), for maxima of different rows.
void maximumOfRows(const float* a, const float* b, std::size_t count, float* __restrict out);

/// The largest of values that are 0 or more; -1 if there are none.
float largestOf(const float* values, std::size_t count);

/// The largest value of a row that is not above `limit`; -1 if none is 0 or more.
int largestUpTo(int limit, const int* row, std::size_t count);

}  // namespace scanline::detail
