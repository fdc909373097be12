#include "features/corner_types.h"

#include <cmath>

namespace scanline::detail {

Slopes cornerPeaks(const Samples& points, const SlopeSearch& search, double cornerTh) {
  const CornerExtrema extrema = extremaPass(slopePass(points, search), ExtremaSign::kAny);
  return peakPass(extrema.maxima, points,
                  {cornerTh, twoScalesSquared(search.scale), CornerMeasure::kValue});
}

int typeBySteepArms(const SQO_pointSlope& corner, const SQO_cornerParam& param) {
  const double steep = param.jumpCornerTh_1;
  const double flat = param.jumpCornerTh_2;
  if (corner.backwardAngle > steep && corner.forwardAngle > -flat) {
    return FEATURE_JUMP_RISE;
  }
  if (-steep > corner.forwardAngle && flat > corner.backwardAngle) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

std::vector<SQO_basicFeature1D> steepCorners(const Samples& points,
                                             int lineIdx,
                                             const SQO_cornerParam& param) {
  std::vector<SQO_basicFeature1D> features;
  const SlopeSearch search = SlopeSearch::unlimited(param.scale);
  for (const SQO_pointSlope& peak : cornerPeaks(points, search, param.cornerTh)) {
    features.push_back(featureAt(points[peak.pntIdx], typeBySteepArms(peak, param), lineIdx, 0.0));
  }
  return features;
}

Arms armsOf(const SQO_pointSlope& corner, const SQO_cornerParam& param) {
  const double flat = param.jumpCornerTh_1;
  const double steep = param.jumpCornerTh_2;
  const double backward = std::abs(corner.backwardAngle);
  const double forward = std::abs(corner.forwardAngle);
  if (flat > backward && forward > steep) {
    return Arms::kFlatThenSteep;
  }
  if (flat > forward && backward > steep) {
    return Arms::kSteepThenFlat;
  }
  return Arms::kOther;
}

int typeByFlatArm(const SQO_pointSlope& corner, const SQO_cornerParam& param) {
  if (param.jumpCornerTh_1 > std::abs(corner.backwardAngle)) {
    return FEATURE_JUMP_RISE;
  }
  return param.jumpCornerTh_1 > std::abs(corner.forwardAngle) ? FEATURE_JUMP_FALL : 0;
}

SQO_basicFeature1D featureAt(const STesk3DPosition& point, int type, int lineIdx, double value) {
  return {type, {lineIdx, point.nPointIdx}, point.pt3D, value};
}

}  // namespace scanline::detail
