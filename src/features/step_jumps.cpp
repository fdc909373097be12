// Finds steps by the corners at their feet and tops.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <vector>

#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/slopes.h"
#include "features/valid_profile.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// A corner that can be the foot or the top of a step.
struct StepCorner {
  int point;
  bool isMaximum;  ///< Of the corner measure.
  detail::Arms arms;

  [[nodiscard]] bool is(bool maximum, detail::Arms expected) const {
    return isMaximum == maximum && arms == expected;
  }
};

/// The peaks with one flat and one steep arm.
std::vector<StepCorner> selectStepCorners(const std::vector<int>& peaks,
                                          bool isMaximum,
                                          const detail::Slopes& slopes,
                                          const SQO_cornerParam& param) {
  std::vector<StepCorner> corners;
  for (const int peak : peaks) {
    const detail::Arms arms = detail::armsAt(slopes, peak, param);
    if (arms != detail::Arms::kOther) {
      corners.push_back({peak, isMaximum, arms});
    }
  }
  return corners;
}

/// All corners of a line that can belong to a step, in line order.
std::vector<StepCorner> findStepCorners(const detail::Slopes& slopes,
                                        const detail::ValidProfile& profile,
                                        const SQO_cornerParam& param) {
  using Measure = detail::PeakRule::Measure;
  const auto extrema = detail::findExtrema(slopes, detail::ExtremaSign::kAny);
  const auto peaks = [&](const std::vector<int>& candidates, Measure measure) {
    return detail::findPeaks(candidates, slopes, profile, detail::usualPeaks(param, measure));
  };
  const std::vector<StepCorner> maxima =
      selectStepCorners(peaks(extrema.maxima, Measure::kValue), true, slopes, param);
  const std::vector<StepCorner> minima =
      selectStepCorners(peaks(extrema.minima, Measure::kMagnitude), false, slopes, param);
  std::vector<StepCorner> corners;
  std::merge(maxima.begin(), maxima.end(), minima.begin(), minima.end(),
             std::back_inserter(corners),
             [](const StepCorner& a, const StepCorner& b) { return a.point < b.point; });
  return corners;
}

/// The jump between two neighbouring corners: on the corner at the end of greater z, with the z of
/// that end as its value. Of no type if there is none.
SQO_basicFeature1D jumpBetween(const StepCorner& first,
                               const StepCorner& second,
                               const detail::Slopes& slopes,
                               const STesk3DPosition* lineData,
                               const detail::ValidProfile& profile,
                               int lineIdx) {
  using detail::Arms;
  if (first.is(true, Arms::kFlatThenSteep) && second.is(false, Arms::kSteepThenFlat)) {
    return detail::featureAt(lineData, profile.index[first.point], FEATURE_JUMP_FALL, lineIdx,
                             slopes.backwardZ(first.point));
  }
  if (first.is(false, Arms::kFlatThenSteep) && second.is(true, Arms::kSteepThenFlat)) {
    return detail::featureAt(lineData, profile.index[second.point], FEATURE_JUMP_RISE, lineIdx,
                             slopes.forwardZ(second.point));
  }
  return {};
}

}  // namespace

void qo_getLineJumpFeature_cornerMethod(STesk3DPosition* lineData,
                                        int dataSize,
                                        int lineIdx,
                                        SQO_cornerParam cornerPara,
                                        std::vector<SQO_basicFeature1D>& line_jumps) {
  const detail::ValidProfile profile = detail::collectProfile(lineData, dataSize);
  const detail::Slopes slopes(profile, detail::SlopeSearch::unlimited(cornerPara.scale));
  const std::vector<StepCorner> corners = findStepCorners(slopes, profile, cornerPara);
  std::vector<SQO_basicFeature1D> jumps;
  for (std::size_t k = 0; k + 1 < corners.size(); ++k) {
    const StepCorner& first = corners[k];
    const StepCorner& second = corners[k + 1];
    const double dy = std::abs(profile.y[first.point] - profile.y[second.point]);
    const double dz = std::abs(slopes.forwardZ(second.point) - slopes.backwardZ(first.point));
    if (cornerPara.minEndingGap > dy && dz > cornerPara.minEndingGap_z) {
      const auto jump = jumpBetween(first, second, slopes, lineData, profile, lineIdx);
      if (jump.featureType != 0) {
        jumps.push_back(jump);
      }
    }
  }
  detail::append(jumps, line_jumps);
}
