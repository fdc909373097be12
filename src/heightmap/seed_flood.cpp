#include "heightmap/seed_flood.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace scanline::detail {

namespace {

/// The eight neighbours of a pixel combined by OR. The one before it comes last, since it has often
/// been written just before.
template <typename Word>
Word combineAround(const Word* pixel, std::ptrdiff_t stride) {
  const Word* const above = pixel - stride;
  const Word* const below = pixel + stride;
  return ((above[-1] | above[0]) | (above[1] | below[-1])) | ((below[0] | below[1]) | pixel[1]) |
         pixel[-1];
}

/// The same without neighbours that wait.
template <typename Word>
Word combineSettledAround(const Word* pixel, std::ptrdiff_t stride) {
  Word combined = 0;
  forEachNeighbour(pixel, stride, [&combined](Word cell) {
    combined |= FloodCells<Word>::isWaiting(cell) ? 0 : cell;
  });
  return combined;
}

}  // namespace

template <typename Word>
void SeedFlood<Word>::run() {
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
template <typename Word>
void SeedFlood<Word>::walk(const PixelIndex* begin, const PixelIndex* end) {
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

/// Repeats the walk over the level until no more of its pixels wake.
template <typename Word>
void SeedFlood<Word>::walkAgain() {
  while (!nextWalk_.empty() || !nextWalkRow_.empty()) {
    thisWalk_.clear();
    std::merge(nextWalk_.begin(), nextWalk_.end(), nextWalkRow_.begin(), nextWalkRow_.end(),
               std::back_inserter(thisWalk_));
    walk(thisWalk_.data(), thisWalk_.data() + thisWalk_.size());
  }
}

template <typename Word>
void SeedFlood<Word>::visit(PixelIndex index) {
  Word* const pixel = pixels_.at(index);
  if (Cells::isLabelled(*pixel)) {
    return;
  }
  Word around = combineAround(pixel, stride_);
  const bool hasWaiting = Cells::isWaiting(around);
  if (hasWaiting) {
    around = combineSettledAround(pixel, stride_);
  }
  if (!Cells::hasLabel(around)) {
    *pixel = Cells::waitingAt(level_);
    ++waitingCount_;
  } else if (Cells::hasDifferentLabels(around)) {
    *pixel = Cells::kWatershed;
  } else {
    *pixel = Cells::onlyLabel(around);
    if (hasWaiting) {
      wakeAround(index);
    }
  }
}

template <typename Word>
void SeedFlood<Word>::wakeAround(PixelIndex index) {
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

/// Ends the wait of a pixel, if it waits. Returns whether it does and is of the level that is being
/// worked. A pixel of another level is pending until its level is worked next.
template <typename Word>
bool SeedFlood<Word>::wake(PixelIndex index) {
  Word* const pixel = pixels_.at(index);
  if (!Cells::isWaiting(*pixel)) {
    return false;
  }
  const int level = Cells::levelOf(*pixel);
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

template class SeedFlood<std::uint32_t>;
template class SeedFlood<std::uint64_t>;

}  // namespace scanline::detail
