#include "roads/cleaning.h"

#include <scanline/scanline.h>

namespace program {

Line withoutOutliers(const Line& line, const CleaningParams& params) {
  Line result = line;
  qo_lineDataRemoveOutlier_changeOriginData(
      result.data(), static_cast<int>(result.size()),
      {params.outlierStep, static_cast<double>(params.outlierCount)});
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
