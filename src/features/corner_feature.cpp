// Finds the corners at which a line turns towards the sensor, and the ends of its data segments.
#include <cassert>

#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/line_runs.h"
#include "features/profile.h"
#include "records/append.h"

namespace detail = scanline::detail;

void qo_getLineCornerFeature(STesk3DPosition* lineData,
                             int dataSize,
                             int lineIdx,
                             SQO_cornerParam cornerPara,
                             SQO_lineFeature* line_features) {
  assert(dataSize < 1 || lineData != nullptr);
  assert(line_features != nullptr);
  const detail::Profile profile = detail::collectProfile(lineData, dataSize);
  const auto corners = detail::steepCorners(lineData, profile, lineIdx, cornerPara);
  std::vector<SQO_RUN> segments = detail::findRuns(lineData, dataSize, cornerPara.minEndingGap_z);
  detail::joinRuns(lineData, cornerPara.minEndingGap, cornerPara.minEndingGap_z, segments);
  std::vector<SQO_basicFeature1D> endings;
  detail::appendEndings(lineData, lineIdx, segments, endings);
  detail::append(corners, endings, *line_features);
  line_features->lineIdx = lineIdx;
}
