// Decides whether a rise and the following fall make a V.
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
  const double riseFar = line.point(rise.endIdx).z;
  const double fallFar = line.point(fall.startIdx).z;
  if (!(riseFar > line.point(fall.endIdx).z && fallFar > line.point(rise.startIdx).z)) {
    return false;
  }
  const auto yNearest = [&line](const SlopeRun& run, double z) {
    return nearestByZ(line.samples, run.startIdx, run.endIdx, z).pt3D.y;
  };
  const bool riseIsFarther = riseFar >= fallFar;
  if (param.apexDiff_z > std::abs(fallFar - riseFar)) {
    const double atZ =
        riseIsFarther ? riseFar - param.apexDiff_z * 0.5 : fallFar - param.apexDiff_z;
    return param.maxWidth_y > std::abs(yNearest(rise, atZ) - yNearest(fall, atZ));
  }
  const double y = riseIsFarther ? yNearest(rise, fallFar) : yNearest(fall, riseFar);
  // The width is the difference of a y and a z. Existing limits are tuned to that.
  return param.maxWidth_y > std::abs(y - fallFar);
}

}  // namespace scanline::detail
