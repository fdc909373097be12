// Finds jumps, which may spread over several samples, by the two corners of a step.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_types.h"
#include "features/line_samples.h"
#include "features/profile.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// A corner that can be an end of a step.
struct StepCorner {
  int point;
  bool isMaximum;  ///< Of the turn angle.
  detail::ArmPattern pattern;

  [[nodiscard]] bool is(bool maximum, detail::ArmPattern expected) const {
    return isMaximum == maximum && pattern == expected;
  }
};

/// The peaks with one flat and one steep arm.
std::vector<StepCorner> selectStepCorners(const std::vector<int>& peaks,
                                          bool isMaximum,
                                          const detail::Arms& arms,
                                          const SQO_cornerParam& param) {
  std::vector<StepCorner> corners;
  for (const int peak : peaks) {
    const detail::ArmPattern pattern = detail::armPatternAt(arms, peak, param);
    if (pattern != detail::ArmPattern::kOther) {
      corners.push_back({peak, isMaximum, pattern});
    }
  }
  return corners;
}

/// All corners of a line that can be ends of a step, in line order.
std::vector<StepCorner> findStepCorners(const detail::Arms& arms,
                                        const detail::Profile& profile,
                                        const SQO_cornerParam& param) {
  using Measure = detail::PeakRule::Measure;
  const auto extrema = detail::findExtrema(arms, detail::ExtremaSign::kAny);
  const auto peaks = [&](const std::vector<int>& candidates, Measure measure) {
    return detail::findPeaks(candidates, arms, profile, detail::peakRule(param, measure));
  };
  const std::vector<StepCorner> maxima =
      selectStepCorners(peaks(extrema.maxima, Measure::kValue), true, arms, param);
  const std::vector<StepCorner> minima =
      selectStepCorners(peaks(extrema.minima, Measure::kMagnitude), false, arms, param);
  std::vector<StepCorner> corners;
  std::merge(maxima.begin(), maxima.end(), minima.begin(), minima.end(),
             std::back_inserter(corners),
             [](const StepCorner& a, const StepCorner& b) { return a.point < b.point; });
  return corners;
}

/// The jump between two successive corners: at the corner on the side of greater z, with the z of
/// that side as its value. The type is 0 if there is none.
SQO_basicFeature1D jumpBetween(const StepCorner& first,
                               const StepCorner& second,
                               const detail::Arms& arms,
                               const STesk3DPosition* lineData,
                               const detail::Profile& profile,
                               int lineIdx) {
  using detail::ArmPattern;
  if (first.is(true, ArmPattern::kFlatThenSteep) && second.is(false, ArmPattern::kSteepThenFlat)) {
    return detail::featureAt(lineData, profile.index[first.point], FEATURE_JUMP_FALL, lineIdx,
                             arms.backwardZ(first.point));
  }
  if (first.is(false, ArmPattern::kFlatThenSteep) && second.is(true, ArmPattern::kSteepThenFlat)) {
    return detail::featureAt(lineData, profile.index[second.point], FEATURE_JUMP_RISE, lineIdx,
                             arms.forwardZ(second.point));
  }
  return {};
}

}  // namespace

void qo_getLineJumpFeature_cornerMethod(STesk3DPosition* lineData,
                                        int dataSize,
                                        int lineIdx,
                                        SQO_cornerParam cornerPara,
                                        std::vector<SQO_basicFeature1D>& line_jumps) {
  const detail::Profile profile = detail::collectProfile(lineData, dataSize);
  const detail::Arms arms(profile, detail::ArmSearch::unlimited(cornerPara.scale));
  const std::vector<StepCorner> corners = findStepCorners(arms, profile, cornerPara);
  std::vector<SQO_basicFeature1D> jumps;
  for (std::size_t k = 0; k + 1 < corners.size(); ++k) {
    const StepCorner& first = corners[k];
    const StepCorner& second = corners[k + 1];
    const double dy = std::abs(profile.y[first.point] - profile.y[second.point]);
    const double dz = std::abs(arms.forwardZ(second.point) - arms.backwardZ(first.point));
    if (cornerPara.minEndingGap > dy && dz > cornerPara.minEndingGap_z) {
      const auto jump = jumpBetween(first, second, arms, lineData, profile, lineIdx);
      if (jump.featureType != 0) {
        jumps.push_back(jump);
      }
    }
  }
  detail::append(jumps, line_jumps);
}
