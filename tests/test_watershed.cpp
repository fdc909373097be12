#include <gtest/gtest.h>
#include <sys/time.h>

#include <climits>
#include <csignal>
#include <cstddef>
#include <stdexcept>
#include <utility>
#include <vector>

#include <scanline/watershed.h>
#include "builders.h"
#include "plain_watershed.h"

namespace {

using Plane = std::vector<std::vector<int>>;
using Seeds = std::vector<SQO_2DValueI>;

SJU_waterShedImage imageOf(const Plane& gray, Plane markers = {}) {
  const int width = gray.empty() ? 0 : static_cast<int>(gray[0].size());
  markers.resize(gray.size(), std::vector<int>(width));
  return {width, static_cast<int>(gray.size()), gray, markers};
}

Plane flat(int height, int width, int value = 0) {
  return {static_cast<std::size_t>(height), std::vector<int>(width, value)};
}

SQO_2DValueI seedAt(int x, int y) {
  return {x, y, -7, 0.5, 3};
}

Plane flooded(SJU_waterShedImage image, Seeds seeds, int maxLevel, int startLabel = 2) {
  ju_seedWatershed(image, seeds, maxLevel, startLabel);
  return image.markers;
}

/// Random values at `percent` of the pixels, and zeros elsewhere.
Plane randomPlane(
    build::Random& random, int height, int width, int low, int high, int percent = 100) {
  Plane plane = flat(height, width);
  for (std::vector<int>& row : plane) {
    for (int& value : row) {
      value = random.chance(percent) ? random.whole(low, high) : 0;
    }
  }
  return plane;
}

TEST(Watershed, AgreesWithThePlainFormOnRandomImages) {
  const std::vector<std::pair<int, int>> ranges = {
      {0, 2}, {-40, 40}, {-70000, 70000}, {INT_MIN, INT_MAX - 1}};
  build::Random random(5);
  for (int i = 0; i < 600; ++i) {
    const int side = random.whole(0, 24);
    const auto [low, high] = ranges[i % 4];
    const Plane gray = randomPlane(random, side, side, low, high);
    const Plane markers = randomPlane(random, side, side, -1, 4, i % 3 * 10);
    SJU_waterShedImage image = imageOf(gray, markers);
    SJU_waterShedImage expected = image;
    watershed(image);
    plain::watershed(expected);
    ASSERT_EQ(image.markers, expected.markers) << "image " << i;
    ASSERT_EQ(image.gray, gray);
  }
}

TEST(SeedWatershed, FillsPlateausBeforeTheFlood) {
  SJU_waterShedImage image = imageOf({{4, 4, 0, 4}, {0, 4, 0, 4}}, {{0, 0, 0, 0}, {0, -1, 0, 0}});
  Seeds seeds = {seedAt(0, 0), seedAt(1, 0), seedAt(3, 0)};
  ju_seedWatershed(image, seeds, -1, 5);
  // A marker stops the fill. The plateau of the second seed is taken; it labels only its own pixel.
  EXPECT_EQ(image.markers, (Plane{{5, 6, 0, 7}, {0, -1, 0, 7}}));
  EXPECT_EQ(seeds[1].value, 6);
  EXPECT_EQ(seeds[1].tag, 3);

  // In the flood, pixels with labels of 0 and below are unlabelled.
  EXPECT_EQ(flooded(imageOf({{4, 4, 0, 4}, {9, 4, 0, 4}}), seeds, 0, -1),
            (Plane{{-1, 0, 1, 1}, {0, -1, 1, 1}}));

  image = imageOf({{4, 4, 0}});
  seeds = {seedAt(1, 0)};
  EXPECT_THROW(ju_seedWatershed(image, seeds, -2, 3), std::length_error);
  EXPECT_EQ(image.markers, (Plane{{3, 3, 0}}));

  // An image without rows has a frame of two rows.
  image = {INT_MAX, 0, {}, {}};
  EXPECT_THROW(ju_seedWatershed(image, seeds = {}, 0, 2), std::length_error);
}

TEST(SeedWatershed, SettlesByDistinctLabels) {
  const int w = -1;
  const Seeds ends = {seedAt(0, 0), seedAt(4, 0)};
  EXPECT_EQ(flooded(imageOf({{0, 1, 2, 1, 0}}), ends, 2), (Plane{{2, 2, w, 3, 3}}));
  // The cost of levels far apart is that of their pixels.
  EXPECT_EQ(flooded(imageOf({{0, 1, INT_MAX - 1, 1, 0}}, {{2, 0, 0, 0, 2}}), {}, INT_MAX),
            flat(1, 5, 2));
  // Above the highest level only labels passed in count.
  EXPECT_EQ(flooded(imageOf({{9, 1, 1, 9}}, {{8, 0, w, w}}), {}, 1), (Plane{{8, 8, 8, w}}));
}

TEST(SeedWatershed, AgreesWithThePlainFormOnRandomImages) {
  build::Random random(5);
  int settled = 0;
  for (int i = 0; i < 1500; ++i) {
    const int height = random.whole(1, 16);
    // Rows of about 1024 values have a stride of their own.
    const int width = random.whole(1, 16) + (i % 100 == 0 ? random.pick({1020, 1200}) : 0);
    const int maxLevel = random.whole(0, 9);
    const int scale = random.whole(0, 1) == 0 ? 1 : 400000;
    Plane gray = randomPlane(random, height, width, 0, random.whole(1, i % 5 == 0 ? 3000 : 12));
    Plane markers = randomPlane(random, height, width, -2, i % 4 + 1, random.whole(1, 20));
    markers[0][0] = i % 7 == 0 ? 32769 : markers[0][0];  // labels beyond 15 bits have larger cells
    Seeds seeds(random.whole(0, 3));
    for (SQO_2DValueI& seed : seeds) {
      seed = seedAt(random.whole(0, width - 1), random.whole(0, height - 1));
    }
    SJU_waterShedImage expected = imageOf(gray, markers);
    const int startLabel = i % 8 == 0 ? 32766 : 2;
    plain::seedWatershed(expected, seeds, maxLevel, startLabel);
    for (int r = 0; r < height; ++r) {
      for (int c = 0; c < width; ++c) {
        const int label = expected.markers[r][c];
        const bool isUnreached = label <= 0 && plain::labelsAround(expected, r, c).empty();
        // Pixels that no label reaches are raised above the last level, or the call would not
        // return. Only the order of the levels matters, not their distances.
        gray[r][c] = (isUnreached ? 5000 : gray[r][c]) * scale;
        settled += label != markers[r][c] ? 1 : 0;
      }
    }
    ASSERT_EQ(flooded(imageOf(gray, markers), seeds, maxLevel * scale, startLabel),
              expected.markers)
        << i;
  }
  EXPECT_GT(settled, 10000);
}

TEST(SeedWatershedDeathTest, WaitsForPixelsThatNoLabelReaches) {
  const auto floodUnderTimer = [] {
    const itimerval limit = {{0, 0}, {0, 200000}};
    setitimer(ITIMER_VIRTUAL, &limit, nullptr);  // of processor time, whatever else is running
    flooded(imageOf({{0, 9, 0}}), {seedAt(0, 0)}, 8);
  };
  EXPECT_EXIT(floodUnderTimer(), testing::KilledBySignal(SIGVTALRM), "");
}

}  // namespace
