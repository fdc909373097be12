// Finds the reference plane of a scan by the distribution of its heights.
#include <scanline/calibration.h>
#include "calibration/plane_from_points.h"
#include "calibration/plane_search.h"

namespace {

using scanline::detail::findPlaneWindow;
using scanline::detail::FitPoints;
using scanline::detail::HeightRule;
using scanline::detail::meanLevelled;
using scanline::detail::planeFromPoints;
using scanline::detail::PlaneWindow;
using scanline::detail::ScanView;
using scanline::detail::selectFitPoints;
using scanline::detail::smallestLevelled;
using scanline::detail::viewOf;

/// The result if there is no plane.
constexpr SQO_planeCalibPara kNoPlane = {
    {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0},
    -1.0,
    {1.0, 0.0, 0.0, 0.0, 1.0, 0.0, 0.0, 0.0, 1.0},
};

FitPoints pointsInWindow(const ScanView& scan, const PlaneWindow& window) {
  const STeskRangeD heights = window.heights;
  return selectFitPoints(scan, window.expectedSamples, [heights](const STesk3DPoint& point) {
    return heights.min <= point.z && point.z <= heights.max;
  });
}

SQO_planeCalibPara calibrateBySearch(const ScanView& scan, HeightRule rule) {
  const std::optional<PlaneWindow> window = findPlaneWindow(scan);
  if (!window) {
    return kNoPlane;
  }
  return planeFromPoints(pointsInWindow(scan, *window), rule);
}

}  // namespace

SQO_planeCalibPara qo_getPlaneCalibPara(STesk3DLaserLine* lines, int lineNum) {
  return calibrateBySearch(viewOf(lines, lineNum), smallestLevelled);
}

SQO_planeCalibPara qo_getPlaneCalibPara2(std::vector<std::vector<STesk3DPosition>>& scan) {
  return calibrateBySearch(viewOf(scan), meanLevelled);
}
