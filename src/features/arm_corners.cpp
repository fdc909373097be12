// Finds the corners of the stretches of a line and types them by flat and steep arms.
#include <scanline/line_features.h>
#include "features/corner_types.h"
#include "features/slopes.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

int typeByArms(detail::Arms arms) {
  switch (arms) {
    case detail::Arms::kFlatThenSteep:
      return FEATURE_JUMP_FALL;
    case detail::Arms::kSteepThenFlat:
      return FEATURE_JUMP_RISE;
    case detail::Arms::kOther:
      break;
  }
  return FEATURE_CORNER_OTHER;
}

/// The peaks among the maxima above 0.
std::vector<int> risingPeaks(const detail::Slopes& slopes,
                             const detail::ValidProfile& profile,
                             const SQO_cornerParam& param) {
  const double window = param.scale + param.scale;
  const auto extrema = detail::findExtrema(slopes, detail::ExtremaSign::kMatching);
  return detail::findPeaks(extrema.maxima, slopes, profile,
                           {param.cornerTh, window * window, detail::PeakRule::Measure::kValue});
}

}  // namespace

void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                            int lineIdx,
                            SQO_cornerParam cornerPara,
                            std::vector<SQO_basicFeature1D>& line_features) {
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), cornerPara.minEndingGap_z);
  const detail::ValidProfile& profile = stretches.points;
  const detail::Slopes slopes(profile, stretches.ranges,
                              detail::SlopeSearch::unlimited(cornerPara.scale));
  std::vector<SQO_basicFeature1D> corners;
  for (const int peak : risingPeaks(slopes, profile, cornerPara)) {
    const int type = typeByArms(detail::armsAt(slopes, peak, cornerPara));
    corners.push_back(detail::featureAt(lineData.data(), profile.index[peak], type, lineIdx, 0.0));
  }
  detail::append(corners, line_features);
  detail::stampIndices(lineData);
}
