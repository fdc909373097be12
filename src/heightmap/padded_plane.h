#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace scanline::detail {

using PixelRows = std::vector<std::vector<int>>;

/// Index of a pixel in a padded plane; ascending in scan order.
using Place = std::uint32_t;

/// No pixel's place.
constexpr Place kNoPlace = UINT32_MAX;

/// A flooded pixel where different labels met.
constexpr int kWatershed = -1;

/// How many pixels ahead a flood has the next ones fetched: it jumps between far rows, which leaves
/// the caches no pattern to follow.
constexpr int kFetchAhead = 16;

/// Values of an image's pixels in one piece, within a frame of zeros, so that every pixel has eight
/// neighbours. The pixels start out unset.
class PaddedPlane {
 public:
  /// Throws std::length_error if a Place could not number the pixels.
  PaddedPlane(int height, int width);

  [[nodiscard]] Place placeOf(int row, int column) const {
    return (static_cast<Place>(row) + 1) * stride_ + static_cast<Place>(column) + 1;
  }
  /// Distance from a place to the one below.
  [[nodiscard]] Place stride() const {
    return stride_;
  }

  int* at(Place place) {
    return values_.get() + place;
  }
  /// Has the caches fetch a pixel and its neighbours, where the compiler knows how to ask for it.
  void prefetchAround([[maybe_unused]] Place place) {
#if defined(__GNUC__)
    __builtin_prefetch(at(place - stride_));
    __builtin_prefetch(at(place));
    __builtin_prefetch(at(place + stride_));
#endif
  }
  /// The first pixel of a row.
  int* row(int row) {
    return at(placeOf(row, 0));
  }

 private:
  Place stride_;
  std::unique_ptr<int[]> values_;
};

/// Calls `look(value)` for the eight neighbours of a pixel in a padded plane.
template <typename Look>
void lookAround(const int* pixel, std::ptrdiff_t stride, Look look) {
  for (const int* row : {pixel - stride, pixel + stride}) {
    look(row[-1]);
    look(row[0]);
    look(row[1]);
  }
  look(pixel[-1]);
  look(pixel[1]);
}

}  // namespace scanline::detail
