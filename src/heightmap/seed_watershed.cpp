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

using scanline::detail::PaddedPlane;
using scanline::detail::PixelRows;

/// Gives a label to the unlabelled pixels that join the seed at its own grey value.
void ju_fillSeedPlateau(const SQO_2DValueI& seed,
                        int label,
                        const SJU_waterShedImage& image,
                        PixelRows& markers,
                        std::vector<STesk2DPoint>& plateau) {
  constexpr std::array<STesk2DPoint, 4> kSteps = {{{-1, 0}, {0, -1}, {0, 1}, {1, 0}}};
  if (label == 0) {
    return;  // would find the same pixels unlabelled again and again
  }
  const int level = image.gray[seed.y][seed.x];
  plateau.assign(1, {seed.x, seed.y});
  for (std::size_t i = 0; i < plateau.size(); ++i) {
    const STesk2DPoint from = plateau[i];
    for (const STesk2DPoint step : kSteps) {
      const int x = from.x + step.x;
      const int y = from.y + step.y;
      const bool isInside = x >= 0 && x < image.width && y >= 0 && y < image.height;
      if (isInside && image.gray[y][x] == level && markers[y][x] == 0) {
        markers[y][x] = label;
        plateau.push_back({x, y});
      }
    }
  }
}

/// The markers of the image with the plateaus of the seeds labelled.
PixelRows plantSeeds(const std::vector<SQO_2DValueI>& seeds,
                     int startLabel,
                     const SJU_waterShedImage& image) {
  PixelRows markers = image.markers;
  std::vector<STesk2DPoint> plateau;
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    const SQO_2DValueI& seed = seeds[i];
    const int label = startLabel + static_cast<int>(i);
    markers[seed.y][seed.x] = label;
    ju_fillSeedPlateau(seed, label, image, markers, plateau);
  }
  return markers;
}

/// A plane of the labels above 0.
PaddedPlane<int> labelsOf(const PixelRows& markers, int height, int width) {
  PaddedPlane<int> labels(scanline::detail::PaddedGrid(std::max(height, 0), std::max(width, 0)));
  for (int r = 0; r < height; ++r) {
    int* row = labels.row(r);
    for (int c = 0; c < width; ++c) {
      row[c] = std::max(markers[r][c], 0);
    }
  }
  return labels;
}

/// Takes over the settled pixels. Returns whether any pixel still waits.
bool takeOver(PaddedPlane<int>& pixels, int height, int width, PixelRows& markers) {
  int lowest = 0;
  for (int r = 0; r < height; ++r) {
    const int* row = pixels.row(r);
    for (int c = 0; c < width; ++c) {
      const bool isSettled = row[c] > 0 || row[c] == scanline::detail::kWatershed;
      markers[r][c] = isSettled ? row[c] : markers[r][c];
      lowest = std::min(lowest, row[c]);
    }
  }
  return lowest <= scanline::detail::kWaiting;
}

/// Hands the result to the caller; allocates nothing.
void handOver(const PixelRows& markers,
              int startLabel,
              SJU_waterShedImage& image,
              std::vector<SQO_2DValueI>& seeds) {
  for (std::size_t r = 0; r < markers.size(); ++r) {
    std::copy(markers[r].begin(), markers[r].end(), image.markers[r].begin());
  }
  for (std::size_t i = 0; i < seeds.size(); ++i) {
    seeds[i].value = startLabel + static_cast<int>(i);
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
  PixelRows markers = plantSeeds(seeds, startLabel, image);
  if (maxLevel < -1) {
    handOver(markers, startLabel, image, seeds);
    throw std::length_error("ju_seedWatershed: negative number of levels");
  }
  PaddedPlane<int> pixels = labelsOf(markers, image.height, image.width);
  const auto buckets =
      scanline::detail::fillBuckets(image.gray, image.height, image.width, maxLevel, pixels.grid());
  scanline::detail::SeedFlood(buckets, pixels).run();
  const bool isAnyWaiting = takeOver(pixels, image.height, image.width, markers);
  handOver(markers, startLabel, image, seeds);
  if (isAnyWaiting) {
    waitWithoutEnd();
  }
}
