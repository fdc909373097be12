#include "plane_view.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <opencv2/core/types.hpp>
#include <utility>
#include <vector>

#include <scanline/calibration.h>
#include <scanline/geometry.h>
#include <scanline/scan_bounds.h>

namespace examples {
namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

double levelledZ(const STesk3DPoint& p, const SQO_planeCalibPara& calibration) {
  const double* m = calibration.levelMatrix;
  return m[6] * p.x + m[7] * p.y + m[8] * p.z;
}

/// Calls `take(point, z in the levelled frame)` for every measured sample.
template <typename Take>
void forEachMeasured(const Scan& scan, const SQO_planeCalibPara& calibration, Take take) {
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        take(sample.pt3D, levelledZ(sample.pt3D, calibration));
      }
    }
  }
}

}  // namespace

double levelledHeight(const Scan& scan, const SQO_planeCalibPara& calibration) {
  constexpr double kBin = 0.5;
  std::map<double, long long> histogram;
  forEachMeasured(scan, calibration,
                  [&](const STesk3DPoint&, double z) { ++histogram[std::floor(z / kBin)]; });
  const auto fullest =
      std::max_element(histogram.begin(), histogram.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  const double middle = fullest == histogram.end() ? 0.0 : (fullest->first + 0.5) * kBin;
  std::vector<STesk3DPoint> around;
  forEachMeasured(scan, calibration, [&](const STesk3DPoint& p, double z) {
    if (std::abs(z - middle) < kBin) {
      around.push_back({p.x, p.y, z});
    }
  });
  return computeMeanZ(around);
}

PlaneView viewPlane(Scan& scan, const SQO_planeCalibPara& calibration) {
  // Of a levelled plane nothing strays farther than this, but for noise and what lies on it.
  constexpr double kNear = 2.0;
  const double level = levelledHeight(scan, calibration);
  std::vector<cv::Point3f> plane;
  long long measured = 0;
  forEachMeasured(scan, calibration, [&](const STesk3DPoint& p, double z) {
    ++measured;
    if (std::abs(z - level) < kNear) {
      plane.emplace_back(static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z));
    }
  });
  const auto onPlane = static_cast<double>(plane.size());
  std::vector<double> coefficients;
  teskCaculateLaserPlane(std::move(plane), coefficients);
  const double a = coefficients[0];
  const double b = coefficients[1];
  const double c = coefficients[3];
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  PlaneView view{};
  view.tiltDegrees = std::atan(std::hypot(a, b)) * kDegrees;
  view.rise = std::abs(a) * (box.xRange.max - box.xRange.min) +
              std::abs(b) * (box.yRange.max - box.yRange.min);
  view.height =
      0.5 * a * (box.xRange.min + box.xRange.max) + 0.5 * b * (box.yRange.min + box.yRange.max) + c;
  view.share = measured > 0 ? onPlane / static_cast<double>(measured) : 0.0;
  return view;
}

}  // namespace examples
