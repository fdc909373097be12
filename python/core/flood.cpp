#include "flood.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <queue>
#include <tuple>

namespace binding {

namespace {

/// When a pixel is visited: round over the levels, level, pass over the level, place in the pass.
using Visit = std::tuple<int, int, int, std::size_t>;

/// Follows the course of a flood. A pixel settles at its first visit after a neighbour has got a
/// label, so one entry of a queue per such neighbour stands for all its visits.
class Flood {
 public:
  Flood(SJU_waterShedImage& image, int maxLevel) : image_(image), maxLevel_(maxLevel) {}

  void run() {
    for (int y = 0; y < image_.height; ++y) {
      for (int x = 0; x < image_.width; ++x) {
        if (markerAt(x, y) > 0) {
          forEachNeighbour(x, y, [this](int nx, int ny) { plan(nx, ny, {0, -1, 0, 0}); });
        }
      }
    }
    while (!visits_.empty()) {
      const Visit now = visits_.top();
      visits_.pop();
      settle(now);
    }
  }

  [[nodiscard]] bool isWaiting(int x, int y) const {
    return grayAt(x, y) <= maxLevel_ && markerAt(x, y) <= 0 && !settled_[indexOf(x, y)];
  }

 private:
  [[nodiscard]] int grayAt(int x, int y) const {
    return image_.gray[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
  }
  [[nodiscard]] int markerAt(int x, int y) const {
    return image_.markers[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
  }
  [[nodiscard]] std::size_t indexOf(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(image_.width) +
           static_cast<std::size_t>(x);
  }

  template <typename Action>
  void forEachNeighbour(int x, int y, const Action& action) const {
    for (int ny = std::max(y - 1, 0); ny <= std::min(y + 1, image_.height - 1); ++ny) {
      for (int nx = std::max(x - 1, 0); nx <= std::min(x + 1, image_.width - 1); ++nx) {
        action(nx, ny);
      }
    }
  }

  /// Plans the next visit of a pixel after a neighbour got its label.
  void plan(int x, int y, const Visit& labelled) {
    if (!isWaiting(x, y)) {
      return;
    }
    const auto [round, level, pass, place] = labelled;
    const std::size_t own = indexOf(x, y);
    const int gray = grayAt(x, y);
    if (gray == level) {
      visits_.emplace(round, gray, own > place ? pass : pass + 1, own);
    } else {
      visits_.emplace(gray > level ? round : round + 1, gray, 0, own);
    }
  }

  void settle(const Visit& now) {
    const std::size_t place = std::get<3>(now);
    const auto width = static_cast<std::size_t>(image_.width);
    const int x = static_cast<int>(place % width);
    const int y = static_cast<int>(place / width);
    if (!isWaiting(x, y)) {
      return;
    }
    int label = 0;
    forEachNeighbour(x, y, [&](int nx, int ny) {
      const int other = markerAt(nx, ny);
      if (other > 0 && other != label) {
        label = label == 0 ? other : -1;
      }
    });
    settled_[place] = true;
    image_.markers[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = label;
    if (label > 0) {
      forEachNeighbour(x, y, [&](int nx, int ny) { plan(nx, ny, now); });
    }
  }

  SJU_waterShedImage& image_;
  int maxLevel_;
  std::vector<bool> settled_ = std::vector<bool>(static_cast<std::size_t>(image_.width) *
                                                 static_cast<std::size_t>(image_.height));
  std::priority_queue<Visit, std::vector<Visit>, std::greater<>> visits_;
};

}  // namespace

STesk2DPoint unreachedPixel(const SJU_waterShedImage& image,
                            const std::vector<SQO_2DValueI>& seeds,
                            int maxLevel,
                            int startLabel) {
  SJU_waterShedImage copy = image;
  std::vector<SQO_2DValueI> copiedSeeds = seeds;
  ju_seedWatershed(copy, copiedSeeds, -1, startLabel);  // only labels the seeds and plateaus
  Flood flood(copy, maxLevel);
  flood.run();
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if (flood.isWaiting(x, y)) {
        return {x, y};
      }
    }
  }
  return {-1, -1};
}

}  // namespace binding
