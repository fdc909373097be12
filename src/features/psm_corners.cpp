// Finds the corners and data segments of the part of a line that is not farther than a limit.
#include <cassert>

#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/line_runs.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// Turns the samples above a limit into missing ones.
void blankAbove(STesk3DPosition* lineData, int dataSize, double maxZ) {
  for (int i = 0; i < dataSize; ++i) {
    if (lineData[i].pt3D.z > maxZ) {
      lineData[i].pt3D.z = 0.0;
    }
  }
}

/// The stretches as runs, numbered from 1. The last one has the index of its last sample for a
/// number: 0 if sample 0 is the only one, which makes the run count as absorbed.
std::vector<SQO_RUN> asRuns(const detail::Stretches& stretches) {
  std::vector<SQO_RUN> runs;
  runs.reserve(stretches.ranges.size());
  for (const detail::PointRange& range : stretches.ranges) {
    runs.push_back(stretches.spanOf(range, static_cast<int>(runs.size()) + 1));
  }
  if (!runs.empty()) {
    runs.back().value = stretches.points.index.back();
  }
  return runs;
}

}  // namespace

void ju_getLineCornerFeature_PSM(STesk3DPosition* lineData,
                                 int dataSize,
                                 int lineIdx,
                                 double maxZ,
                                 SQO_cornerParam cornerPara,
                                 SQO_lineFeature* line_features) {
  assert(dataSize < 1 || lineData != nullptr);
  assert(line_features != nullptr);
  const detail::Stretches stretches =
      detail::stretchesByZ(lineData, dataSize, cornerPara.minEndingGap_z, maxZ);
  auto corners = detail::steepCorners(lineData, stretches.points, lineIdx, cornerPara);
  for (SQO_basicFeature1D& corner : corners) {
    corner.jumpPos2D.y = lineData[corner.jumpPos2D.y].nPointIdx;  // The stamp of the caller.
  }
  std::vector<SQO_RUN> runs = asRuns(stretches);
  detail::joinRuns(lineData, cornerPara.minEndingGap, cornerPara.minEndingGap_z, runs);
  std::vector<SQO_basicFeature1D> endings;
  detail::appendEndings(lineData, lineIdx, runs, endings);
  detail::append(corners, endings, *line_features);
  // Nothing is allocated from here on.
  line_features->lineIdx = lineIdx;
  blankAbove(lineData, dataSize, maxZ);
  detail::markStretchEnds(stretches, lineData);
}
