#include <algorithm>
#include <cmath>

#include "base/noise.h"
#include "make/made_scan.h"

namespace program {
namespace {

constexpr double kLength = 100.0;
constexpr double kWidth = 80.0;
constexpr int kSamples = 800;
constexpr double kDropouts = 0.004;

constexpr double kSeamWidth = 3.0;
constexpr double kSlotWidth = 1.6;
constexpr STeskRangeD kSlotLength = {12.0, 86.0};

constexpr double kClampHeight = 15.0;
constexpr double kClampLength = 18.0;
constexpr double kClampWidth = 7.0;

/// How the part lies under the sensor: 1.5 and -1 degrees, its middle 250 mm away.
TruePlane faces() {
  constexpr double kRadians = 3.141592653589793 / 180.0;
  constexpr double kDistance = 250.0;
  const double a = std::tan(1.5 * kRadians);
  const double b = std::tan(-1.0 * kRadians);
  return {a, b, kDistance - 0.5 * a * kLength - 0.5 * b * kWidth};
}

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

bool isWithin(double value, const STeskRangeD& range) {
  return value >= range.min && value <= range.max;
}

/// Depth of a groove with sloping flanks, `across` away from its centre line.
double vGroove(double across, double width, double rootWidth, double depth) {
  const double inwards = 0.5 * width - std::abs(across);
  return depth * std::clamp(inwards / (0.5 * (width - rootWidth)), 0.0, 1.0);
}

/// The seam; where it is tacked, a bead stands over the faces.
double seam(double x, double y) {
  constexpr double kBeadWidth = 5.0;
  constexpr double kBeadHeight = 1.0;
  const double across = y - seamCentre(x);
  const bool isTacked = isWithin(x, {28.0, 34.0}) || isWithin(x, {70.0, 74.0});
  if (!isTacked) {
    return vGroove(across, kSeamWidth, 0.8, 2.0);
  }
  const double u = across / (0.5 * kBeadWidth);
  return -kBeadHeight * std::max(1.0 - u * u, 0.0);
}

double slot(double x, double y) {
  constexpr double kDepth = 1.2;
  return isWithin(x, kSlotLength) && std::abs(y - slotCentre(x)) < 0.5 * kSlotWidth ? kDepth : 0.0;
}

double scratch(double x, double y) {
  return isWithin(x, {48.0, 57.0}) ? vGroove(y - 8.0 - 0.2 * x, 1.3, 0.1, 0.6) : 0.0;
}

bool isClamped(double x, double y) {
  return (isWithin(x, {18.0, 18.0 + kClampLength}) && y > kWidth - kClampWidth) ||
         (isWithin(x, {64.0, 64.0 + kClampLength}) && y < kClampWidth);
}

/// How much farther than the plates' faces the surface lies.
double depthAt(double x, double y) {
  return isClamped(x, y) ? -kClampHeight : seam(x, y) + slot(x, y) + scratch(x, y);
}

TrueObject clampAt(double firstX, double middleY) {
  return {"clamp", firstX + 0.5 * kClampLength, middleY, kClampLength, kClampWidth, kClampHeight,
          0.0};
}

}  // namespace

MadeScan makePart(const MakeParams& params, Progress& progress) {
  Noise noise(params.seed);
  MadeScan made;
  made.plane = faces();
  made.scan.assign(kPartLines, Line(kSamples));
  for (int l = 0; l < kPartLines; ++l) {
    for (int i = 0; i < kSamples; ++i) {
      const double x = kLength / kPartLines * l;
      const double y = kWidth / kSamples * i;
      const double z = made.plane.at(x, y) + depthAt(x, y) + params.noise * noise.bell();
      made.scan[static_cast<std::size_t>(l)][static_cast<std::size_t>(i)] = {
          i, {x, y, noise.chance(kDropouts) ? 0.0 : z}};
    }
    progress.advance();
  }
  made.gaps = {{"seam", kSeamWidth, {0.0, kLength}, seamCentre},
               {"slot", kSlotWidth, kSlotLength, slotCentre}};
  made.objects = {clampAt(18.0, kWidth - 0.5 * kClampWidth), clampAt(64.0, 0.5 * kClampWidth)};
  return made;
}

}  // namespace program
