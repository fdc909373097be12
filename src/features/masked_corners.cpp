#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

/// Copies of the samples of one label, stamped with their index on the line.
detail::Samples collectLabelled(const std::vector<STesk3DPosition>& lineData, int maskID) {
  detail::Samples points;
  points.reserve(lineData.size());
  int index = 0;
  for (const STesk3DPosition& sample : lineData) {
    if (detail::isAboveNoSample(sample.pt3D.z) && sample.nPointIdx == maskID) {
      points.push_back({index, sample.pt3D});
    }
    ++index;
  }
  return points;
}

}  // namespace

void qo_maskData_getLineCornerFeature(std::vector<STesk3DPosition>& lineData,
                                      int lineIdx,
                                      int maskID,
                                      SQO_cornerParam cornerPara,
                                      std::vector<SQO_basicFeature1D>& line_features) {
  const detail::Samples points = collectLabelled(lineData, maskID);
  // What lies beyond the far limit belongs to another part of the label.
  const detail::SlopeSearch search = {cornerPara.scale, cornerPara.scale * 4.0,
                                      detail::LoneSide::kNoSlopes};
  std::vector<SQO_basicFeature1D> corners;
  for (const auto& peak : detail::cornerPeaks(points, search, cornerPara.cornerTh)) {
    corners.push_back(detail::featureAt(
        points[peak.pntIdx], detail::typeBySteepArms(peak, cornerPara), lineIdx, peak.corner));
  }
  detail::append(corners, line_features);
}
