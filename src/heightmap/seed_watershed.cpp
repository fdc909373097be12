// Floods an image from given seeds, level by level.
#include <algorithm>
#include <array>
#include <cassert>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

#include <scanline/watershed.h>
#include "heightmap/flood_cells.h"
#include "heightmap/level_buckets.h"
#include "heightmap/padded_plane.h"
#include "heightmap/row_kernels.h"
#include "heightmap/seed_flood.h"

namespace {

using scanline::detail::FloodCells;
using scanline::detail::PaddedGrid;
using scanline::detail::PaddedPlane;

/// A pixel that got a label of 0 or below from a seed. In the flood it counts as unlabelled.
struct NonLabel {
  STesk2DPoint at;
  int label;
};

/// The markers of an image, in which the seeds and their plateaus are labelled.
template <typename Word>
class Planting {
 public:
  explicit Planting(const SJU_waterShedImage& image)
      : image_(image), cells_(PaddedGrid(std::max(image.height, 0), std::max(image.width, 0))) {
    for (int r = 0; r < image.height; ++r) {
      const int* const markers = image.markers[r].data();
      std::transform(markers, markers + image.width, cells_.row(r), FloodCells<Word>::cellOf);
    }
  }

  void plant(const SQO_2DValueI& seed, int label) {
    cells_.row(seed.y)[seed.x] = FloodCells<Word>::cellOf(label);
    plateau_.assign(1, {seed.x, seed.y});
    if (label != 0) {  // with 0 the filled pixels would be found unlabelled again and again
      fillPlateau(label);
    }
    if (label <= 0) {
      for (const STesk2DPoint at : plateau_) {
        nonLabels_.push_back({at, label});
      }
    }
  }

  /// Sets the pixels without a label to 0.
  PaddedPlane<Word>& keepLabelsOnly() {
    for (int r = 0; r < image_.height; ++r) {
      Word* const row = cells_.row(r);
      std::transform(row, row + image_.width, row,
                     [](Word cell) { return FloodCells<Word>::isLabelled(cell) ? cell : Word{0}; });
    }
    return cells_;
  }

  [[nodiscard]] const std::vector<NonLabel>& nonLabels() const {
    return nonLabels_;
  }

 private:
  /// Labels the pixels with a marker of 0 that connect to the seed at its own grey value.
  void fillPlateau(int label) {
    constexpr std::array<STesk2DPoint, 4> kSteps = {{{-1, 0}, {0, -1}, {0, 1}, {1, 0}}};
    const int level = image_.gray[plateau_[0].y][plateau_[0].x];
    for (std::size_t i = 0; i < plateau_.size(); ++i) {
      const STesk2DPoint from = plateau_[i];
      for (const STesk2DPoint step : kSteps) {
        const int x = from.x + step.x;
        const int y = from.y + step.y;
        const bool isInside = x >= 0 && x < image_.width && y >= 0 && y < image_.height;
        if (isInside && image_.gray[y][x] == level && cells_.row(y)[x] == 0) {
          cells_.row(y)[x] = FloodCells<Word>::cellOf(label);
          plateau_.push_back({x, y});
        }
      }
    }
  }

  const SJU_waterShedImage& image_;
  PaddedPlane<Word> cells_;
  std::vector<NonLabel> nonLabels_;
  std::vector<STesk2DPoint> plateau_;  // of the current seed, which comes first
};

/// Copies the settled pixels to the markers of the caller, after the pixels of seeds without a
/// label.
template <typename Word>
void copyToMarkers(const std::vector<NonLabel>& nonLabels,
                   PaddedPlane<Word>& pixels,
                   SJU_waterShedImage& image) {
  using Cells = FloodCells<Word>;
  for (const auto& [at, label] : nonLabels) {
    image.markers[at.y][at.x] = label;
  }
  for (int r = 0; r < image.height; ++r) {
    const Word* const row = pixels.row(r);
    int* const markers = image.markers[r].data();
    for (int c = 0; c < image.width; ++c) {
      const int unlabelled =
          row[c] == Cells::kWatershed ? scanline::detail::kWatershed : markers[c];
      markers[c] = Cells::isLabelled(row[c]) ? Cells::labelOf(row[c]) : unlabelled;
    }
  }
}

/// Floods the image. Returns whether any pixel waits forever. If std::bad_alloc is thrown, the
/// image is unchanged.
template <typename Word>
bool floodFromSeeds(const std::vector<SQO_2DValueI>& seeds,
                    int maxLevel,
                    int startLabel,
                    SJU_waterShedImage& image) {
  Planting<Word> planting(image);
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    planting.plant(seeds[i], startLabel + static_cast<int>(i));
  }
  PaddedPlane<Word>& pixels = planting.keepLabelsOnly();
  const auto buckets = scanline::detail::fillBuckets(image.gray, maxLevel, pixels.grid());
  scanline::detail::SeedFlood<Word> flood(buckets, pixels);
  flood.run();
  copyToMarkers(planting.nonLabels(), pixels, image);
  return flood.isAnyWaiting();
}

/// Whether all labels fit into the smaller cells, which are faster.
bool hasShortLabels(const SJU_waterShedImage& image, std::int64_t lastLabel) {
  scanline::detail::RowExtrema markers = {0, 0};
  for (int r = 0; r < image.height; ++r) {
    scanline::detail::extendBy(image.markers[r].data(), image.width, markers);
  }
  constexpr std::int64_t kLargest = FloodCells<std::uint32_t>::kLabelMask;
  return markers.largest <= kLargest && lastLabel <= kLargest;
}

void waitForever() {
  // The compiler may assume that a loop without side effects ends, but not if it reads a volatile.
  const volatile bool over = false;
  while (!over) {
  }
}

}  // namespace

void ju_seedWatershed(SJU_waterShedImage& image,
                      std::vector<SQO_2DValueI>& seeds,
                      int maxLevel,
                      int startLabel) {
  assert(scanline::detail::hasFullPlanes(image));
  assert(std::all_of(seeds.begin(), seeds.end(), [&](const SQO_2DValueI& seed) {
    return seed.x >= 0 && seed.x < image.width && seed.y >= 0 && seed.y < image.height;
  }));
  const std::int64_t endLabel = std::int64_t{startLabel} + static_cast<std::int64_t>(seeds.size());
  assert(endLabel - 1 <= INT_MAX);
  const auto flood = hasShortLabels(image, endLabel - 1) ? floodFromSeeds<std::uint32_t>
                                                         : floodFromSeeds<std::uint64_t>;
  const bool isAnyWaiting = flood(seeds, std::max(maxLevel, -1), startLabel, image);
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    seeds[i].value = startLabel + static_cast<int>(i);
  }
  if (maxLevel < -1) {
    throw std::length_error("ju_seedWatershed: negative number of levels");
  }
  if (isAnyWaiting) {
    waitForever();
  }
}
