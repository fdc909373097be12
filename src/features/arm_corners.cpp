// Finds the corners at which a line turns towards the sensor, typed by flat and steep arms.
#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_types.h"
#include "features/line_samples.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

int typeByPattern(detail::ArmPattern pattern) {
  switch (pattern) {
    case detail::ArmPattern::kFlatThenSteep:
      return FEATURE_JUMP_FALL;
    case detail::ArmPattern::kSteepThenFlat:
      return FEATURE_JUMP_RISE;
    case detail::ArmPattern::kOther:
      break;
  }
  return FEATURE_CORNER_OTHER;
}

}  // namespace

void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                            int lineIdx,
                            SQO_cornerParam cornerPara,
                            std::vector<SQO_basicFeature1D>& line_features) {
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), cornerPara.minEndingGap_z);
  const detail::Profile& profile = stretches.points;
  const detail::Arms arms(profile, stretches.ranges,
                          detail::ArmSearch::unlimited(cornerPara.scale));
  const auto extrema = detail::findExtrema(arms, detail::ExtremaSign::kMatching);
  const auto rule = detail::peakRule(cornerPara, detail::PeakRule::Measure::kValue);
  std::vector<SQO_basicFeature1D> corners;
  for (const int peak : detail::findPeaks(extrema.maxima, arms, profile, rule)) {
    const int type = typeByPattern(detail::armPatternAt(arms, peak, cornerPara));
    corners.push_back(detail::featureAt(lineData.data(), profile.index[peak], type, lineIdx));
  }
  detail::append(corners, line_features);
  detail::stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}
