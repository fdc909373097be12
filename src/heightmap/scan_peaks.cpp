// Finds the samples of a scan with a locally lowest z.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/block_walk.h"
#include "records/prefetch.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using detail::BlockCandidate;
using detail::BlockSpan;

/// Finds the lowest sample of a block, the first of equal ones, lines before samples.
class ScanSearch {
 public:
  /// The lowest sample of each sample index, within some lines.
  struct Extrema {
    std::vector<double> z;  ///< Infinite if there is none.
    std::vector<int> line;
    /// Whether any z is infinite or NaN. In a block with such a sample the best one depends on the
    /// order in which the samples are visited.
    bool hasUnordered;
  };

  ScanSearch(const STesk3DLaserLine* lines, int sampleCount)
      : lines_(lines), sampleCount_(sampleCount) {}

  [[nodiscard]] Extrema noExtrema() const {
    return {std::vector<double>(sampleCount_), std::vector<int>(sampleCount_), false};
  }

  void clear(Extrema& extrema) const {
    std::fill(extrema.z.begin(), extrema.z.end(), HUGE_VAL);
    extrema.hasUnordered = false;
  }

  void take(int line, Extrema& extrema) const {
    const STesk3DPosition* const samples = lines_[line].p3DPosition;
    bool hasUnordered = false;
    for (int i = 0; i < sampleCount_; ++i) {
      if (i + kPrefetchDistance < sampleCount_) {
        detail::prefetch(samples + i + kPrefetchDistance);
      }
      const double z = samples[i].pt3D.z;
      hasUnordered |= !(z < HUGE_VAL);
      if (extrema.z[i] > z && !detail::isMissing(z)) {
        extrema.z[i] = z;
        extrema.line[i] = line;
      }
    }
    extrema.hasUnordered |= hasUnordered;
  }

  void combine(const Extrema& a, const Extrema& b, Extrema& both) const {
    for (int i = 0; i < sampleCount_; ++i) {
      const bool isLower = a.z[i] > b.z[i];
      both.z[i] = isLower ? b.z[i] : a.z[i];
      both.line[i] = isLower ? b.line[i] : a.line[i];
    }
    both.hasUnordered = a.hasUnordered || b.hasUnordered;
  }

  [[nodiscard]] std::optional<BlockCandidate> best(const BlockSpan& lines,
                                                   const BlockSpan& samples,
                                                   const Extrema& extrema) const {
    if (extrema.hasUnordered) {
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
  /// In samples. Without prefetching the loop mostly waits for memory.
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

/// Whether no line has fewer samples than the first.
[[maybe_unused]] bool hasEqualLines(const STesk3DLaserLine* lines, int lineCount) {
  return std::all_of(lines, lines + lineCount, [&](const STesk3DLaserLine& line) {
    return line.nPositionCnt >= lines[0].nPositionCnt;
  });
}

}  // namespace

void qo_getLocalPeaks(STesk3DLaserLine* scanLines,
                      int lineNum,
                      std::vector<SQO_2DValueI>& peaks,
                      SQO_localPkParam blockSize) {
  const int sampleCount = lineNum > 0 ? scanLines[0].nPositionCnt : 0;
  if (sampleCount <= 0) {
    return;
  }
  assert(hasEqualLines(scanLines, lineNum));
  // The counts are crossed: as many blocks in lines as the samples need, and vice versa.
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
