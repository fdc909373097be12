#pragma once

/// Both watersheds in their plainest form. The tests compare the results of the library with it,
/// the benchmarks compare the speed.

#include <algorithm>
#include <array>
#include <tuple>
#include <vector>

#include <scanline/watershed.h>

namespace plain {

inline constexpr std::array<int, 8> kRowSteps = {-1, 0, 1, -1, 1, -1, 0, 1};
inline constexpr std::array<int, 8> kColumnSteps = {-1, -1, -1, 0, 0, 1, 1, 1};

inline bool isMinimum(const SJU_waterShedImage& image, int r, int c) {
  bool lowest = true;
  for (int i = std::max(r - 7, 0); i <= std::min(r + 6, image.height - 1); ++i) {
    for (int j = std::max(c - 7, 0); j <= std::min(c + 6, image.width - 1); ++j) {
      if (image.gray[i][j] < image.gray[r][c]) {
        lowest = false;
        break;
      }
    }
  }
  return lowest;
}

inline void mark(SJU_waterShedImage& image, int r, int c, int& label) {
  for (int k = 0; k < 8; ++k) {
    int& neighbour = image.markers[r + kRowSteps[k]][c + kColumnSteps[k]];
    if (neighbour > 1) {
      neighbour = image.markers[r][c];
      return;
    }
  }
  image.markers[r][c] = ++label;
}

inline std::vector<int> labelsAround(const SJU_waterShedImage& image, int r, int c) {
  std::vector<int> labels;
  for (int k = 0; k < 8; ++k) {
    const int y = r + kRowSteps[k];
    const int x = c + kColumnSteps[k];
    if (y >= 0 && y < image.height && x >= 0 && x < image.width && image.markers[y][x] > 0) {
      labels.push_back(image.markers[y][x]);
    }
  }
  return labels;
}

inline void watershed(SJU_waterShedImage& image) {
  int label = 1;
  for (int r = 1; r < image.height - 1; ++r) {
    for (int c = 1; c < image.width - 1; ++c) {
      if (image.markers[r][c] != 1 && isMinimum(image, r, c)) {
        mark(image, r, c, label);
      }
    }
  }
  std::vector<std::tuple<int, int, int>> order;
  for (int r = 0; r < image.height; ++r) {
    for (int c = 0; c < image.width; ++c) {
      order.emplace_back(image.gray[r][c], c, r);
    }
  }
  std::sort(order.begin(), order.end());
  for (const auto& [value, a, b] : order) {
    if (image.markers[a][b] > 0) {
      continue;
    }
    const std::vector<int> labels = labelsAround(image, a, b);
    if (!labels.empty()) {
      image.markers[a][b] = labels.size() == 1 ? labels[0] : -1;
    }
  }
}

inline void fillPlateau(SJU_waterShedImage& image, const SQO_2DValueI& seed) {
  constexpr std::array<std::array<int, 2>, 4> kSteps = {{{-1, 0}, {0, -1}, {0, 1}, {1, 0}}};
  std::vector<STesk2DPoint> plateau = {{seed.x, seed.y}};
  for (std::size_t i = 0; i < plateau.size(); ++i) {
    const STesk2DPoint p = plateau[i];
    for (const auto& [dx, dy] : kSteps) {
      const int x = p.x + dx;
      const int y = p.y + dy;
      if (x >= 0 && x < image.width && y >= 0 && y < image.height && image.markers[y][x] == 0 &&
          image.gray[y][x] == image.gray[seed.y][seed.x]) {
        image.markers[y][x] = seed.value;
        plateau.push_back({x, y});
      }
    }
  }
}

/// One walk over a bucket; returns how many pixels settled.
inline int walk(SJU_waterShedImage& image, std::vector<STesk2DPoint>& bucket) {
  std::vector<STesk2DPoint> waiting;
  int settled = 0;
  for (const STesk2DPoint p : bucket) {
    if (image.markers[p.y][p.x] > 0) {
      continue;
    }
    std::vector<int> labels;
    for (int k = 0; k < 8; ++k) {
      const int x = p.x + kColumnSteps[k];
      const int y = p.y + kRowSteps[k];
      if (y >= 0 && y < image.height && x >= 0 && x < image.width && image.markers[y][x] > 0 &&
          std::find(labels.begin(), labels.end(), image.markers[y][x]) == labels.end()) {
        labels.push_back(image.markers[y][x]);
      }
    }
    if (labels.empty()) {
      waiting.push_back(p);
    } else {
      image.markers[p.y][p.x] = labels.size() == 1 ? labels[0] : -1;
      ++settled;
    }
  }
  bucket.swap(waiting);
  return settled;
}

/// Stops, in contrast to the library, if no label reaches the remaining pixels.
inline void seedWatershed(SJU_waterShedImage& image,
                          std::vector<SQO_2DValueI>& seeds,
                          int maxLevel,
                          int startLabel) {
  int label = startLabel;
  for (SQO_2DValueI& seed : seeds) {
    image.markers[seed.y][seed.x] = seed.value = label++;
    fillPlateau(image, seed);
  }
  std::vector<std::vector<STesk2DPoint>> buckets(maxLevel + 1);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (image.gray[y][x] <= maxLevel) {
        buckets[image.gray[y][x]].push_back({x, y});
      }
    }
  }
  bool isUnfinished = true;
  for (bool settles = true; isUnfinished && settles;) {
    isUnfinished = false;
    settles = false;
    for (std::vector<STesk2DPoint>& bucket : buckets) {
      while (!bucket.empty() && walk(image, bucket) > 0) {
        settles = true;
      }
      isUnfinished = isUnfinished || !bucket.empty();
    }
  }
}

}  // namespace plain
