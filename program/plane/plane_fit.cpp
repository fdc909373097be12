#include "plane/plane_fit.h"

#include <algorithm>
#include <cmath>
#include <opencv2/core/types.hpp>
#include <optional>
#include <vector>

#include "base/number.h"

namespace program {
namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

STesk3DPoint minus(const STesk3DPoint& p, const cv::Point3d& q) {
  return {p.x - q.x, p.y - q.y, p.z - q.z};
}

double turnDegrees(const double (&m)[9]) {
  return std::acos(std::clamp(0.5 * (m[0] + m[4] + m[8] - 1.0), -1.0, 1.0)) * kDegrees;
}

/// The least distance from a plane that counts as near.
double bandOf(const Extent& extent) {
  constexpr double kNoiseInBand = 4.0;
  constexpr double kSpanInBand = 0.005;
  return std::max(kNoiseInBand * extent.noise,
                  kSpanInBand * (extent.shownZ.max - extent.shownZ.min));
}

/// The measured samples up to `reach` from a candidate's plane, from the centre of the scan: the
/// fit takes single precision.
std::vector<cv::Point3f> samplesNear(const PlaneCandidate& candidate,
                                     const Scan& scan,
                                     double reach) {
  std::vector<cv::Point3f> points;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      const STesk3DPoint& p = sample.pt3D;
      if (isMeasured(sample) &&
          std::abs(levelledHeight(candidate, p) - candidate.height) <= reach) {
        const STesk3DPoint d = minus(p, candidate.centre);
        points.emplace_back(static_cast<float>(d.x), static_cast<float>(d.y),
                            static_cast<float>(d.z));
      }
    }
  }
  return points;
}

}  // namespace

double levelledHeight(const PlaneCandidate& candidate, const STesk3DPoint& p) {
  const STesk3DPoint d = minus(p, candidate.centre);
  const double* row = &candidate.calibration.levelMatrix[candidate.isGround ? 3 : 6];
  const double offset = candidate.isGround ? candidate.centre.y : candidate.centre.z;
  return row[0] * d.x + row[1] * d.y + row[2] * d.z + offset;
}

double medianHeight(const PlaneCandidate& candidate,
                    const Scan& scan,
                    const std::function<bool(const STesk3DPoint&)>& isUsed) {
  std::vector<double> heights;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample) && isUsed(sample.pt3D)) {
        heights.push_back(levelledHeight(candidate, sample.pt3D));
      }
    }
  }
  return heights.empty() ? std::nan("") : quantile(heights, 0.5);
}

bool determinePlane(const Scan& scan, const std::function<bool(const STesk3DPoint&)>& isUsed) {
  constexpr double kLeastSquareOfRatio = 1e-12;
  std::optional<STesk3DPoint> first;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  STesk3DPoint sum = {};
  double count = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (!isMeasured(sample) || !isUsed(sample.pt3D)) {
        continue;
      }
      first = first.value_or(sample.pt3D);
      const double x = sample.pt3D.x - first->x;
      const double y = sample.pt3D.y - first->y;
      xx += x * x;
      xy += x * y;
      yy += y * y;
      sum = {sum.x + x, sum.y + y, 0.0};
      count += 1.0;
    }
  }
  xx -= sum.x * sum.x / count;
  xy -= sum.x * sum.y / count;
  yy -= sum.y * sum.y / count;
  return count >= 3.0 && xx * yy - xy * xy > kLeastSquareOfRatio * (xx + yy) * (xx + yy);
}

void judge(PlaneCandidate& candidate) {
  constexpr double kStandingDegrees = 60.0;
  constexpr double kLeastOnPlane = 0.1;
  if (!candidate.refused.empty()) {
    return;
  }
  if (!candidate.isGround && candidate.tiltDegrees > kStandingDegrees) {
    candidate.refused =
        "tilted by " + fixed(candidate.tiltDegrees, 0) + " deg, so it stands upright";
  } else if (candidate.onPlane < kLeastOnPlane) {
    candidate.refused =
        "only " + fixed(100.0 * candidate.onPlane, 1) + " % of the samples lie near it";
  }
}

void measureFit(PlaneCandidate& candidate, const Scan& scan, const Extent& extent) {
  candidate.tiltDegrees = turnDegrees(candidate.calibration.levelMatrix);
  candidate.band = bandOf(extent);
  // The first height may be off by objects on the plane; a median of what is near it is not.
  for (const double reach : {4.0, 2.0, 1.0}) {
    const double height = medianHeight(candidate, scan, [&](const STesk3DPoint& p) {
      return std::abs(levelledHeight(candidate, p) - candidate.height) <= reach * candidate.band;
    });
    candidate.height = std::isnan(height) ? candidate.height : height;
  }
  double on = 0.0;
  double measured = 0.0;
  double squares = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        const double distance = levelledHeight(candidate, sample.pt3D) - candidate.height;
        const bool isNear = std::abs(distance) <= candidate.band;
        measured += 1.0;
        on += isNear ? 1.0 : 0.0;
        squares += isNear ? distance * distance : 0.0;
      }
    }
  }
  candidate.onPlane = measured > 0.0 ? on / measured : 0.0;
  candidate.residual = on > 0.0 ? std::sqrt(squares / on) : 0.0;
}

void refine(PlaneCandidate& candidate, const Scan& scan, const Extent& extent) {
  for (const double bands : {4.0, 2.0, 1.0}) {
    const std::vector<cv::Point3f> points = samplesNear(candidate, scan, bands * bandOf(extent));
    std::vector<double> plane;
    teskCaculateLaserPlane(points, plane);
    constexpr std::size_t kEnough = 3;
    if (points.size() < kEnough || !std::isfinite(plane[0] + plane[1] + plane[3])) {
      break;
    }
    candidate.calibration = adjustPlaneToXYPlane(plane[0], plane[1], plane[2]);
    // The plane passes the centre of the scan at this height over it.
    const STesk3DPoint onPlane = {candidate.centre.x, candidate.centre.y,
                                  candidate.centre.z + plane[3]};
    candidate.height = levelledHeight(candidate, onPlane);
  }
  measureFit(candidate, scan, extent);
}

}  // namespace program
