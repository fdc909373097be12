#include "make/bench_solid.h"

#include <algorithm>
#include <cmath>

namespace program {
namespace {

// The bench lies in a frame of its own; the sensor sees it turned about x, then about y, around
// the table's middle.
constexpr double kRadians = 3.141592653589793 / 180.0;
constexpr double kRollDegrees = 1.4;
constexpr double kPitchDegrees = -2.6;
constexpr Spot kMiddle = {200.0, 150.0};

/// What has straight sides.
enum class Shape { box, bar, wedge };

/// A thing on the table, its length turned by `degrees`. Boxes that overlap are one stepped box.
struct Thing {
  Shape shape;
  const char* name;
  Spot centre;
  double degrees;
  double length;
  double width;
  double height;
};

const std::array<Thing, 6> kThings = {
    Thing{Shape::box, "box", {76.0, 222.0}, 24.0, 92.0, 62.0, 34.0},
    Thing{Shape::box, "step of the box", {82.0, 226.0}, 24.0, 46.0, 30.0, 50.0},
    Thing{Shape::box, "box", {208.0, 232.0}, -38.0, 54.0, 54.0, 42.0},
    Thing{Shape::box, "box", {324.0, 236.0}, 17.0, 90.0, 36.0, 31.0},
    Thing{Shape::bar, "bar", {82.0, 124.0}, -11.0, 120.0, 4.8, 4.8},
    Thing{Shape::wedge, "wedge", {238.0, 128.0}, 14.0, 112.0, 44.0, 18.0}};

constexpr Spot kBoss = {66.0, 46.0};
constexpr double kBossRadius = 22.0;
constexpr double kBossHeight = 36.0;

constexpr STeskRangeD kGrooveLength = {160.0, 384.0};
constexpr double kGrooveDepth = 4.0;
constexpr double kGrooveWidth = 14.0;

/// A spot as seen from a thing's centre, along its own axes.
Spot inside(const Thing& thing, Spot spot) {
  const double c = std::cos(thing.degrees * kRadians);
  const double s = std::sin(thing.degrees * kRadians);
  const double u = spot.u - thing.centre.u;
  const double v = spot.v - thing.centre.v;
  return {c * u + s * v, c * v - s * u};
}

double heightOf(const Thing& thing, Spot spot) {
  // Most spots are far away, and so spared the turn.
  const double reach = 0.5 * (thing.length + thing.width);
  if (std::abs(spot.u - thing.centre.u) > reach || std::abs(spot.v - thing.centre.v) > reach) {
    return 0.0;
  }
  const Spot p = inside(thing, spot);
  if (std::abs(p.u) >= 0.5 * thing.length) {
    return 0.0;
  }
  if (thing.shape == Shape::box) {
    return std::abs(p.v) < 0.5 * thing.width ? thing.height : 0.0;
  }
  if (thing.shape == Shape::bar) {
    const double radius = 0.5 * thing.height;
    return std::abs(p.v) < radius ? radius + std::sqrt(radius * radius - p.v * p.v) : 0.0;
  }
  // The ridge of the wedge is at its centre line; it falls more steeply on one side.
  constexpr double kGentle = 32.0;
  constexpr double kSteep = 12.0;
  return std::max(0.0, thing.height * std::min(1.0 + p.v / kGentle, 1.0 - p.v / kSteep));
}

double bossHeight(Spot spot) {
  return std::hypot(spot.u - kBoss.u, spot.v - kBoss.v) < kBossRadius ? kBossHeight : 0.0;
}

/// A groove with sloping flanks that runs in a bow between two ends.
double grooveHeight(Spot spot) {
  constexpr double kFlank = 1.6;
  if (spot.u < kGrooveLength.min || spot.u > kGrooveLength.max) {
    return 0.0;
  }
  const double share = (spot.u - kGrooveLength.min) / (kGrooveLength.max - kGrooveLength.min);
  const double middle = 38.0 + 20.0 * std::sin(share * 180.0 * kRadians);
  const double inwards = 0.5 * kGrooveWidth - std::abs(spot.v - middle);
  return -kGrooveDepth * std::clamp(inwards / kFlank, 0.0, 1.0);
}

/// Height of the bench over its table.
double benchHeight(Spot spot) {
  double height = bossHeight(spot);
  for (const Thing& thing : kThings) {
    height = std::max(height, heightOf(thing, spot));
  }
  return height > 0.0 ? height : grooveHeight(spot);
}

}  // namespace

BenchSolid::BenchSolid() {
  const double cr = std::cos(kRollDegrees * kRadians);
  const double sr = std::sin(kRollDegrees * kRadians);
  const double cp = std::cos(kPitchDegrees * kRadians);
  const double sp = std::sin(kPitchDegrees * kRadians);
  toBench_ = {cp, sp * sr, sp * cr, 0.0, cr, -sr, -sp, cp * sr, cp * cr};
}

TruePlane BenchSolid::plane() const {
  const double a = toBench_[6] / toBench_[8];
  const double b = toBench_[7] / toBench_[8];
  return {a, b, kDistance - a * kMiddle.u - b * kMiddle.v};
}

std::vector<TrueObject> BenchSolid::objects() const {
  const std::array<double, 9>& m = toBench_;
  const auto object = [&](const char* name, Spot at, double length, double width, double height,
                          double degrees) {
    const double u = at.u - kMiddle.u;
    const double v = at.v - kMiddle.v;
    return TrueObject{name,
                      kMiddle.u + m[0] * u + m[3] * v,
                      kMiddle.v + m[1] * u + m[4] * v,
                      length,
                      width,
                      height,
                      degrees};
  };
  std::vector<TrueObject> objects;
  for (const Thing& thing : kThings) {
    objects.push_back(
        object(thing.name, thing.centre, thing.length, thing.width, thing.height, thing.degrees));
  }
  objects.push_back(object("boss", kBoss, 2.0 * kBossRadius, 2.0 * kBossRadius, kBossHeight, 0.0));
  objects.push_back(object("groove", {0.5 * (kGrooveLength.min + kGrooveLength.max), 58.0},
                           kGrooveLength.max - kGrooveLength.min, kGrooveWidth, -kGrooveDepth,
                           0.0));
  return objects;
}

double BenchSolid::surfaceAt(double x, double y) const {
  constexpr int kHalvings = 18;
  const double table = kDistance - plane().at(x, y);
  double below = table - kDeepest;
  double above = table + kTallest;
  for (int i = 0; i < kHalvings; ++i) {
    const double rise = 0.5 * (below + above);
    (isInside(x, y, rise) ? below : above) = rise;
  }
  return kDistance - 0.5 * (below + above);
}

bool BenchSolid::isInside(double x, double y, double rise) const {
  const std::array<double, 9>& m = toBench_;
  const double dx = x - kMiddle.u;
  const double dy = y - kMiddle.v;
  const Spot spot = {kMiddle.u + m[0] * dx + m[1] * dy + m[2] * rise,
                     kMiddle.v + m[3] * dx + m[4] * dy + m[5] * rise};
  return m[6] * dx + m[7] * dy + m[8] * rise < benchHeight(spot);
}

}  // namespace program
