// Finds corner peaks and types them by the angles of their arms.
#include "features/corner_types.h"

#include <cmath>

namespace scanline::detail {

std::vector<int> cornerPeaks(const Slopes& slopes,
                             const ValidProfile& profile,
                             const SQO_cornerParam& param) {
  return findPeaks(findExtrema(slopes, ExtremaSign::kAny).maxima, slopes, profile,
                   usualPeaks(param, PeakRule::Measure::kValue));
}

int typeBySteepArms(double backwardAngle, double forwardAngle, const SQO_cornerParam& param) {
  const double steep = param.jumpCornerTh_1;
  const double flat = param.jumpCornerTh_2;
  if (backwardAngle > steep && forwardAngle > -flat) {
    return FEATURE_JUMP_RISE;
  }
  if (-steep > forwardAngle && flat > backwardAngle) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

std::vector<SQO_basicFeature1D> steepCorners(const STesk3DPosition* lineData,
                                             const ValidProfile& profile,
                                             int lineIdx,
                                             const SQO_cornerParam& param) {
  const Slopes slopes(profile, SlopeSearch::unlimited(param.scale));
  std::vector<SQO_basicFeature1D> features;
  for (const int peak : cornerPeaks(slopes, profile, param)) {
    const int type = typeBySteepArms(slopes.backwardAngle(peak), slopes.forwardAngle(peak), param);
    features.push_back(featureAt(lineData, profile.index[peak], type, lineIdx, 0.0));
  }
  return features;
}

Arms armsAt(const Slopes& slopes, int point, const SQO_cornerParam& param) {
  const double flat = param.jumpCornerTh_1;
  const double steep = param.jumpCornerTh_2;
  const double backward = std::abs(slopes.backwardAngle(point));
  const double forward = std::abs(slopes.forwardAngle(point));
  if (flat > backward && forward > steep) {
    return Arms::kFlatThenSteep;
  }
  if (flat > forward && backward > steep) {
    return Arms::kSteepThenFlat;
  }
  return Arms::kOther;
}

int typeByFlatArm(const Slopes& slopes, int point, const SQO_cornerParam& param) {
  if (param.jumpCornerTh_1 > std::abs(slopes.backwardAngle(point))) {
    return FEATURE_JUMP_RISE;
  }
  return param.jumpCornerTh_1 > std::abs(slopes.forwardAngle(point)) ? FEATURE_JUMP_FALL : 0;
}

}  // namespace scanline::detail
