#include "heightmap/padded_plane.h"

#include <algorithm>
#include <stdexcept>

namespace scanline::detail {

namespace {

/// Long rows at distances close to a multiple of a memory page would crowd into few cache sets.
std::uint64_t strideOf(int width) {
  constexpr std::uint64_t kPage = 1024;  // values, as is usual
  constexpr std::uint64_t kClose = 64;
  const auto stride = static_cast<std::uint64_t>(width) + 2;
  const bool isCrowded = stride >= kPage && (stride + kClose) % kPage < 2 * kClose;
  return isCrowded ? stride + kClose + kClose / 4 : stride;
}

std::size_t sizeOf(int height, std::uint64_t stride) {
  const std::uint64_t size = (static_cast<std::uint64_t>(height) + 2) * stride;
  if (size > kNoPlace) {
    throw std::length_error("the image and its frame have more than 2^32 pixels");
  }
  return size;
}

}  // namespace

PaddedPlane::PaddedPlane(int height, int width)
    : stride_(static_cast<Place>(strideOf(width))),
      values_(new int[sizeOf(height, strideOf(width))]) {
  std::fill_n(at(0), stride_, 0);
  for (int r = 0; r < height; ++r) {
    row(r)[-1] = 0;
    row(r)[width] = 0;
  }
  std::fill_n(at(placeOf(height, 0) - 1), stride_, 0);
}

}  // namespace scanline::detail
