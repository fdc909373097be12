#include <cmath>

#include "features/corner_stages.h"
#include "features/stretches.h"
#include "line_features.h"

namespace detail = scanline::detail;

namespace {

constexpr int kFree = 0;
constexpr int kClosesGap = -1;

/// The rims of gaps: strong bends away from the sensor.
detail::Slopes findRims(const detail::Stretches& stretches, const SQO_cornerParam& param) {
  const detail::Slopes slopes = detail::slopePass(stretches.points, stretches.ranges,
                                                  detail::SlopeSearch::unlimited(param.scale));
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kMatching);
  return detail::peakPass(
      extrema.minima, stretches.points,
      {param.cornerTh, param.scale * param.scale, detail::CornerMeasure::kMagnitude});
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
  detail::stampIndices(lineData);
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), cornerPara.minEndingGap_z);
  detail::Slopes rims = findRims(stretches, cornerPara);
  for (std::size_t k = 0; k + 1 < rims.size(); ++k) {
    if (rims[k].type != kFree) {
      continue;
    }
    const STesk3DPosition& start = stretches.points[rims[k].pntIdx];
    const STesk3DPosition& end = stretches.points[rims[k + 1].pntIdx];
    const double width = widthBetween(start, end);
    if (width > gapParam.min && gapParam.max > width) {
      line_gaps.push_back({lineIdx, {0, 0, 0}, start, end, {0, 0, 0, 0}});
      rims[k + 1].type = kClosesGap;
    }
  }
}
