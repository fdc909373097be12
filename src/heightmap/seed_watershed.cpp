#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include <scanline/watershed.h>
#include "heightmap/level_buckets.h"
#include "heightmap/padded_plane.h"
#include "heightmap/seed_flood.h"

namespace {

using scanline::detail::PaddedGrid;
using scanline::detail::PaddedPlane;

/// A pixel that a seed with a label of 0 or less gave its label to: to the flood it has none.
struct PlantedNonLabel {
  STesk2DPoint at;
  int label;
};

/// The markers of an image with the seeds and their plateaus labelled.
class Planting {
 public:
  explicit Planting(const SJU_waterShedImage& image)
      : image_(image),
        markers_(PaddedGrid(std::max(image.height, 0), std::max(image.width, 0))) {
    for (int r = 0; r < image.height; ++r) {
      std::copy_n(image.markers[r].data(), image.width, markers_.row(r));
    }
  }

  void plant(const SQO_2DValueI& seed, int label) {
    markers_.row(seed.y)[seed.x] = label;
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
  PaddedPlane<int>& keepLabelsOnly() {
    for (int r = 0; r < image_.height; ++r) {
      int* const row = markers_.row(r);
      std::transform(row, row + image_.width, row, [](int marker) { return std::max(marker, 0); });
    }
    return markers_;
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
        if (isInside && image_.gray[y][x] == level && markers_.row(y)[x] == 0) {
          markers_.row(y)[x] = label;
          plateau_.push_back({x, y});
        }
      }
    }
  }

  const SJU_waterShedImage& image_;
  PaddedPlane<int> markers_;
  std::vector<PlantedNonLabel> nonLabels_;
  std::vector<STesk2DPoint> plateau_;  // of the present seed, which comes first
};

/// Copies the settled pixels to the caller's markers, after those that only seeds changed.
void handOver(const std::vector<PlantedNonLabel>& nonLabels,
              PaddedPlane<int>& pixels,
              SJU_waterShedImage& image) {
  for (const auto& [at, label] : nonLabels) {
    image.markers[at.y][at.x] = label;
  }
  for (int r = 0; r < image.height; ++r) {
    const int* const row = pixels.row(r);
    int* const markers = image.markers[r].data();
    for (int c = 0; c < image.width; ++c) {
      const bool isSettled = row[c] > 0 || row[c] == scanline::detail::kWatershed;
      markers[c] = isSettled ? row[c] : markers[c];
    }
  }
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
  Planting planting(image);
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    planting.plant(seeds[i], startLabel + static_cast<int>(i));
  }
  PaddedPlane<int>& pixels = planting.keepLabelsOnly();
  const int highest = std::max(maxLevel, -1);
  const auto buckets = scanline::detail::fillBuckets(image.gray, highest, pixels.grid());
  scanline::detail::SeedFlood flood(buckets, pixels);
  flood.run();
  // Nothing below allocates.
  handOver(planting.nonLabels(), pixels, image);
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    seeds[i].value = startLabel + static_cast<int>(i);
  }
  if (maxLevel < -1) {
    throw std::length_error("ju_seedWatershed: negative number of levels");
  }
  if (flood.isAnyWaiting()) {
    waitWithoutEnd();
  }
}
