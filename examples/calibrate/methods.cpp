#include "methods.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <scanline/calibration.h>
#include "plane_calibration.h"

namespace examples {
namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

/// Which row of the level matrix gives the height of a levelled plane.
enum class HeightAxis { y = 1, z = 2 };

double levelled(const SQO_planeCalibPara& record, HeightAxis axis, const STesk3DPoint& p) {
  const double* row = &record.levelMatrix[3 * static_cast<std::size_t>(axis)];
  return row[0] * p.x + row[1] * p.y + row[2] * p.z;
}

/// The levelled heights of the samples that `isPlane(sample, height)` accepts, and their residual.
template <typename IsPlane>
std::optional<Residual> residualOf(const Scan& scan,
                                   const SQO_planeCalibPara& record,
                                   HeightAxis axis,
                                   IsPlane isPlane) {
  std::vector<double> heights;
  double sum = 0.0;
  double measured = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMeasured(sample)) {
        continue;
      }
      measured += 1.0;
      const double height = levelled(record, axis, sample.pt3D);
      if (isPlane(sample, height)) {
        heights.push_back(height);
        sum += height;
      }
    }
  }
  if (heights.empty()) {
    return std::nullopt;
  }
  const auto count = static_cast<double>(heights.size());
  Residual residual = {count / measured, 0.0, 0.0};
  for (const double height : heights) {
    const double distance = std::abs(height - sum / count);
    residual.mean += distance / count;
    residual.max = std::max(residual.max, distance);
  }
  return residual;
}

double turnOf(const double (&m)[9]) {
  const double twiceSine = std::hypot(m[7] - m[5], m[2] - m[6], m[3] - m[1]);
  return std::atan2(twiceSine, m[0] + m[4] + m[8] - 1.0) * kDegrees;
}

std::optional<double> trueTurn(const std::optional<TruePlane>& plane, HeightAxis axis) {
  if (!plane) {
    return std::nullopt;
  }
  const double along = axis == HeightAxis::z ? 1.0 : std::abs(plane->b);
  return std::acos(along / std::hypot(plane->a, plane->b, 1.0)) * kDegrees;
}

SQO_EulerAngles anglesOf(const double (&m)[9]) {
  const double rows[3][3] = {{m[0], m[1], m[2]}, {m[3], m[4], m[5]}, {m[6], m[7], m[8]}};
  return rotationMatrixToEulerZYX(rows);
}

Calibration describe(std::string method,
                     const Scene& scene,
                     const SQO_planeCalibPara& record,
                     HeightAxis axis,
                     std::optional<Residual> residual) {
  return {std::move(method),
          scene.name,
          record,
          turnOf(record.levelMatrix),
          trueTurn(scene.truth, axis),
          residual,
          anglesOf(record.levelMatrix)};
}

/// A calibration onto constant z. A height that no sample can have tells that there is no plane.
Calibration describeByBand(std::string method,
                           const Scene& scene,
                           const SQO_planeCalibPara& record,
                           double band) {
  std::optional<Residual> residual;
  if (isLevelling(record) && record.planeHeight != 0.0) {
    residual =
        residualOf(scene.scan, record, HeightAxis::z, [&](const STesk3DPosition&, double height) {
          return std::abs(height - record.planeHeight) <= band;
        });
  }
  return describe(std::move(method), scene, record, HeightAxis::z, residual);
}

}  // namespace

STesk3DRangeD regionOf(STeskRangeD x, STeskRangeD y) {
  // The upper end of the z range limits y, not z: it has to let the whole of y pass.
  return {x, y, {0.0, y.max}};
}

std::vector<STesk3DRangeD> cornerRegions(const STesk3DRangeD& box) {
  constexpr double kShare = 0.15;
  const double width = kShare * (box.xRange.max - box.xRange.min);
  const double length = kShare * (box.yRange.max - box.yRange.min);
  std::vector<STesk3DRangeD> regions;
  for (const double x : {box.xRange.min, box.xRange.max - width}) {
    for (const double y : {box.yRange.min, box.yRange.max - length}) {
      regions.push_back(regionOf({x, x + width}, {y, y + length}));
    }
  }
  return regions;
}

Calibration byLowestHeight(const Scene& scene, double band) {
  Scan scan = scene.scan;
  std::vector<STesk3DLaserLine> lines = pointerForm(scan);
  const auto record = qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
  return describeByBand("heights, lowest", scene, record, band);
}

Calibration byMeanHeight(const Scene& scene, double band) {
  Scan scan = scene.scan;
  return describeByBand("heights, mean", scene, qo_getPlaneCalibPara2(scan), band);
}

Calibration byRegions(const Scene& scene, std::vector<STesk3DRangeD> regions, double band) {
  Scan scan = scene.scan;
  std::vector<STesk3DLaserLine> lines = pointerForm(scan);
  const auto record =
      qo_getPlaneCalibPara_ROIs(lines.data(), static_cast<int>(lines.size()), regions);
  return describeByBand("regions", scene, record, band);
}

Calibration byUnbrokenLines(Scene scene, double band) {
  const SQO_planeCalibPara record = qo_getHolePlaneCalibPara(scene.scan);
  return describeByBand("unbroken lines", scene, record, band);
}

Calibration byGround(Scene scene) {
  const SQO_planeCalibPara record = qo_HCameraVScan_getGroundCalibPara(scene.scan);
  const auto residual =
      residualOf(scene.scan, record, HeightAxis::y,
                 [](const STesk3DPosition& sample, double) { return sample.nPointIdx == 1; });
  return describe("ground", scene, record, HeightAxis::y, residual);
}

}  // namespace examples
