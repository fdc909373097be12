// Separates the coordinates of a line's valid samples.
#include "features/valid_profile.h"

#include <algorithm>
#include <cstddef>

#include "records/sample_rules.h"

namespace scanline::detail {

ValidProfile collectProfile(const STesk3DPosition* lineData, int dataSize) {
  const auto size = static_cast<std::size_t>(std::max(dataSize, 0));
  ValidProfile profile = {std::vector<double>(size), std::vector<double>(size),
                          std::vector<int>(size)};
  std::size_t count = 0;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    profile.y[count] = point.y;
    profile.z[count] = point.z;
    profile.index[count] = i;
    count += isAboveNoSample(point.z) ? 1 : 0;
  }
  profile.y.resize(count);
  profile.z.resize(count);
  profile.index.resize(count);
  return profile;
}

}  // namespace scanline::detail
