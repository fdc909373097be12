#pragma once

#include <vector>

#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/// Runs of measured samples, which holes separate, and the features at their ends. `start` and
/// `len` of a run count samples of the line. Its `value` is 0 once the next run has absorbed it.
namespace scanline::detail {

inline int lastOf(const SQO_RUN& run) {
  return run.start + run.len - 1;
}
inline bool isAbsorbed(const SQO_RUN& run) {
  return run.value == 0;
}

/// Cuts a line at all samples that are not measured, and at steps in z above `maxStepZ`.
std::vector<SQO_RUN> findRuns(const STesk3DPosition* lineData, int dataSize, double maxStepZ);

/// Joins successive runs whose facing ends are closer than both gaps. The second one absorbs the
/// first.
void joinRuns(const STesk3DPosition* lineData,
              double gapY,
              double gapZ,
              std::vector<SQO_RUN>& runs);

/// The same without a limit in z.
void joinRuns(const STesk3DPosition* lineData, double gapY, std::vector<SQO_RUN>& runs);

/// Appends the start and the end of each run that is not absorbed, as features.
void appendEndings(const STesk3DPosition* lineData,
                   int lineIdx,
                   const std::vector<SQO_RUN>& runs,
                   std::vector<SQO_basicFeature1D>& endings);

}  // namespace scanline::detail
