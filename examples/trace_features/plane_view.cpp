#include "plane_view.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <vector>

#include "geometry.h"
#include "scan_bounds.h"

namespace examples {
namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

/// The heights that the samples will have in the levelled frame, as points of which only z counts.
std::vector<STesk3DPoint> levelledHeights(const Scan& scan, const SQO_planeCalibPara& calibration) {
  const double* m = calibration.levelMatrix;
  std::vector<STesk3DPoint> heights;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        const STesk3DPoint& p = sample.pt3D;
        heights.push_back({0.0, 0.0, m[6] * p.x + m[7] * p.y + m[8] * p.z});
      }
    }
  }
  return heights;
}

/**
 * The mean of the heights in the fullest of all windows that are one unit wide.
 *
 * The calibration's own height is the lowest sample of the plane, which a groove or a stray sample
 * pulls down; what the scan shows as its plane lies where most samples are.
 */
double mostCommonHeight(const std::vector<STesk3DPoint>& heights) {
  constexpr double kBin = 0.5;
  std::map<double, long long> histogram;
  for (const STesk3DPoint& p : heights) {
    ++histogram[std::floor(p.z / kBin)];
  }
  const auto fullest =
      std::max_element(histogram.begin(), histogram.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  const double middle = (fullest->first + 0.5) * kBin;
  std::vector<STesk3DPoint> around;
  std::copy_if(heights.begin(), heights.end(), std::back_inserter(around),
               [&](const STesk3DPoint& p) { return std::abs(p.z - middle) < kBin; });
  return computeMeanZ(around);
}

}  // namespace

PlaneView viewPlane(Scan& scan, const SQO_planeCalibPara& calibration) {
  PlaneView view{};
  view.isFound = calibration.planeHeight != -1.0;
  if (!view.isFound) {
    return view;
  }
  const double* m = calibration.levelMatrix;
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  const double midX = 0.5 * (box.xRange.min + box.xRange.max);
  const double midY = 0.5 * (box.yRange.min + box.yRange.max);
  view.tiltDegrees = std::acos(std::clamp(m[8], -1.0, 1.0)) * kDegrees;
  view.rise = (std::abs(m[6]) * (box.xRange.max - box.xRange.min) +
               std::abs(m[7]) * (box.yRange.max - box.yRange.min)) /
              m[8];
  view.levelledHeight = mostCommonHeight(levelledHeights(scan, calibration));
  view.heightAtMiddle = (view.levelledHeight - m[6] * midX - m[7] * midY) / m[8];
  return view;
}

}  // namespace examples
