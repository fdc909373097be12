// Collects the measured samples of a line.
#include "features/profile.h"

#include "records/sample_rules.h"

namespace scanline::detail {

Profile collectProfile(const STesk3DPosition* lineData, int dataSize) {
  return collectProfile(lineData, dataSize,
                        [](const STesk3DPosition& sample) { return isMeasured(sample.pt3D.z); });
}

}  // namespace scanline::detail
