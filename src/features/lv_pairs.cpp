// Decides whether a rise and the fall after it make a V.
#include <cmath>

#include "features/lv_stages.h"

namespace scanline::detail {

STesk3DPosition nearestByZ(const STesk3DPosition* lineData, int first, int last, double z) {
  if (first > last) {
    return {};
  }
  int nearest = first;
  for (int i = first + 1; i <= last; ++i) {
    if (std::abs(lineData[nearest].pt3D.z - z) > std::abs(lineData[i].pt3D.z - z)) {
      nearest = i;
    }
  }
  return lineData[nearest];
}

bool isV(const LvLine& line,
         const SlopeRun& rise,
         const SlopeRun& fall,
         const SQO_VFeatureParam& param) {
  const double riseTop = line.point(rise.endIdx).z;
  const double fallTop = line.point(fall.startIdx).z;
  if (!(riseTop > line.point(fall.endIdx).z && fallTop > line.point(rise.startIdx).z)) {
    return false;
  }
  const auto yNearest = [&line](const SlopeRun& run, double z) {
    return nearestByZ(line.samples, run.startIdx, run.endIdx, z).pt3D.y;
  };
  const bool riseIsHigher = riseTop >= fallTop;
  if (param.apexDiff_z > std::abs(fallTop - riseTop)) {
    const double height =
        riseIsHigher ? riseTop - param.apexDiff_z * 0.5 : fallTop - param.apexDiff_z;
    return param.maxWidth_y > std::abs(yNearest(rise, height) - yNearest(fall, height));
  }
  const double y = riseIsHigher ? yNearest(rise, fallTop) : yNearest(fall, riseTop);
  // Where the tops are not level, the width is y against z of the fall's top. Callers' limits are
  // tuned to that.
  return param.maxWidth_y > std::abs(y - fallTop);
}

}  // namespace scanline::detail
