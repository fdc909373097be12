// Finds corner peaks and types them by the angles of their arms.
#include "features/corner_types.h"

#include <cmath>

#include "features/line_samples.h"

namespace scanline::detail {

std::vector<int> cornerPeaks(const Arms& arms,
                             const Profile& profile,
                             const SQO_cornerParam& param) {
  return findPeaks(findExtrema(arms, ExtremaSign::kAny).maxima, arms, profile,
                   peakRule(param, PeakRule::Measure::kValue));
}

int typeBySteepArms(const Arms& arms, int point, const SQO_cornerParam& param) {
  const double steep = param.jumpCornerTh_1;
  const double against = param.jumpCornerTh_2;
  const double backward = arms.backwardAngle(point);
  const double forward = arms.forwardAngle(point);
  if (backward > steep && forward > -against) {
    return FEATURE_JUMP_RISE;
  }
  if (-steep > forward && against > backward) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

std::vector<SQO_basicFeature1D> steepCorners(const STesk3DPosition* lineData,
                                             const Profile& profile,
                                             int lineIdx,
                                             const SQO_cornerParam& param) {
  const Arms arms(profile, ArmSearch::unlimited(param.scale));
  std::vector<SQO_basicFeature1D> features;
  for (const int peak : cornerPeaks(arms, profile, param)) {
    const int type = typeBySteepArms(arms, peak, param);
    features.push_back(featureAt(lineData, profile.index[peak], type, lineIdx));
  }
  return features;
}

ArmPattern armPatternAt(const Arms& arms, int point, const SQO_cornerParam& param) {
  const double flat = param.jumpCornerTh_1;
  const double steep = param.jumpCornerTh_2;
  const double backward = std::abs(arms.backwardAngle(point));
  const double forward = std::abs(arms.forwardAngle(point));
  if (flat > backward && forward > steep) {
    return ArmPattern::kFlatThenSteep;
  }
  if (flat > forward && backward > steep) {
    return ArmPattern::kSteepThenFlat;
  }
  return ArmPattern::kOther;
}

int typeByFlatArm(const Arms& arms, int point, const SQO_cornerParam& param) {
  if (param.jumpCornerTh_1 > std::abs(arms.backwardAngle(point))) {
    return FEATURE_JUMP_RISE;
  }
  return param.jumpCornerTh_1 > std::abs(arms.forwardAngle(point)) ? FEATURE_JUMP_FALL : 0;
}

}  // namespace scanline::detail
