#include "heightmap/padded_plane.h"

#include <algorithm>
#include <stdexcept>

namespace scanline::detail {

namespace {

std::size_t paddedSize(int height, int width) {
  const auto size =
      (static_cast<std::uint64_t>(height) + 2) * (static_cast<std::uint64_t>(width) + 2);
  if (size > kNoPlace) {
    throw std::length_error("watershed: too many pixels");
  }
  return size;
}

}  // namespace

PaddedPlane::PaddedPlane(int height, int width)
    : stride_(static_cast<Place>(width) + 2), values_(new int[paddedSize(height, width)]) {
  std::fill_n(at(0), stride_, 0);
  for (int r = 0; r < height; ++r) {
    row(r)[-1] = 0;
    row(r)[width] = 0;
  }
  std::fill_n(row(height) - 1, stride_, 0);
}

}  // namespace scanline::detail
