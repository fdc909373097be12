#include "scenes.h"

#include <cmath>
#include <functional>
#include <utility>

#include "noise.h"

namespace examples {
namespace {

constexpr int kLines = 240;
constexpr int kSamples = 360;
constexpr double kLineStep = 0.5;
constexpr double kPtStep = 0.25;
constexpr double kNoise = 0.03;
constexpr double kDropouts = 0.003;

/// A scan of a surface given by its height, with a sensor's noise and dropouts.
Scan scanSurface(std::uint64_t seed, const std::function<double(double, double)>& height) {
  Noise noise(seed);
  Scan scan(kLines, Line(kSamples));
  for (int l = 0; l < kLines; ++l) {
    for (int i = 0; i < kSamples; ++i) {
      const double x = kLineStep * l;
      const double y = kPtStep * i;
      const double z = height(x, y) + kNoise * noise.bell();
      scan[static_cast<std::size_t>(l)][static_cast<std::size_t>(i)] = {
          i, {x, y, noise.chance(kDropouts) ? 0.0 : z}};
    }
  }
  return scan;
}

double heightOf(const TruePlane& plane, double x, double y) {
  return plane.c + plane.a * x + plane.b * y;
}

}  // namespace

Scene makePlateScene() {
  const TruePlane plate = {0.05, -0.03, 120.0};
  Scan scan = scanSurface(1, [&](double x, double y) {
    const bool onBlock = x > 35.0 && x < 85.0 && std::fmod(y, 45.0) > 18.0;
    return heightOf(plate, x, y) + (onBlock ? 25.0 : 0.0);
  });
  return {"plate with blocks", std::move(scan), plate};
}

Scene makeHoleScene() {
  const TruePlane plate = {-0.04, 0.06, 90.0};
  Scan scan = scanSurface(2, [&](double x, double y) {
    const bool inHole = std::hypot(x - 60.0, y - 45.0) < 30.0;
    return heightOf(plate, x, y) - (inHole ? 40.0 : 0.0);
  });
  return {"plate with a hole", std::move(scan), plate};
}

Scene makeGroundScene() {
  constexpr double kShelf = 300.0;
  const TruePlane ground = {0.15, -3.7, 520.0};
  Scan scan =
      scanSurface(3, [&](double x, double y) { return std::fmin(kShelf, heightOf(ground, x, y)); });
  return {"shelf over ground", std::move(scan), ground};
}

}  // namespace examples
