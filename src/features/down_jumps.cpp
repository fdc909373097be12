// Finds the jumps of a line at which z rises by more than a limit from one valid sample to the
// next.
#include <cassert>

#include <scanline/line_features.h>
#include "records/sample_rules.h"

void qo_getLineDownJumps(STesk3DPosition* lineData,
                         int dataSize,
                         int lineIdx,
                         double jumpZ,
                         std::vector<SQO_basicFeature1D>& line_jumps) {
  assert(dataSize < 1 || lineData != nullptr);
  if (dataSize < 2) {
    return;
  }
  const STesk3DPosition* previous = nullptr;
  for (int i = 0; i < dataSize; ++i) {
    STesk3DPosition& sample = lineData[i];
    sample.nPointIdx = i;
    if (scanline::detail::isMissing(sample.pt3D.z)) {
      continue;
    }
    if (previous != nullptr && sample.pt3D.z - previous->pt3D.z > jumpZ) {
      line_jumps.push_back(
          {FEATURE_JUMP_RISE, {lineIdx, previous->nPointIdx}, previous->pt3D, 0.0});
    }
    previous = &sample;
  }
}
