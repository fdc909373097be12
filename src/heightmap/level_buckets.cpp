#include "heightmap/level_buckets.h"

#include <algorithm>
#include <climits>
#include <iterator>

namespace scanline::detail {

namespace {

/// The numbers of the levels of an image.
class LevelNumbers {
 public:
  LevelNumbers(const PixelRows& gray, int height, int width, int maxLevel) : maxLevel_(maxLevel) {
    int highest = -1;
    for (int r = 0; r < height; ++r) {
      for (int c = 0; c < width; ++c) {
        highest = std::max(highest, gray[r][c] <= maxLevel ? gray[r][c] : -1);
      }
    }
    count_ = highest < 0 ? 0 : static_cast<std::size_t>(highest) + 1;
    if (count_ > static_cast<std::size_t>(height) * width || count_ > INT_MAX) {
      closeUp(gray, height, width);
    }
  }

  [[nodiscard]] std::size_t count() const {
    return count_;
  }

  [[nodiscard]] bool isLevel(int value) const {
    return value >= 0 && value <= maxLevel_;
  }

  [[nodiscard]] std::size_t numberOf(int value) const {
    return values_.empty()
               ? static_cast<std::size_t>(value)
               : std::lower_bound(values_.begin(), values_.end(), value) - values_.begin();
  }

 private:
  /// With values far apart there would be more levels than pixels: numbers those that occur.
  void closeUp(const PixelRows& gray, int height, int width) {
    for (int r = 0; r < height; ++r) {
      std::copy_if(gray[r].begin(), gray[r].begin() + width, std::back_inserter(values_),
                   [this](int value) { return isLevel(value); });
    }
    std::sort(values_.begin(), values_.end());
    values_.erase(std::unique(values_.begin(), values_.end()), values_.end());
    count_ = values_.size();
  }

  int maxLevel_;
  std::size_t count_ = 0;
  std::vector<int> values_;  // by number; empty if they are the numbers themselves
};

}  // namespace

LevelBuckets fillBuckets(
    const PixelRows& gray, int height, int width, int maxLevel, const PaddedGrid& grid) {
  const LevelNumbers levels(gray, height, width, maxLevel);
  LevelBuckets buckets{{}, std::vector<std::size_t>(levels.count() + 2)};
  // Entry v + 2 counts level v, entry v + 1 then moves from its start to its end.
  std::vector<std::size_t>& starts = buckets.starts;
  for (int r = 0; r < height; ++r) {
    for (int c = 0; c < width; ++c) {
      if (levels.isLevel(gray[r][c])) {
        ++starts[levels.numberOf(gray[r][c]) + 2];
      }
    }
  }
  for (std::size_t v = 2; v < starts.size(); ++v) {
    starts[v] += starts[v - 1];
  }
  buckets.places.resize(starts.back());
  for (int r = 0; r < height; ++r) {
    for (int c = 0; c < width; ++c) {
      if (levels.isLevel(gray[r][c])) {
        buckets.places[starts[levels.numberOf(gray[r][c]) + 1]++] = grid.indexOf(r, c);
      }
    }
  }
  starts.pop_back();
  return buckets;
}

}  // namespace scanline::detail
