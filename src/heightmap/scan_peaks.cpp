#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/block_walk.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// Finds the lowest sample of a block: the first in line order among equals.
class ScanSearch {
 public:
  ScanSearch(const STesk3DLaserLine* lines, int sampleCount)
      : lines_(lines), lowest_(sampleCount) {}

  /// Takes the lowest sample at each sample index within the band, along the lines as they lie in
  /// memory.
  void enterBand(const BlockSpan& lines) {
    bandNeedsWalk_ = false;
    std::fill(lowest_.begin(), lowest_.end(), Lowest{0.0, kNone});
    for (int l = lines.start; l < lines.limit; ++l) {
      lower(l);
    }
  }

  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& lines,
                                                   const BlockSpan& samples) const {
    const BlockCandidate best = bandNeedsWalk_ ? walk(lines, samples) : lowestOf(samples);
    return best.outer == kNone ? std::nullopt : std::optional(best);
  }

 private:
  static constexpr int kNone = -1;

  struct Lowest {
    double z;
    int line;
  };

  void lower(int line) {
    const STesk3DPosition* const samples = lines_[line].p3DPosition;
    for (std::size_t i = 0; i < lowest_.size(); ++i) {
      const double z = samples[i].pt3D.z;
      if (detail::isNoSample(z)) {
        continue;
      }
      // Once taken it is never replaced: what is found depends on the order within the block.
      bandNeedsWalk_ = bandNeedsWalk_ || std::isnan(z);
      if (lowest_[i].line == kNone || lowest_[i].z > z) {
        lowest_[i] = {z, line};
      }
    }
  }

  [[nodiscard]] BlockCandidate lowestOf(const BlockSpan& samples) const {
    BlockCandidate best = {kNone, kNone, -1.0};
    for (int i = samples.start; i < samples.limit; ++i) {
      const auto [z, line] = lowest_[i];
      if (line != kNone &&
          (best.value < 0.0 || best.value > z || (z == best.value && line < best.outer))) {
        best = {line, i, z};
      }
    }
    return best;
  }

  /// Visits every sample in the order of the lines.
  [[nodiscard]] BlockCandidate walk(const BlockSpan& lines, const BlockSpan& samples) const {
    BlockCandidate best = {kNone, kNone, -1.0};
    for (int l = lines.start; l < lines.limit; ++l) {
      for (int i = samples.start; i < samples.limit; ++i) {
        const double z = lines_[l].p3DPosition[i].pt3D.z;
        if (!detail::isNoSample(z) && (best.value < 0.0 || best.value > z)) {
          best = {l, i, z};
        }
      }
    }
    return best;
  }

  const STesk3DLaserLine* lines_;
  bool bandNeedsWalk_ = false;
  std::vector<Lowest> lowest_;  // by sample index
};

}  // namespace

void qo_getLocalPeaks(STesk3DLaserLine* scanLines,
                      int lineNum,
                      std::vector<SQO_2DValueI>& peaks,
                      SQO_localPkParam blockSize) {
  const int sampleCount = lineNum > 0 ? scanLines[0].nPositionCnt : 0;
  if (sampleCount <= 0) {
    return;
  }
  // The counts are crossed: as many steps in lines as the samples need, and the other way round.
  const auto [width, height] = blockSize;
  const detail::BlockAxis lines(lineNum, detail::halfBlocks(sampleCount, height), width, width);
  const detail::BlockAxis samples(sampleCount, detail::halfBlocks(lineNum, width), height, height);
  std::vector<SQO_2DValueI> found;
  detail::walkBlocks(lines, samples, ScanSearch(scanLines, samples.reach()),
                     [&](const BlockCandidate& peak) {
                       found.push_back({peak.outer, peak.inner, 0, peak.value, 0});
                     });
  peaks.insert(peaks.end(), found.begin(), found.end());
}
