#include <gtest/gtest.h>
#include <sys/time.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <cstddef>
#include <random>
#include <set>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "watershed.h"

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

Plane segmented(SJU_waterShedImage image) {
  watershed(image);
  return image.markers;
}

Plane flooded(SJU_waterShedImage image, Seeds seeds, int maxLevel, int startLabel = 2) {
  ju_seedWatershed(image, seeds, maxLevel, startLabel);
  return image.markers;
}

// The rules told once more in the plainest way, pixel by pixel.
namespace plain {

std::vector<int> labelsAround(const Plane& markers, int r, int c) {
  std::vector<int> labels;
  for (int k = 0; k < 9; ++k) {
    const int y = r + k / 3 - 1;
    const int x = c + k % 3 - 1;
    if (k != 4 && y >= 0 && y < static_cast<int>(markers.size()) && x >= 0 &&
        x < static_cast<int>(markers[y].size()) && markers[y][x] > 0) {
      labels.push_back(markers[y][x]);
    }
  }
  return labels;
}

void markMinima(const Plane& gray, int side, Plane& markers) {
  int label = 1;
  const auto isLowest = [&](int r, int c) {
    int lowest = gray[r][c];
    for (int i = std::max(r - 7, 0); i <= std::min(r + 6, side - 1); ++i) {
      for (int j = std::max(c - 7, 0); j <= std::min(c + 6, side - 1); ++j) {
        lowest = std::min(lowest, gray[i][j]);
      }
    }
    return gray[r][c] == lowest;
  };
  const auto overwriteNeighbour = [&](int r, int c) {
    for (const int k : {0, 1, 2, 3, 5, 6, 7, 8}) {
      int& neighbour = markers[r + k % 3 - 1][c + k / 3 - 1];
      if (neighbour > 1) {
        neighbour = markers[r][c];
        return true;
      }
    }
    return false;
  };
  for (int r = 1; r < side - 1; ++r) {
    for (int c = 1; c < side - 1; ++c) {
      if (markers[r][c] != 1 && isLowest(r, c) && !overwriteNeighbour(r, c)) {
        markers[r][c] = ++label;
      }
    }
  }
}

Plane segmented(const Plane& gray, Plane markers) {
  const int side = static_cast<int>(gray.size());
  markMinima(gray, side, markers);
  std::set<std::tuple<int, int, int>> turns;
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) {
      turns.insert({gray[r][c], c, r});
    }
  }
  for (const auto& [value, a, b] : turns) {
    const std::vector<int> labels = labelsAround(markers, a, b);
    if (markers[a][b] <= 0 && !labels.empty()) {
      markers[a][b] = labels.size() == 1 ? labels[0] : -1;
    }
  }
  return markers;
}

/// Floods from the markers alone. Pixels that no label can reach are given up.
Plane flooded(const Plane& gray, Plane markers, int maxLevel) {
  Plane isSettled = flat(static_cast<int>(gray.size()), static_cast<int>(gray[0].size()));
  const auto walk = [&](int level) {
    bool progress = false;
    for (int r = 0; r < static_cast<int>(gray.size()); ++r) {
      for (int c = 0; c < static_cast<int>(gray[r].size()); ++c) {
        const std::vector<int> around = labelsAround(markers, r, c);
        const std::set<int> labels(around.begin(), around.end());
        if (gray[r][c] == level && markers[r][c] <= 0 && isSettled[r][c] == 0 && !labels.empty()) {
          markers[r][c] = labels.size() == 1 ? *labels.begin() : -1;
          isSettled[r][c] = 1;
          progress = true;
        }
      }
    }
    return progress;
  };
  for (bool progress = true; progress;) {
    progress = false;
    for (int level = 0; level <= maxLevel; ++level) {
      while (walk(level)) {
        progress = true;
      }
    }
  }
  return markers;
}

}  // namespace plain

class Random {
 public:
  int between(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random_);
  }

  /// Random values at `percent` of the pixels, and zeros elsewhere.
  Plane plane(int height, int width, int low, int high, int percent = 100) {
    Plane plane = flat(height, width);
    for (std::vector<int>& row : plane) {
      for (int& value : row) {
        value = between(1, 100) <= percent ? between(low, high) : 0;
      }
    }
    return plane;
  }

 private:
  std::mt19937 random_{5};
};

TEST(Watershed, SmallImages) {
  const int w = -1;
  EXPECT_EQ(segmented(imageOf({})), Plane{});
  EXPECT_EQ(segmented(imageOf(flat(2, 2))), flat(2, 2));
  EXPECT_EQ(segmented(imageOf(flat(3, 3))), (Plane{{2, w, 2}, {w, 2, w}, {2, w, 2}}));
  EXPECT_EQ(segmented(imageOf(flat(4, 4))), flat(4, 4)) << "each label is wiped by the next pixel";
  // The value at (1, 0) calls up the marker at (0, 1) first; equal labels count one by one.
  const Plane gray = {{9, 5}, {1, 7}};
  EXPECT_EQ(segmented(imageOf(gray, {{3, 0}, {0, 0}})), (Plane{{3, 3}, {w, w}}));
  EXPECT_EQ(segmented(imageOf(gray, {{1, 0}, {0, w}})), (Plane{{1, 1}, {w, w}}));
}

