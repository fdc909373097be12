// Collects the valid points of a line.
#include "features/valid_profile.h"

#include <algorithm>

#include "records/sample_rules.h"

namespace scanline::detail {

ValidProfile collectProfile(const STesk3DPosition* lineData, int dataSize) {
  return collectProfile(lineData, dataSize, [](const STesk3DPosition& sample) {
    return isAboveNoSample(sample.pt3D.z);
  });
}

Samples collectValidPoints(const STesk3DPosition* lineData, int dataSize) {
  Samples points;
  points.reserve(static_cast<std::size_t>(std::max(dataSize, 0)));
  for (int i = 0; i < dataSize; ++i) {
    if (isAboveNoSample(lineData[i].pt3D.z)) {
      points.push_back({i, lineData[i].pt3D});
    }
  }
  return points;
}

}  // namespace scanline::detail
