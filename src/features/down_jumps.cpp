#include <scanline/line_features.h>
#include "features/append.h"
#include "features/stretches.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

void qo_getLineDownJumps(STesk3DPosition* lineData,
                         int dataSize,
                         int lineIdx,
                         double jumpZ,
                         std::vector<SQO_basicFeature1D>& line_jumps) {
  if (dataSize < 2) {
    return;
  }
  std::vector<SQO_basicFeature1D> jumps;
  int previous = -1;
  for (int i = 0; i < dataSize; ++i) {
    if (detail::isNoSample(lineData[i].pt3D.z)) {
      continue;
    }
    if (previous >= 0 && lineData[i].pt3D.z - lineData[previous].pt3D.z > jumpZ) {
      jumps.push_back({FEATURE_JUMP_RISE, {lineIdx, previous}, lineData[previous].pt3D, 0.0});
    }
    previous = i;
  }
  detail::append(jumps, line_jumps);
  detail::stampIndices(lineData, dataSize);
}
