#pragma once

#include <cstddef>
#include <functional>
#include <queue>
#include <vector>

#include "heightmap/flood_cells.h"
#include "heightmap/level_buckets.h"
#include "heightmap/padded_plane.h"

namespace scanline::detail {

/**
 * Floods a plane level by level, in walks over each level's pixels and in sweeps over the levels.
 *
 * Every pixel is visited in the first walk over its level. A pixel without a labelled neighbour
 * waits, and is not visited again before a neighbour gets a label, which wakes it. It is then
 * visited at its next turn: later in the same walk, in the next walk over the level, or when its
 * own level is worked next, in this sweep or in the following one.
 */
template <typename Word>
class SeedFlood {
 public:
  /// `pixels` are labelled or hold 0.
  SeedFlood(const LevelBuckets& buckets, PaddedPlane<Word>& pixels)
      : buckets_(buckets),
        pixels_(pixels),
        stride_(pixels.grid().stride()),
        pendingByLevel_(buckets.levelCount()) {}

  /// Floods all pixels that labels can reach. Afterwards each pixel of the buckets is labelled, a
  /// watershed, or waits; other pixels are unchanged.
  void run();

  /// Whether any pixel waits.
  [[nodiscard]] bool isAnyWaiting() const {
    return waitingCount_ > 0;
  }

 private:
  using Cells = FloodCells<Word>;
  using Pixels = std::vector<PixelIndex>;
  using Levels = std::priority_queue<int, std::vector<int>, std::greater<>>;

  void walk(const PixelIndex* begin, const PixelIndex* end);
  void walkAgain();
  void visit(PixelIndex index);
  void wakeAround(PixelIndex index);
  bool wake(PixelIndex index);

  const LevelBuckets& buckets_;
  PaddedPlane<Word>& pixels_;
  PixelIndex stride_;
  std::size_t waitingCount_ = 0;

  // Pixels that woke on other levels than the one that is being worked.
  std::vector<Pixels> pendingByLevel_;  // to be visited when their level is worked next
  Levels levelsThisSweep_;              // the levels that have such pixels
  Levels levelsNextSweep_;

  // Pixels that woke on the level that is being worked. Each list is in scan order, since a
  // neighbour of two pixels that get labels is woken by the first.
  int level_ = 0;
  PixelIndex next_ = kNoPixel;  // to be visited next
  Pixels laterThisWalk_;
  Pixels nextWalk_;     // to be visited in the next walk: above the pixel that woke them,
  Pixels nextWalkRow_;  // and in the same row
  Pixels thisWalk_;     // the pixels of a walk, unless it is the first one over a level
};

}  // namespace scanline::detail
