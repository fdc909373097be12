#include "roads/cleaning.h"

#include <cmath>

#include <scanline/scanline.h>

namespace program {

Line withoutOutliers(const Line& line, const CleaningParams& params) {
  Line result = line;
  qo_lineDataRemoveOutlier_changeOriginData(
      result.data(), static_cast<int>(result.size()),
      {params.outlierStep, static_cast<double>(params.outlierCount)});
  return result;
}

Line withoutNarrowHoles(const Line& line, const CleaningParams& params) {
  Line result = line;
  std::size_t before = line.size();
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (!isMeasured(line[i])) {
      continue;
    }
    if (before + 1 < i) {
      const STesk3DPoint& a = line[before].pt3D;
      const STesk3DPoint& b = line[i].pt3D;
      const bool isNarrow =
          std::abs(b.y - a.y) <= params.smoothStepY && std::abs(b.z - a.z) <= params.smoothStepZ;
      for (std::size_t k = before + 1; isNarrow && k < i; ++k) {
        const double share = static_cast<double>(k - before) / static_cast<double>(i - before);
        result[k].pt3D = {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y),
                          a.z + share * (b.z - a.z)};
      }
    }
    before = i;
  }
  return result;
}

Line smoothed(const Line& line, const CleaningParams& params) {
  if (params.smoothWindow <= 1) {
    return line;
  }
  Line input = line;
  Line result;
  qo_lineSegSmoothing(input, params.smoothStepY, params.smoothStepZ, params.smoothWindow, result);
  return result;
}

}  // namespace program