TEST(Watershed, FollowsTheRulesOnRandomImages) {
  const std::vector<std::pair<int, int>> ranges = {
      {0, 2}, {-40, 40}, {-70000, 70000}, {INT_MIN, INT_MAX}};
  Random random;
  for (int i = 0; i < 400; ++i) {
    const int side = random.between(1, 24);
    const auto [low, high] = ranges[i % 4];
    const Plane gray = random.plane(side, side, low, high);
    const Plane markers = random.plane(side, side, -1, 4, i % 3 * 10);
    SJU_waterShedImage image = imageOf(gray, markers);
    watershed(image);
    ASSERT_EQ(image.markers, plain::segmented(gray, markers)) << "image " << i;
    ASSERT_EQ(image.gray, gray);
  }
}

TEST(SeedWatershed, FillsPlateausBeforeTheFlood) {
  SJU_waterShedImage image = imageOf({{4, 4, 0, 4}, {0, 4, 0, 4}}, {{0, 0, 0, 0}, {0, -1, 0, 0}});
  Seeds seeds = {seedAt(0, 0), seedAt(1, 0), seedAt(3, 0)};
  ju_seedWatershed(image, seeds, -1, 5);
  // A marker stops the fill; the second seed finds its plateau taken, and keeps its own pixel.
  EXPECT_EQ(image.markers, (Plane{{5, 6, 0, 7}, {0, -1, 0, 7}}));
  EXPECT_EQ(seeds[1].value, 6);
  EXPECT_EQ(seeds[1].tag, 3);

  image = imageOf({{4, 4, 0}});
  seeds = {seedAt(1, 0)};
  EXPECT_THROW(ju_seedWatershed(image, seeds, -2, 3), std::length_error);
  EXPECT_EQ(image.markers, (Plane{{3, 3, 0}}));
}

TEST(SeedWatershed, SettlesByDistinctLabels) {
  const int w = -1;
  const Seeds ends = {seedAt(0, 0), seedAt(4, 0)};
  EXPECT_EQ(flooded(imageOf({{0, 1, 1, 1, 0}}), ends, 1), (Plane{{2, 2, 2, w, 3}}));
  EXPECT_EQ(flooded(imageOf({{0, 1, 2, 1, 0}}), ends, 2), (Plane{{2, 2, w, 3, 3}}));
  EXPECT_EQ(flooded(imageOf({{0, 1, 2, 1, 0}}, {{2, 0, 0, 0, 2}}), {}, INT_MAX), flat(1, 5, 2));
  // Above the highest level only what the caller labelled counts.
  EXPECT_EQ(flooded(imageOf({{9, 1, 1, 9}}, {{8, 0, w, w}}), {}, 1), (Plane{{8, 8, 8, w}}));
}

TEST(SeedWatershed, FollowsTheRulesOnRandomImages) {
  Random random;
  int settled = 0;
  for (int i = 0; i < 1500; ++i) {
    const int height = random.between(1, 16);
    const int width = random.between(1, 16);
    const int maxLevel = random.between(0, 9);
    const int scale = random.between(0, 1) == 0 ? 1 : 400000;
    Plane gray = random.plane(height, width, 0, random.between(1, i % 5 == 0 ? 3000 : 12));
    const Plane markers = random.plane(height, width, -2, i % 4 + 1, random.between(1, 20));
    const Plane expected = plain::flooded(gray, markers, maxLevel);
    for (int r = 0; r < height; ++r) {
      for (int c = 0; c < width; ++c) {
        const bool isLost = expected[r][c] <= 0 && plain::labelsAround(expected, r, c).empty();
        // A pixel out of reach must lie too high, or the call would not return. Only the order of
        // the levels matters, not how far they lie apart.
        gray[r][c] = (isLost ? 5000 : gray[r][c]) * scale;
        settled += expected[r][c] != markers[r][c] ? 1 : 0;
      }
    }
    ASSERT_EQ(flooded(imageOf(gray, markers), {}, maxLevel * scale), expected) << "image " << i;
  }
  EXPECT_GT(settled, 10000);
}

TEST(SeedWatershedDeathTest, WaitsForPixelsOutOfReach) {
  const auto floodUnderTimer = [] {
    const itimerval limit = {{0, 0}, {0, 200000}};
    setitimer(ITIMER_VIRTUAL, &limit, nullptr);  // of processor time, whatever else is running
    flooded(imageOf({{0, 9, 0}}), {seedAt(0, 0)}, 8);
  };
  EXPECT_EXIT(floodUnderTimer(), testing::KilledBySignal(SIGVTALRM), "");
}

}  // namespace
