#include <algorithm>

#include <scanline/line_features.h>
#include "features/append.h"
#include "features/corner_types.h"
#include "features/line_runs.h"
#include "features/stretches.h"

namespace detail = scanline::detail;

namespace {

/// A copy of the line in which what lies above a height is a hole.
detail::Samples blankedAbove(const STesk3DPosition* lineData, int dataSize, double maxZ) {
  detail::Samples line(lineData, lineData + std::max(dataSize, 0));
  for (STesk3DPosition& sample : line) {
    if (sample.pt3D.z > maxZ) {
      sample.pt3D.z = 0.0;
    }
  }
  return line;
}

/// The stretches as runs, numbered from 1. The last has the index of its last sample for a number:
/// on a line whose only sample is the first that is 0, and the run counts as absorbed.
std::vector<SQO_RUN> asRuns(const detail::Stretches& stretches) {
  std::vector<SQO_RUN> runs;
  runs.reserve(stretches.ranges.size());
  for (const detail::PointRange& range : stretches.ranges) {
    runs.push_back(stretches.spanOf(range, static_cast<int>(runs.size()) + 1));
  }
  if (!runs.empty()) {
    runs.back().value = stretches.sampleOf.back();
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
  detail::Samples line = blankedAbove(lineData, dataSize, maxZ);
  const detail::Stretches stretches =
      detail::stretchesByZ(line.data(), dataSize, cornerPara.minEndingGap_z);
  detail::markStretchEnds(stretches, line);
  const auto corners = detail::steepCorners(stretches.points, lineIdx, cornerPara);
  std::vector<SQO_RUN> runs = asRuns(stretches);
  detail::joinRuns(line.data(), cornerPara.minEndingGap, cornerPara.minEndingGap_z, runs);
  std::vector<SQO_basicFeature1D> endings;
  detail::appendEndings(line.data(), lineIdx, runs, endings);
  detail::append(corners, endings, *line_features);
  // From here on nothing fails: the caller's record and line take the results.
  line_features->lineIdx = lineIdx;
  std::copy(line.begin(), line.end(), lineData);
}
