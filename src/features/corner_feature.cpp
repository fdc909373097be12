#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/line_runs.h"

namespace detail = scanline::detail;

void qo_getLineCornerFeature(STesk3DPosition* lineData,
                             int dataSize,
                             int lineIdx,
                             SQO_cornerParam cornerPara,
                             SQO_lineFeature* line_features) {
  line_features->lineIdx = lineIdx;
  const detail::Samples points = detail::collectValidPoints(lineData, dataSize);
  detail::appendSteepCorners(points, lineIdx, cornerPara, line_features->features);
  std::vector<SQO_RUN> runs = detail::findRuns(lineData, dataSize, cornerPara.minEndingGap_z);
  detail::joinRuns(lineData, cornerPara.minEndingGap, cornerPara.minEndingGap_z, runs);
  detail::appendEndings(lineData, lineIdx, runs, line_features->endings);
}
