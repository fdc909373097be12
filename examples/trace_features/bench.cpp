#include "bench.h"

#include <algorithm>
#include <cmath>

#include "plane_calibration.h"

namespace examples {
namespace {

// The bench lies in a frame of its own; the sensor sees it turned about x, then about y, around
// the table's middle.
constexpr double kRadians = 3.141592653589793 / 180.0;
constexpr double kRollDegrees = 1.4;
constexpr double kPitchDegrees = -2.6;
constexpr double kMiddleX = 200.0;
constexpr double kMiddleY = 150.0;
constexpr double kMiddleZ = 220.0;

/// Where a thing stands on the table, and how far it is turned.
struct Pose {
  Spot centre;
  double degrees;
};

/// A spot as seen from a thing's centre, along its own axes.
Spot inside(const Pose& pose, Spot spot) {
  const double c = std::cos(pose.degrees * kRadians);
  const double s = std::sin(pose.degrees * kRadians);
  const double u = spot.u - pose.centre.u;
  const double v = spot.v - pose.centre.v;
  return {c * u + s * v, c * v - s * u};
}

double box(const Pose& pose, double length, double width, double height, Spot spot) {
  const Spot p = inside(pose, spot);
  return std::abs(p.u) < 0.5 * length && std::abs(p.v) < 0.5 * width ? height : 0.0;
}

/// A bar that lies on the table, along u.
double roundBar(const Pose& pose, double length, double radius, Spot spot) {
  const Spot p = inside(pose, spot);
  if (std::abs(p.u) > 0.5 * length || std::abs(p.v) > radius) {
    return 0.0;
  }
  return radius + std::sqrt(radius * radius - p.v * p.v);
}

/// A ramp that rises along v over `rise` and comes down more steeply over `fall`.
double wedge(const Pose& pose, double length, double rise, double fall, double height, Spot spot) {
  const Spot p = inside(pose, spot);
  if (std::abs(p.u) > 0.5 * length) {
    return 0.0;
  }
  return std::max(0.0, height * std::min(1.0 + p.v / rise, 1.0 - p.v / fall));
}

double roundBoss(Spot centre, double radius, double height, Spot spot) {
  return std::hypot(spot.u - centre.u, spot.v - centre.v) < radius ? height : 0.0;
}

/// A groove with sloping flanks that runs in a bow between two ends.
double groove(double from, double to, Spot spot) {
  constexpr double kDepth = 4.0;
  constexpr double kHalfWidth = 7.0;
  constexpr double kFlank = 1.6;
  if (spot.u < from || spot.u > to) {
    return 0.0;
  }
  const double middle = 38.0 + 20.0 * std::sin((spot.u - from) / (to - from) * 180.0 * kRadians);
  const double inwards = kHalfWidth - std::abs(spot.v - middle);
  return -kDepth * std::clamp(inwards / kFlank, 0.0, 1.0);
}

/// Height of the bench over its table.
double benchHeight(Spot spot) {
  const std::array<double, 7> things = {
      box({{76.0, 222.0}, 24.0}, 92.0, 62.0, 34.0, spot),
      box({{82.0, 226.0}, 24.0}, 46.0, 30.0, 50.0, spot),
      box({{208.0, 232.0}, -38.0}, 54.0, 54.0, 42.0, spot),
      box({{324.0, 236.0}, 17.0}, 90.0, 36.0, 31.0, spot),
      roundBoss({66.0, 46.0}, 22.0, 36.0, spot),
      roundBar({{82.0, 124.0}, -11.0}, 120.0, 2.4, spot),
      wedge({{238.0, 128.0}, 14.0}, 112.0, 32.0, 12.0, 18.0, spot),
  };
  const double height = *std::max_element(things.begin(), things.end());
  return height > 0.0 ? height : groove(160.0, 384.0, spot);
}

}  // namespace

Bench::Bench() {
  const double cr = std::cos(kRollDegrees * kRadians);
  const double sr = std::sin(kRollDegrees * kRadians);
  const double cp = std::cos(kPitchDegrees * kRadians);
  const double sp = std::sin(kPitchDegrees * kRadians);
  toBench_ = {cp, sp * sr, sp * cr, 0.0, cr, -sr, -sp, cp * sr, cp * cr};
}

double Bench::tiltDegrees() const {
  return examples::tiltDegrees(toBench_.data());
}

double Bench::surfaceAt(double x, double y) const {
  constexpr int kHalvings = 18;
  const std::array<double, 9>& m = toBench_;
  const double table = kMiddleZ - (m[6] * (x - kMiddleX) + m[7] * (y - kMiddleY)) / m[8];
  double below = table - kDeepest;
  double above = table + kTallest;
  for (int i = 0; i < kHalvings; ++i) {
    const double z = 0.5 * (below + above);
    (isInside(x, y, z) ? below : above) = z;
  }
  return 0.5 * (below + above);
}

bool Bench::isInside(double x, double y, double z) const {
  const std::array<double, 9>& m = toBench_;
  const double dx = x - kMiddleX;
  const double dy = y - kMiddleY;
  const double dz = z - kMiddleZ;
  const Spot spot = {kMiddleX + m[0] * dx + m[1] * dy + m[2] * dz,
                     kMiddleY + m[3] * dx + m[4] * dy + m[5] * dz};
  return m[6] * dx + m[7] * dy + m[8] * dz < benchHeight(spot);
}

}  // namespace examples
