// Finds the corners and data segments of the part of a line that is not farther than a limit.
#include <cassert>

#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/line_samples.h"
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

/// The ends of the stretches, each of which is a data segment. Sample 0 by itself is none.
std::vector<SQO_basicFeature1D> endingsOf(const detail::Stretches& stretches,
                                          const STesk3DPosition* lineData,
                                          int lineIdx) {
  const std::vector<int>& index = stretches.points.index;
  std::vector<SQO_basicFeature1D> endings;
  if (!index.empty() && index.back() == 0) {
    return endings;
  }
  const auto append = [&](int type, int point) {
    endings.push_back(detail::featureAt(lineData, index[point], type, lineIdx));
  };
  for (const auto& [first, last] : stretches.ranges) {
    append(FEATURE_SEG_START, first);
    append(FEATURE_SEG_END, last);
  }
  return endings;
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
  const auto endings = endingsOf(stretches, lineData, lineIdx);
  detail::append(corners, endings, *line_features);
  // Nothing is allocated from here on.
  line_features->lineIdx = lineIdx;
  blankAbove(lineData, dataSize, maxZ);
  detail::markStretchEnds(stretches, lineData);
}
