#include "heightmap/seed_flood.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <iterator>
#include <utility>

namespace scanline::detail {

namespace {

/// What the eight neighbours of a pixel hold.
struct Surroundings {
  Surroundings(const int* pixel, std::ptrdiff_t stride) {
    forEachNeighbour(pixel, stride, [this](int value) { look(value); });
  }

  void look(int value) {
    lowest = std::min(lowest, value);
    largestLabel = std::max(largestLabel, value);
    // Less 1, whatever is no label comes after all labels.
    smallestLabel = std::min(smallestLabel, static_cast<unsigned>(value) - 1U);
  }

  [[nodiscard]] bool hasLabel() const {
    return largestLabel > 0;
  }
  [[nodiscard]] bool hasOneLabel() const {
    return static_cast<unsigned>(largestLabel) - 1U == smallestLabel;
  }
  [[nodiscard]] bool hasWaiting() const {
    return lowest <= kWaiting;
  }

  int lowest = 0;
  int largestLabel = 0;
  unsigned smallestLabel = UINT_MAX;
};

}  // namespace

void SeedFlood::run() {
  const PixelIndex* places = buckets_.places.data();
  for (level_ = 0; level_ < buckets_.levelCount(); ++level_) {
    walk(places + buckets_.starts[level_], places + buckets_.starts[level_ + 1]);
    walkAgain();
  }
  while (!nextSweep_.empty()) {
    thisSweep_.swap(nextSweep_);
    while (!thisSweep_.empty()) {
      level_ = thisSweep_.top();
      thisSweep_.pop();
      places_.clear();
      places_.swap(due_[level_]);
      std::sort(places_.begin(), places_.end());
      walk(places_.data(), places_.data() + places_.size());
      walkAgain();
    }
  }
}

/// Visits the given pixels and those that wake on the way, in scan order.
void SeedFlood::walk(const PixelIndex* begin, const PixelIndex* end) {
  below_.clear();
  above_.clear();
  behind_.clear();
  std::size_t woken = 0;
  while (true) {
    if (beside_ != kNoPixel) {
      visit(std::exchange(beside_, kNoPixel));
    } else if (woken < below_.size() && (begin == end || below_[woken] < *begin)) {
      visit(below_[woken++]);
    } else if (begin != end) {
      if (end - begin > kPrefetchDistance) {
        pixels_.prefetchAround(begin[kPrefetchDistance]);
      }
      visit(*begin++);
    } else {
      return;
    }
  }
}

/// Walks over the level until no more pixels wake on it.
void SeedFlood::walkAgain() {
  while (!above_.empty() || !behind_.empty()) {
    places_.clear();
    std::merge(above_.begin(), above_.end(), behind_.begin(), behind_.end(),
               std::back_inserter(places_));
    walk(places_.data(), places_.data() + places_.size());
  }
}

void SeedFlood::visit(PixelIndex place) {
  int* pixel = pixels_.at(place);
  if (*pixel > 0) {
    return;
  }
  const Surroundings around(pixel, stride_);
  if (!around.hasLabel()) {
    *pixel = kWaiting - level_;
  } else if (!around.hasOneLabel()) {
    *pixel = kWatershed;
  } else {
    *pixel = around.largestLabel;
    if (around.hasWaiting()) {
      wakeAround(place);
    }
  }
}

void SeedFlood::wakeAround(PixelIndex place) {
  for (const PixelIndex above : {place - stride_ - 1, place - stride_, place - stride_ + 1}) {
    if (wake(above)) {
      above_.push_back(above);
    }
  }
  if (wake(place - 1)) {
    behind_.push_back(place - 1);
  }
  if (wake(place + 1)) {
    beside_ = place + 1;
  }
  for (const PixelIndex below : {place + stride_ - 1, place + stride_, place + stride_ + 1}) {
    if (wake(below)) {
      below_.push_back(below);
    }
  }
}

/// Ends the wait of a pixel. True if its level is the one being worked; else it is put down for
/// when its level is worked next.
bool SeedFlood::wake(PixelIndex place) {
  int* pixel = pixels_.at(place);
  if (*pixel > kWaiting) {
    return false;
  }
  const int level = kWaiting - *pixel;
  *pixel = 0;
  if (level == level_) {
    return true;
  }
  if (due_[level].empty()) {
    (level > level_ ? thisSweep_ : nextSweep_).push(level);
  }
  due_[level].push_back(place);
  return false;
}

}  // namespace scanline::detail
