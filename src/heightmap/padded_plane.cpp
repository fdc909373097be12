#include "heightmap/padded_plane.h"

#include <stdexcept>

namespace scanline::detail {

namespace {

/// The distance of two rows in memory. If it were close to a multiple of a memory page, long
/// columns would share few cache sets.
std::uint64_t strideOf(int width) {
  constexpr std::uint64_t kPage = 1024;  // values of four bytes
  constexpr std::uint64_t kClose = 64;
  const auto stride = static_cast<std::uint64_t>(width) + 2;
  const bool isCrowded = stride >= kPage && (stride + kClose) % kPage < 2 * kClose;
  return isCrowded ? stride + kClose + kClose / 4 : stride;
}

}  // namespace

PaddedGrid::PaddedGrid(int height, int width)
    : height_(height), width_(width), stride_(static_cast<PixelIndex>(strideOf(width))) {
  if ((static_cast<std::uint64_t>(height) + 2) * strideOf(width) > kNoPixel) {
    throw std::length_error("the image and its frame have more than 2^32 pixels");
  }
}

}  // namespace scanline::detail
