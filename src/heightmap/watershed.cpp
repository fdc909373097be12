// Segments an image from its own minima, in a single sweep over the pixels.
#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <scanline/watershed.h>
#include "heightmap/flood_order.h"
#include "heightmap/padded_plane.h"
#include "heightmap/watershed_minima.h"
#include "records/prefetch.h"

namespace {

using scanline::detail::PaddedGrid;
using scanline::detail::PaddedPlane;
using scanline::detail::PixelPosition;
using scanline::detail::PixelRows;

/// The state of a pixel in the flood. The flood visits far more pixels than it labels, in an order
/// that defeats the caches. So most visits read and write only this byte.
enum State : std::uint8_t {
  kNone,      ///< Not visited; no neighbour has a label.
  kOne,       ///< Not visited; one neighbour has a label.
  kMany,      ///< Several neighbours have labels; a watershed pixel once it is visited.
  kLeft,      ///< Visited when no neighbour had a label, and left unchanged.
  kLabelled,  ///< Has a label.
};

/// A pixel's state after its visit.
constexpr std::array<State, 5> kVisited = {kLeft, kLabelled, kMany, kLeft, kLabelled};
/// A pixel's state after one more of its neighbours got a label.
constexpr std::array<State, 5> kOneMore = {kOne, kMany, kMany, kLeft, kLabelled};

/// The flood of an image with labels on some pixels.
class Flood {
 public:
  explicit Flood(const PaddedGrid& grid) : states_(grid) {}

  void run(PixelRows& markers, const PixelPosition* order, int side) {
    markLabels(markers);
    const std::size_t size = static_cast<std::size_t>(side) * side;
    for (std::size_t i = 0; i < size; ++i) {
      if (size - i > scanline::detail::kPrefetchDistance) {
        const PixelPosition ahead = order[i + scanline::detail::kPrefetchDistance];
        scanline::detail::prefetch(states_.at(states_.grid().indexOf(ahead.row, ahead.column)));
      }
      visit(order[i], markers);
    }
    markWatersheds(side, markers);
  }

 private:
  /// Takes over the labels that the image has on entry.
  void markLabels(const PixelRows& markers) {
    const PaddedGrid& grid = states_.grid();
    for (int r = 0; r < grid.height(); ++r) {
      std::transform(markers[r].begin(), markers[r].begin() + grid.width(), states_.row(r),
                     [](int marker) { return marker > 0 ? kLabelled : kNone; });
    }
    for (int r = 0; r < grid.height(); ++r) {
      std::uint8_t* const end = states_.row(r) + grid.width();
      std::uint8_t* state = states_.row(r);
      while ((state = static_cast<std::uint8_t*>(std::memchr(state, kLabelled, end - state)))) {
        spread(state++);
      }
    }
  }

  void visit(PixelPosition pixel, PixelRows& markers) {
    std::uint8_t* const state = states_.at(states_.grid().indexOf(pixel.row, pixel.column));
    const bool hasOneLabel = *state == kOne;
    *state = kVisited[*state];
    if (hasOneLabel) {
      const STesk2DPoint step = spread(state);
      markers[pixel.row][pixel.column] = markers[pixel.row + step.y][pixel.column + step.x];
    }
  }

  /// Updates the states around a pixel that got a label. Returns the step to a neighbour that has
  /// one, if any has.
  STesk2DPoint spread(std::uint8_t* state) {
    STesk2DPoint labelled = {0, 0};
    for (int y = -1; y <= 1; ++y) {
      std::uint8_t* const row = state + y * static_cast<std::ptrdiff_t>(states_.grid().stride());
      for (int x = -1; x <= 1; ++x) {
        if (x == 0 && y == 0) {
          continue;
        }
        labelled = row[x] == kLabelled ? STesk2DPoint{x, y} : labelled;
        row[x] = kOneMore[row[x]];
      }
    }
    return labelled;
  }

  void markWatersheds(int side, PixelRows& markers) {
    for (int r = 0; r < side; ++r) {
      const std::uint8_t* const states = states_.row(r);
      int* const row = markers[r].data();
      for (int c = 0; c < side; ++c) {
        row[c] = states[c] == kMany ? scanline::detail::kWatershed : row[c];
      }
    }
  }

  PaddedPlane<std::uint8_t> states_;
};

}  // namespace

void watershed(SJU_waterShedImage& image) {
  assert(image.width == image.height && scanline::detail::hasFullPlanes(image));
  // Rows and columns are crossed, so only a square can be flooded.
  const int side = std::min(image.width, image.height);
  if (side < 1) {
    return;
  }
  Flood flood(PaddedGrid(image.height, image.width));
  const auto order = scanline::detail::floodOrder(image.gray, side);
  scanline::detail::markMinima(image);
  flood.run(image.markers, order.get(), side);
}
