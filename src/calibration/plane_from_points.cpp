#include "calibration/plane_from_points.h"

#include "calibration.h"
#include "calibration/rotation.h"

namespace scanline::detail {

namespace {

/// One levelled coordinate of a fit point, in the precision that the points have themselves.
double levelledCoordinate(const cv::Point3_<float>& point, const double* row) {
  const double levelled = rowTimesPoint(row, static_cast<double>(point.x),
                                        static_cast<double>(point.y), static_cast<double>(point.z));
  return static_cast<double>(static_cast<float>(levelled));
}

}  // namespace

double lowestLevelled(const FitPoints& points, const double* row) {
  STeskRangeD range = kEmptyRange;
  for (const cv::Point3_<float>& point : points) {
    foldIntoRange(range, levelledCoordinate(point, row));
  }
  return range.min;
}

SQO_planeCalibPara planeFromPoints(const FitPoints& points, HeightRule rule) {
  const LaserPlane plane = fitLaserPlane(points);
  SQO_planeCalibPara record = adjustPlaneToXYPlane(plane.a, plane.b, -1.0);
  record.planeHeight = rule(points, record.levelMatrix + 6);
  return record;
}

}  // namespace scanline::detail
