// Fits the reference plane of a scan to the samples in given regions.
#include <algorithm>

#include <scanline/calibration.h>
#include "calibration/plane_from_points.h"

namespace {

using scanline::detail::FitPoints;
using scanline::detail::planeFromPoints;
using scanline::detail::ScanView;
using scanline::detail::selectFitPoints;
using scanline::detail::smallestLevelled;
using scanline::detail::viewOf;

/// The upper end of the z range is a second upper limit of y; z has no upper limit.
bool isInRegion(const STesk3DPoint& point, const STesk3DRangeD& roi) {
  return point.x >= roi.xRange.min && point.x <= roi.xRange.max && point.y >= roi.yRange.min &&
         point.y <= roi.yRange.max && point.z >= roi.zRange.min && point.y <= roi.zRange.max;
}

/// The plane through the samples in any of the regions. A sample in several regions counts once.
SQO_planeCalibPara calibrateInRegions(const ScanView& scan,
                                      const STesk3DRangeD* first,
                                      const STesk3DRangeD* end) {
  const FitPoints points = selectFitPoints(scan, 0, [=](const STesk3DPoint& point) {
    return std::any_of(first, end,
                       [&](const STesk3DRangeD& roi) { return isInRegion(point, roi); });
  });
  return planeFromPoints(points, smallestLevelled);
}

}  // namespace

SQO_planeCalibPara qo_getPlaneCalibPara2_ROI(std::vector<std::vector<STesk3DPosition>>& scan,
                                             STesk3DRangeD roi) {
  return calibrateInRegions(viewOf(scan), &roi, &roi + 1);
}

SQO_planeCalibPara qo_getPlaneCalibPara_ROIs(STesk3DLaserLine* lines,
                                             int lineNum,
                                             std::vector<STesk3DRangeD>& rois) {
  return calibrateInRegions(viewOf(lines, lineNum), rois.data(), rois.data() + rois.size());
}
