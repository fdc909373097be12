// Finds gaps between pairs of rims.
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_peaks.h"
#include "features/line_samples.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// The rims of gaps on a line, in line order: strong corners with a negative measure.
std::vector<STesk3DPosition> findRims(const std::vector<STesk3DPosition>& lineData,
                                      const SQO_cornerParam& param) {
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), param.minEndingGap_z);
  const detail::Profile& profile = stretches.points;
  const detail::Arms arms(profile, stretches.ranges, detail::ArmSearch::unlimited(param.scale));
  const auto extrema = detail::findExtrema(arms, detail::ExtremaSign::kMatching);
  std::vector<STesk3DPosition> rims;
  for (const int rim : detail::findPeaks(
           extrema.minima, arms, profile,
           {param.cornerTh, param.scale * param.scale, detail::PeakRule::Measure::kMagnitude})) {
    const int sample = profile.index[rim];
    rims.push_back({sample, lineData[sample].pt3D});
  }
  return rims;
}

double widthBetween(const STesk3DPosition& a, const STesk3DPosition& b) {
  const double dy = a.pt3D.y - b.pt3D.y;
  const double dx = a.pt3D.x - b.pt3D.x;
  return std::sqrt(dy * dy + dx * dx);
}

}  // namespace

void qo_getLineGapFeature(std::vector<STesk3DPosition>& lineData,
                          int lineIdx,
                          SQO_cornerParam cornerPara,
                          STeskRangeD gapParam,
                          std::vector<SQO_basicFeatureGap>& line_gaps) {
  const std::vector<STesk3DPosition> rims = findRims(lineData, cornerPara);
  std::vector<SQO_basicFeatureGap> gaps;
  for (std::size_t k = 0; k + 1 < rims.size(); ++k) {
    const double width = widthBetween(rims[k], rims[k + 1]);
    if (width > gapParam.min && gapParam.max > width) {
      gaps.push_back({lineIdx, {0, 0, 0}, rims[k], rims[k + 1], {0, 0, 0, 0}});
      ++k;  // A rim that closes a gap opens no other.
    }
  }
  detail::append(gaps, line_gaps);
  detail::stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}
