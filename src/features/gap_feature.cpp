// Finds the gaps of a line: pairs of successive edges at a distance within a range.
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

/// The edges of a line, in line order: corners at which it turns away from the sensor.
std::vector<STesk3DPosition> findEdges(const std::vector<STesk3DPosition>& lineData,
                                       const SQO_cornerParam& param) {
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), param.minEndingGap_z);
  const detail::Profile& profile = stretches.points;
  const detail::Arms arms(profile, stretches.ranges, detail::ArmSearch::unlimited(param.scale));
  const auto extrema = detail::findExtrema(arms, detail::ExtremaSign::kMatching);
  std::vector<STesk3DPosition> edges;
  for (const int edge : detail::findPeaks(
           extrema.minima, arms, profile,
           {param.cornerTh, param.scale * param.scale, detail::PeakRule::Measure::kMagnitude})) {
    const int sample = profile.index[edge];
    edges.push_back({sample, lineData[sample].pt3D});
  }
  return edges;
}

/// Distance in the x-y plane.
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
  const std::vector<STesk3DPosition> edges = findEdges(lineData, cornerPara);
  std::vector<SQO_basicFeatureGap> gaps;
  for (std::size_t k = 0; k + 1 < edges.size(); ++k) {
    const double width = widthBetween(edges[k], edges[k + 1]);
    if (width > gapParam.min && gapParam.max > width) {
      gaps.push_back({lineIdx, {0, 0, 0}, edges[k], edges[k + 1], {0, 0, 0, 0}});
      ++k;  // The end of a gap is not the start of another.
    }
  }
  detail::append(gaps, line_gaps);
  detail::stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}
