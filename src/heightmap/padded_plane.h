#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include <scanline/watershed.h>
#include "records/new_array.h"
#include "records/prefetch.h"

namespace scanline::detail {

using PixelRows = std::vector<std::vector<int>>;

/// Whether a plane has `height` rows of `width` values.
[[nodiscard]] inline bool hasSize(const PixelRows& plane, int height, int width) {
  return plane.size() >= static_cast<std::size_t>(std::max(height, 0)) &&
         std::all_of(plane.begin(), plane.begin() + std::max(height, 0), [=](const auto& row) {
           return row.size() >= static_cast<std::size_t>(std::max(width, 0));
         });
}

[[nodiscard]] inline bool hasFullPlanes(const SJU_waterShedImage& image) {
  return hasSize(image.gray, image.height, image.width) &&
         hasSize(image.markers, image.height, image.width);
}

/// Index of a pixel in a padded plane; ascending in scan order.
using PixelIndex = std::uint32_t;

/// Index of no pixel.
constexpr PixelIndex kNoPixel = UINT32_MAX;

/// A flooded pixel where different labels met.
constexpr int kWatershed = -1;

/// How many pixels ahead a flood prefetches: it jumps between distant rows without a pattern that
/// the hardware prefetcher could follow.
constexpr int kPrefetchDistance = 16;

/// The layout of an image in one block of memory, with a frame one pixel wide around it, so that
/// every pixel has eight neighbours.
class PaddedGrid {
 public:
  /// Throws std::length_error if there are more pixels than a PixelIndex can number.
  PaddedGrid(int height, int width);

  [[nodiscard]] PixelIndex indexOf(int row, int column) const {
    return (static_cast<PixelIndex>(row) + 1) * stride_ + static_cast<PixelIndex>(column) + 1;
  }
  /// Distance from a pixel to the one below.
  [[nodiscard]] PixelIndex stride() const {
    return stride_;
  }
  /// Number of pixels, including the frame.
  [[nodiscard]] std::size_t size() const {
    return (static_cast<std::size_t>(height_) + 2) * stride_;
  }
  [[nodiscard]] int height() const {
    return height_;
  }
  [[nodiscard]] int width() const {
    return width_;
  }

 private:
  int height_;
  int width_;
  PixelIndex stride_;
};

/// The pixel values of an image, with zeros in the frame. The other values are not initialised.
template <typename Value>
class PaddedPlane {
 public:
  explicit PaddedPlane(const PaddedGrid& grid)
      : grid_(grid), values_(newArray<Value>(grid.size())) {
    const PixelIndex stride = grid.stride();
    std::fill_n(at(0), stride, Value{0});
    for (int r = 0; r < grid.height(); ++r) {
      row(r)[-1] = 0;
      std::fill(row(r) + grid.width(), row(r + 1) - 1, Value{0});
    }
    std::fill_n(row(grid.height()) - 1, stride, Value{0});
  }

  [[nodiscard]] const PaddedGrid& grid() const {
    return grid_;
  }
  Value* at(PixelIndex pixel) {
    return values_.get() + pixel;
  }
  /// The first pixel of a row.
  Value* row(int row) {
    return at(grid_.indexOf(row, 0));
  }
  void prefetchAround(PixelIndex pixel) {
    prefetch(at(pixel - grid_.stride()));
    prefetch(at(pixel));
    prefetch(at(pixel + grid_.stride()));
  }

 private:
  PaddedGrid grid_;
  std::unique_ptr<Value[]> values_;
};

/// Calls `look(value)` for the eight neighbours of a pixel in a padded plane.
template <typename Value, typename Look>
void forEachNeighbour(Value* pixel, std::ptrdiff_t stride, Look look) {
  for (Value* row : {pixel - stride, pixel + stride}) {
    look(row[-1]);
    look(row[0]);
    look(row[1]);
  }
  look(pixel[-1]);
  look(pixel[1]);
}

}  // namespace scanline::detail
