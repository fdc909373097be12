#include "calibration/plane_from_points.h"

#include "calibration/rotation.h"

namespace scanline::detail {

namespace {

constexpr LevelTarget kConstantZ = {{0.0, 0.0, -1.0}, 2};

/// One levelled coordinate of a fit point, rounded to the precision of the points.
double levelledCoordinate(const cv::Point3_<float>& point, const double* row) {
  const double levelled = rowTimesPoint(row, static_cast<double>(point.x),
                                        static_cast<double>(point.y), static_cast<double>(point.z));
  return static_cast<double>(static_cast<float>(levelled));
}

}  // namespace

double smallestLevelled(const FitPoints& points, const double* row) {
  STeskRangeD range = kEmptyRange;
  for (const cv::Point3_<float>& point : points.points()) {
    foldIntoRange(range, levelledCoordinate(point, row));
  }
  return range.min;
}

double meanLevelled(const FitPoints& points, const double* row) {
  if (points.points().empty()) {
    return 0.0;
  }
  double sum = 0.0;
  for (const cv::Point3_<float>& point : points.points()) {
    sum += levelledCoordinate(point, row);
  }
  return sum / static_cast<double>(points.points().size());
}

SQO_planeCalibPara levelPlane(const LaserPlane& plane,
                              const FitPoints& points,
                              const LevelTarget& target,
                              HeightRule rule) {
  SQO_planeCalibPara record = rotationsBetween({plane.a, plane.b, -1.0}, target.direction);
  record.planeHeight = rule(points, record.levelMatrix + std::ptrdiff_t{3} * target.heightRow);
  return record;
}

SQO_planeCalibPara planeFromPoints(const FitPoints& points, HeightRule rule) {
  return levelPlane(points.plane(), points, kConstantZ, rule);
}

}  // namespace scanline::detail
