#include "heightmap/seed_flood.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

namespace scanline::detail {

namespace {

/// The range of labels among some pixels.
struct LabelRange {
  int largest;        ///< Not above 0 if there is none.
  unsigned smallest;  ///< Less 1, so that whatever is no label comes after all labels.

  explicit LabelRange(int value) : largest(value), smallest(static_cast<unsigned>(value) - 1U) {}
  LabelRange(LabelRange a, LabelRange b)
      : largest(std::max(a.largest, b.largest)), smallest(std::min(a.smallest, b.smallest)) {}

  [[nodiscard]] bool isEmpty() const {
    return largest <= 0;
  }
  [[nodiscard]] bool isOneLabel() const {
    return static_cast<unsigned>(largest) - 1U == smallest;
  }
};

inline LabelRange rangeOfThree(const int* row) {
  return {{LabelRange(row[-1]), LabelRange(row[1])}, LabelRange(row[0])};
}

/// The labels around a pixel. The one before it is taken last, as it is often the one that was
/// written last.
inline LabelRange labelsAround(const int* pixel, std::ptrdiff_t stride) {
  const LabelRange others = {{rangeOfThree(pixel - stride), rangeOfThree(pixel + stride)},
                             LabelRange(pixel[1])};
  return {others, LabelRange(pixel[-1])};
}

}  // namespace

void SeedFlood::run() {
  const PixelIndex* const pixels = buckets_.pixels.get();
  for (level_ = 0; level_ < buckets_.levelCount(); ++level_) {
    walk(pixels + buckets_.starts[level_], pixels + buckets_.starts[level_ + 1]);
    walkAgain();
  }
  while (!levelsNextSweep_.empty()) {
    levelsThisSweep_.swap(levelsNextSweep_);
    while (!levelsThisSweep_.empty()) {
      level_ = levelsThisSweep_.top();
      levelsThisSweep_.pop();
      thisWalk_.clear();
      thisWalk_.swap(pendingByLevel_[level_]);
      std::sort(thisWalk_.begin(), thisWalk_.end());
      walk(thisWalk_.data(), thisWalk_.data() + thisWalk_.size());
      walkAgain();
    }
  }
}

/// Visits the given pixels and those that wake on the way, in scan order.
void SeedFlood::walk(const PixelIndex* begin, const PixelIndex* end) {
  laterThisWalk_.clear();
  nextWalk_.clear();
  nextWalkRow_.clear();
  std::size_t later = 0;
  while (true) {
    if (next_ != kNoPixel) {
      visit(std::exchange(next_, kNoPixel));
    } else if (later < laterThisWalk_.size() && (begin == end || laterThisWalk_[later] < *begin)) {
      visit(laterThisWalk_[later++]);
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
  while (!nextWalk_.empty() || !nextWalkRow_.empty()) {
    thisWalk_.clear();
    std::merge(nextWalk_.begin(), nextWalk_.end(), nextWalkRow_.begin(), nextWalkRow_.end(),
               std::back_inserter(thisWalk_));
    walk(thisWalk_.data(), thisWalk_.data() + thisWalk_.size());
  }
}

inline void SeedFlood::visit(PixelIndex index) {
  int* const pixel = pixels_.at(index);
  if (*pixel > 0) {
    return;
  }
  const LabelRange labels = labelsAround(pixel, stride_);
  if (labels.isEmpty()) {
    *pixel = kWaiting - level_;
    ++waitingCount_;
  } else if (labels.isOneLabel()) {
    *pixel = labels.largest;
    if (waitingCount_ > 0) {
      wakeAround(index);
    }
  } else {
    *pixel = kWatershed;
  }
}

void SeedFlood::wakeAround(PixelIndex index) {
  for (const PixelIndex above : {index - stride_ - 1, index - stride_, index - stride_ + 1}) {
    if (wake(above)) {
      nextWalk_.push_back(above);
    }
  }
  if (wake(index - 1)) {
    nextWalkRow_.push_back(index - 1);
  }
  if (wake(index + 1)) {
    next_ = index + 1;
  }
  for (const PixelIndex below : {index + stride_ - 1, index + stride_, index + stride_ + 1}) {
    if (wake(below)) {
      laterThisWalk_.push_back(below);
    }
  }
}

/// Ends the wait of a pixel. Returns whether its level is the one that is being worked; otherwise
/// the pixel is pending until its level is worked next.
inline bool SeedFlood::wake(PixelIndex index) {
  int* const pixel = pixels_.at(index);
  if (*pixel > kWaiting) {
    return false;
  }
  const int level = kWaiting - *pixel;
  *pixel = 0;
  --waitingCount_;
  if (level == level_) {
    return true;
  }
  if (pendingByLevel_[level].empty()) {
    (level > level_ ? levelsThisSweep_ : levelsNextSweep_).push(level);
  }
  pendingByLevel_[level].push_back(index);
  return false;
}

}  // namespace scanline::detail
