#include "scene.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "noise.h"

namespace examples {
namespace {

constexpr double kRadians = 3.141592653589793 / 180.0;

constexpr double kLength = 100.0;
constexpr double kWidth = 80.0;
constexpr int kSamples = 800;
constexpr double kDropouts = 0.004;

// How the part lies under the sensor: rise per length, and the distance of its middle.
const double kSlopeX = std::tan(1.5 * kRadians);
const double kSlopeY = std::tan(-1.0 * kRadians);
constexpr double kDistance = 250.0;

constexpr double kSeamWidth = 3.0;
constexpr double kSlotWidth = 1.6;

/// An arc that bows towards greater y in the middle of the part.
double seamCentre(double x) {
  constexpr double kRadius = 300.0;
  constexpr double kApexY = 33.0;
  const double fromApex = x - 0.5 * kLength;
  return kApexY - kRadius + std::sqrt(kRadius * kRadius - fromApex * fromApex);
}

double slotCentre(double x) {
  return 55.0 + 0.06 * x;
}

bool isWithin(double value, double min, double max) {
  return value >= min && value <= max;
}

/// Depth of a groove with sloping flanks, `across` away from its centre line.
double vGroove(double across, double width, double rootWidth, double depth) {
  const double inwards = 0.5 * width - std::abs(across);
  return depth * std::clamp(inwards / (0.5 * (width - rootWidth)), 0.0, 1.0);
}

double seam(double x, double y) {
  constexpr double kBeadWidth = 5.0;
  constexpr double kBeadHeight = 1.0;
  const double across = y - seamCentre(x);
  const bool isTacked = isWithin(x, 28.0, 34.0) || isWithin(x, 70.0, 74.0);
  if (!isTacked) {
    return vGroove(across, kSeamWidth, 0.8, 2.0);
  }
  const double u = across / (0.5 * kBeadWidth);
  return -kBeadHeight * std::max(1.0 - u * u, 0.0);
}

double slot(double x, double y) {
  constexpr double kDepth = 1.2;
  const bool isInside = isWithin(x, 12.0, 86.0) && std::abs(y - slotCentre(x)) < 0.5 * kSlotWidth;
  return isInside ? kDepth : 0.0;
}

double scratch(double x, double y) {
  return isWithin(x, 48.0, 57.0) ? vGroove(y - 8.0 - 0.2 * x, 1.3, 0.1, 0.6) : 0.0;
}

bool isClamped(double x, double y) {
  return (isWithin(x, 18.0, 36.0) && y > kWidth - 7.0) || (isWithin(x, 64.0, 82.0) && y < 7.0);
}

/// How much farther than the plates' faces the surface lies.
double depthAt(double x, double y) {
  constexpr double kClampHeight = 15.0;
  return isClamped(x, y) ? -kClampHeight : seam(x, y) + slot(x, y) + scratch(x, y);
}

double distanceAt(double x, double y) {
  return kDistance + kSlopeX * (x - 0.5 * kLength) + kSlopeY * (y - 0.5 * kWidth) + depthAt(x, y);
}

}  // namespace

Scene makeScene(const SceneParams& params, Progress& progress) {
  Noise noise(params.seed);
  Scan scan(static_cast<std::size_t>(params.lines), Line(kSamples));
  double x = 0.0;
  for (Line& line : scan) {
    for (int i = 0; i < kSamples; ++i) {
      const double y = kWidth / kSamples * i;
      const double z = distanceAt(x, y) + params.noise * noise.bell();
      line[static_cast<std::size_t>(i)] = {i, {x, y, noise.chance(kDropouts) ? 0.0 : z}};
    }
    x += kLength / params.lines;
    progress.advance();
  }
  const double tilt = std::atan(std::hypot(kSlopeX, kSlopeY)) / kRadians;
  return {
      std::move(scan), tilt, {{"seam", kSeamWidth, seamCentre}, {"slot", kSlotWidth, slotCentre}}};
}

}  // namespace examples
