#include <cmath>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr int kFree = 0;
constexpr int kClosesGap = -1;

/// The rims of gaps: strong bends away from the sensor.
detail::Slopes findRims(const detail::SlopedStretches& line, const SQO_cornerParam& param) {
  const detail::CornerExtrema extrema =
      detail::extremaPass(line.slopes, detail::ExtremaSign::kMatching);
  return detail::peakPass(
      extrema.minima, line.stretches.points,
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
  const detail::SlopedStretches line =
      detail::slopedStretches(lineData, cornerPara.minEndingGap_z, cornerPara.scale);
  const detail::Samples& points = line.stretches.points;
  std::vector<SQO_basicFeatureGap> gaps;
  detail::Slopes rims = findRims(line, cornerPara);
  for (std::size_t k = 0; k + 1 < rims.size(); ++k) {
    if (rims[k].type != kFree) {
      continue;
    }
    const STesk3DPosition& start = points[rims[k].pntIdx];
    const STesk3DPosition& end = points[rims[k + 1].pntIdx];
    const double width = widthBetween(start, end);
    if (width > gapParam.min && gapParam.max > width) {
      gaps.push_back({lineIdx, {0, 0, 0}, start, end, {0, 0, 0, 0}});
      rims[k + 1].type = kClosesGap;
    }
  }
  detail::append(gaps, line_gaps);
  detail::stampIndices(lineData);
}
