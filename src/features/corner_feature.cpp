// Finds the corners of a line and the ends of its runs.
#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/line_runs.h"
#include "features/valid_profile.h"
#include "records/append.h"

namespace detail = scanline::detail;

void qo_getLineCornerFeature(STesk3DPosition* lineData,
                             int dataSize,
                             int lineIdx,
                             SQO_cornerParam cornerPara,
                             SQO_lineFeature* line_features) {
  const detail::ValidProfile profile = detail::collectProfile(lineData, dataSize);
  const auto corners = detail::steepCorners(lineData, profile, lineIdx, cornerPara);
  std::vector<SQO_RUN> runs = detail::findRuns(lineData, dataSize, cornerPara.minEndingGap_z);
  detail::joinRuns(lineData, cornerPara.minEndingGap, cornerPara.minEndingGap_z, runs);
  std::vector<SQO_basicFeature1D> endings;
  detail::appendEndings(lineData, lineIdx, runs, endings);
  detail::append(corners, endings, *line_features);
  line_features->lineIdx = lineIdx;
}
