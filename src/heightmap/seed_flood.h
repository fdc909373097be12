#pragma once

#include <functional>
#include <queue>
#include <vector>

#include "heightmap/level_buckets.h"
#include "heightmap/padded_plane.h"

namespace scanline::detail {

/// A pixel of level v that was visited, and waits for a label, holds `kWaiting` - v.
constexpr int kWaiting = -2;

/**
 * The flood of a plane level by level, in walks over each level's pixels and in sweeps over the
 * levels.
 *
 * Every pixel is visited in the first walk over its level. One that finds no label waits, and is
 * not visited again before a neighbour gets one. It then settles at its next turn: later in the
 * same walk, in the next walk over the level, or when its own level is worked next, in this sweep
 * or in the following one.
 */
class SeedFlood {
 public:
  /// `pixels` holds labels above 0, and 0 elsewhere.
  SeedFlood(const LevelBuckets& buckets, PaddedPlane<int>& pixels)
      : buckets_(buckets), pixels_(pixels), stride_(pixels.grid().stride()), due_(buckets.levelCount()) {}

  /// Floods all that can be reached. Afterwards the pixels hold labels, `kWatershed`, or less if
  /// they wait for good; those in no bucket are unchanged.
  void run();

 private:
  using Places = std::vector<PixelIndex>;
  using Levels = std::priority_queue<int, std::vector<int>, std::greater<>>;

  void walk(const PixelIndex* begin, const PixelIndex* end);
  void walkAgain();
  void visit(PixelIndex place);
  void wakeAround(PixelIndex place);
  bool wake(PixelIndex place);

  const LevelBuckets& buckets_;
  PaddedPlane<int>& pixels_;
  PixelIndex stride_;

  int level_ = 0;            // the level that is being worked
  std::vector<Places> due_;  // by level, which pixels to visit when it is worked next
  Levels thisSweep_;         // levels with such pixels, to be worked in this sweep
  Levels nextSweep_;

  // Woken on the level that is being worked. Each list is in scan order, since a neighbour of two
  // pixels that get labels is woken by the first.
  PixelIndex beside_ = kNoPixel;  // the next place of this walk
  Places below_;             // later in this walk
  Places above_;             // in the next walk
  Places behind_;            // in the next walk, in the row of what woke them
  Places places_;            // of the present walk, unless it is a level's first in the first sweep
};

}  // namespace scanline::detail
