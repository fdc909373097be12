#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/block_walk.h"
#include "heightmap/prefetch.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// Finds the lowest sample of a block: the first in line order among equals.
class ScanSearch {
 public:
  /// The lowest sample of each sample index, within some lines.
  struct Extrema {
    std::vector<double> z;  ///< Infinite if there is none.
    std::vector<int> line;
    /// Whether any z is infinite, or not a number: once that is the best of a block it is never
    /// replaced, so the outcome depends on the order.
    bool hasOddZ;
  };

  ScanSearch(const STesk3DLaserLine* lines, int sampleCount)
      : lines_(lines), sampleCount_(sampleCount) {}

  [[nodiscard]] Extrema noExtrema() const {
    return {std::vector<double>(sampleCount_), std::vector<int>(sampleCount_), false};
  }

  void clear(Extrema& extrema) const {
    std::fill(extrema.z.begin(), extrema.z.end(), HUGE_VAL);
    extrema.hasOddZ = false;
  }

  void take(int line, Extrema& extrema) const {
    const STesk3DPosition* const samples = lines_[line].p3DPosition;
    bool hasOddZ = false;
    for (int i = 0; i < sampleCount_; ++i) {
      if (i + kPrefetchDistance < sampleCount_) {
        detail::prefetch(samples + i + kPrefetchDistance);
      }
      const double z = samples[i].pt3D.z;
      hasOddZ |= !(z < HUGE_VAL);
      if (extrema.z[i] > z && !detail::isMissing(z)) {
        extrema.z[i] = z;
        extrema.line[i] = line;
      }
    }
    extrema.hasOddZ |= hasOddZ;
  }

  void combine(const Extrema& a, const Extrema& b, Extrema& both) const {
    for (int i = 0; i < sampleCount_; ++i) {
      const bool isLower = a.z[i] > b.z[i];
      both.z[i] = isLower ? b.z[i] : a.z[i];
      both.line[i] = isLower ? b.line[i] : a.line[i];
    }
    both.hasOddZ = a.hasOddZ || b.hasOddZ;
  }

  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& lines,
                                                   const BlockSpan& samples,
                                                   const Extrema& extrema) const {
    if (extrema.hasOddZ) {
      return visitAll(lines, samples);
    }
    BlockCandidate best = {-1, -1, HUGE_VAL};
    for (int i = samples.start; i < samples.limit; ++i) {
      const double z = extrema.z[i];
      const int line = extrema.line[i];
      if (best.value > z || (best.value == z && line < best.outer)) {
        best = {line, i, z};
      }
    }
    return best.outer < 0 ? std::nullopt : std::optional(best);
  }

 private:
  /// In samples: the loop waits for memory most of the time.
  static constexpr int kPrefetchDistance = 64;

  /// Visits every sample in the order of the lines.
  [[nodiscard]] std::optional<BlockCandidate> visitAll(const BlockSpan& lines,
                                                       const BlockSpan& samples) const {
    detail::BlockBest<std::less<>> best;
    for (int l = lines.start; l < lines.limit; ++l) {
      for (int i = samples.start; i < samples.limit; ++i) {
        const double z = lines_[l].p3DPosition[i].pt3D.z;
        if (!detail::isMissing(z)) {
          best.offer(l, i, z);
        }
      }
    }
    return best.get();
  }

  const STesk3DLaserLine* lines_;
  int sampleCount_;
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
