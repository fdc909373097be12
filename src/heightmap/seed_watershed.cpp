#include <algorithm>
#include <array>
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

/// A pixel that a seed with a label of 0 or less gave its label to: to the flood it has none.
struct PlantedNonLabel {
  STesk2DPoint at;
  int label;
};

/// The markers of an image with the seeds and their plateaus labelled.
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
    if (label != 0) {  // or the fill would find the same pixels unlabelled again and again
      fillPlateau(label);
    }
    if (label <= 0) {
      for (const STesk2DPoint at : plateau_) {
        nonLabels_.push_back({at, label});
      }
    }
  }

  /// Afterwards, the pixels without a label hold 0.
  PaddedPlane<Word>& keepLabelsOnly() {
    for (int r = 0; r < image_.height; ++r) {
      Word* const row = cells_.row(r);
      std::transform(row, row + image_.width, row,
                     [](Word cell) { return FloodCells<Word>::isLabelled(cell) ? cell : Word{0}; });
    }
    return cells_;
  }

  [[nodiscard]] const std::vector<PlantedNonLabel>& nonLabels() const {
    return nonLabels_;
  }

 private:
  /// Gives a label to the unlabelled pixels that join the seed at its own grey value.
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
  std::vector<PlantedNonLabel> nonLabels_;
  std::vector<STesk2DPoint> plateau_;  // of the present seed, which comes first
};

/// Copies the settled pixels to the caller's markers, after those that only seeds changed.
template <typename Word>
void handOver(const std::vector<PlantedNonLabel>& nonLabels,
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

/// Floods the image. Returns whether any pixel waits for good. If std::bad_alloc is thrown, the
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
  handOver(planting.nonLabels(), pixels, image);
  return flood.isAnyWaiting();
}

/// Whether all labels fit into the smaller cells, which are the faster ones.
bool hasShortLabels(const SJU_waterShedImage& image, std::int64_t lastLabel) {
  scanline::detail::RowExtrema markers = {0, 0};
  for (int r = 0; r < image.height; ++r) {
    scanline::detail::extendBy(image.markers[r].data(), image.width, markers);
  }
  constexpr std::int64_t kLargest = FloodCells<std::uint32_t>::kLabelMask;
  return markers.largest <= kLargest && lastLabel <= kLargest;
}

void waitWithoutEnd() {
  // A loop without side effects may be taken to end; one that reads a volatile may not.
  const volatile bool over = false;
  while (!over) {
  }
}

}  // namespace

void ju_seedWatershed(SJU_waterShedImage& image,
                      std::vector<SQO_2DValueI>& seeds,
                      int maxLevel,
                      int startLabel) {
  const std::int64_t endLabel = std::int64_t{startLabel} + static_cast<std::int64_t>(seeds.size());
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
    waitWithoutEnd();
  }
}
