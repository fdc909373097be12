// Cuts a line into runs of measured samples, joins these across narrow holes, and lists their ends.
#include "features/line_runs.h"

#include <cmath>

#include "features/line_samples.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr int kLive = 1;
constexpr int kAbsorbed = 0;

/// Joins successive runs whose facing ends are `close(end, start)`.
template <typename Close>
void joinCloseRuns(const STesk3DPosition* lineData, Close close, std::vector<SQO_RUN>& runs) {
  for (std::size_t i = 1; i < runs.size(); ++i) {
    SQO_RUN& before = runs[i - 1];
    SQO_RUN& run = runs[i];
    if (close(lineData[lastOf(before)].pt3D, lineData[run.start].pt3D)) {
      run.len = lastOf(run) - before.start + 1;
      run.start = before.start;
      before.value = kAbsorbed;
    }
  }
}

}  // namespace

std::vector<SQO_RUN> findRuns(const STesk3DPosition* lineData, int dataSize, double maxStepZ) {
  std::vector<SQO_RUN> runs;
  bool open = false;
  for (int i = 0; i < dataSize; ++i) {
    if (!isMeasured(lineData[i].pt3D.z)) {
      open = false;
      continue;
    }
    const bool breaks = open && std::abs(lineData[i].pt3D.z - lineData[i - 1].pt3D.z) > maxStepZ;
    if (open && !breaks) {
      ++runs.back().len;
    } else {
      runs.push_back({i, 1, kLive});
      open = true;
    }
  }
  return runs;
}

void joinRuns(const STesk3DPosition* lineData,
              double gapY,
              double gapZ,
              std::vector<SQO_RUN>& runs) {
  joinCloseRuns(
      lineData,
      [gapY, gapZ](const STesk3DPoint& end, const STesk3DPoint& start) {
        return gapY > std::abs(end.y - start.y) && gapZ > std::abs(end.z - start.z);
      },
      runs);
}

void joinRuns(const STesk3DPosition* lineData, double gapY, std::vector<SQO_RUN>& runs) {
  joinCloseRuns(
      lineData,
      [gapY](const STesk3DPoint& end, const STesk3DPoint& start) {
        return gapY > std::abs(end.y - start.y);
      },
      runs);
}

void appendEndings(const STesk3DPosition* lineData,
                   int lineIdx,
                   const std::vector<SQO_RUN>& runs,
                   std::vector<SQO_basicFeature1D>& endings) {
  for (const SQO_RUN& run : runs) {
    if (!isAbsorbed(run)) {
      endings.push_back(featureAt(lineData, run.start, FEATURE_SEG_START, lineIdx));
      endings.push_back(featureAt(lineData, lastOf(run), FEATURE_SEG_END, lineIdx));
    }
  }
}

}  // namespace scanline::detail
