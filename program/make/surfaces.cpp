#include <algorithm>
#include <cmath>
#include <functional>

#include "base/noise.h"
#include "make/made_scan.h"

namespace program {
namespace {

constexpr int kSamples = 360;
constexpr double kLineStep = 0.5;
constexpr double kSampleStep = 0.25;
constexpr double kDropouts = 0.003;

/// A scan of a surface given by its distance, with a sensor's noise and dropouts.
Scan scanSurface(const MakeParams& params,
                 Progress& progress,
                 const std::function<double(double, double)>& distance) {
  Noise noise(params.seed);
  Scan scan(kPlateLines, Line(kSamples));
  for (int l = 0; l < kPlateLines; ++l) {
    for (int i = 0; i < kSamples; ++i) {
      const double x = kLineStep * l;
      const double y = kSampleStep * i;
      const double z = distance(x, y) + params.noise * noise.bell();
      scan[static_cast<std::size_t>(l)][static_cast<std::size_t>(i)] = {
          i, {x, y, noise.chance(kDropouts) ? 0.0 : z}};
    }
    progress.advance();
  }
  return scan;
}

}  // namespace

MadeScan makePlate(const MakeParams& params, Progress& progress) {
  constexpr double kHeight = 25.0;
  MadeScan made;
  made.plane = {0.05, -0.03, 120.0};
  made.objects = {{"block", 60.0, 31.5, 50.0, 27.0, kHeight, 0.0},
                  {"block", 60.0, 76.5, 50.0, 27.0, kHeight, 0.0}};
  const auto isOn = [](const TrueObject& block, double x, double y) {
    return std::abs(x - block.x) < 0.5 * block.length && std::abs(y - block.y) < 0.5 * block.width;
  };
  made.scan = scanSurface(params, progress, [&](double x, double y) {
    const bool isOnBlock = isOn(made.objects[0], x, y) || isOn(made.objects[1], x, y);
    return made.plane.at(x, y) - (isOnBlock ? kHeight : 0.0);
  });
  return made;
}

MadeScan makeHole(const MakeParams& params, Progress& progress) {
  constexpr double kDepth = 40.0;
  constexpr double kRadius = 30.0;
  MadeScan made;
  made.plane = {-0.04, 0.06, 90.0};
  made.objects = {{"hole", 60.0, 45.0, 2.0 * kRadius, 2.0 * kRadius, -kDepth, 0.0}};
  made.scan = scanSurface(params, progress, [&](double x, double y) {
    const bool isInHole = std::hypot(x - 60.0, y - 45.0) < kRadius;
    return made.plane.at(x, y) + (isInHole ? kDepth : 0.0);
  });
  return made;
}

MadeScan makeShelf(const MakeParams& params, Progress& progress) {
  constexpr double kShelf = 300.0;
  MadeScan made;
  made.isGround = true;
  made.plane = {0.15, -3.7, 520.0};
  made.scan = scanSurface(
      params, progress, [&](double x, double y) { return std::min(kShelf, made.plane.at(x, y)); });
  return made;
}

}  // namespace program
