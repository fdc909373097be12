#pragma once

#include <vector>

#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/// Runs of continuous samples on a line, and the endings that they turn into. In a run `start` and
/// `len` count samples of the line, and `value` is 0 once the next run has absorbed it.
namespace scanline::detail {

/// The runs between holes; a step in z above `maxStepZ` breaks a run as well.
std::vector<SQO_RUN> findRuns(const STesk3DPosition* lineData, int dataSize, double maxStepZ);

/// Joins neighbouring runs whose facing ends lie closer than both gaps: the later one absorbs the
/// earlier.
void joinRuns(const STesk3DPosition* lineData,
              double gapY,
              double gapZ,
              std::vector<SQO_RUN>& runs);

/// The same whatever the step in z.
void joinRuns(const STesk3DPosition* lineData, double gapY, std::vector<SQO_RUN>& runs);

/// Appends the start and the end of each run that was not absorbed.
void appendEndings(const STesk3DPosition* lineData,
                   int lineIdx,
                   const std::vector<SQO_RUN>& runs,
                   std::vector<SQO_basicFeature1D>& endings);

}  // namespace scanline::detail
