#include <algorithm>
#include <cmath>
#include <limits>

#include "base/noise.h"
#include "make/made_scan.h"

namespace program {
namespace {

constexpr int kSamples = 880;
constexpr double kLineStep = 0.5;
constexpr double kSampleStep = 0.25;
constexpr double kDropouts = 0.003;
/// Where the surface is steeper, as the flanks of a rod are, too little light comes back.
constexpr double kSteepest = 75.0 * 3.141592653589793 / 180.0;

constexpr TruePlane kFloor = {0.02, -0.015, 400.0};

/// A rod on the floor. Its ends may be propped up.
TrueRod rodBetween(
    double radius, cv::Point2d from, cv::Point2d to, double propFrom, double propTo) {
  const double toAxis = radius * std::sqrt(1.0 + kFloor.a * kFloor.a + kFloor.b * kFloor.b);
  return {radius,
          {from.x, from.y, kFloor.at(from.x, from.y) - toAxis - propFrom},
          {to.x, to.y, kFloor.at(to.x, to.y) - toAxis - propTo}};
}

std::vector<TrueRod> rods() {
  return {rodBetween(5.0, {6.0, 22.0}, {144.0, 26.0}, 0.0, 0.0),
          rodBetween(8.0, {10.0, 60.0}, {140.0, 48.0}, 0.0, 0.0),
          rodBetween(12.0, {4.0, 92.0}, {130.0, 92.0}, 0.0, 14.0),
          rodBetween(20.0, {15.0, 150.0}, {146.0, 170.0}, 0.0, 0.0)};
}

/// A surface under the sensor, and how steep it is.
struct Met {
  double z;
  double slope;  ///< Angle of the surface to the level, in radians.
};

/// Where a ray along z first meets a rod: the nearer root of the distance to its axis.
Met meet(const TrueRod& rod, double x, double y) {
  const cv::Point3d from(rod.from.x, rod.from.y, rod.from.z);
  const cv::Point3d span = cv::Point3d(rod.to.x, rod.to.y, rod.to.z) - from;
  const cv::Point3d axis = span / cv::norm(span);
  const cv::Point3d ray(0.0, 0.0, 1.0);
  const cv::Point3d start = cv::Point3d(x, y, 0.0) - from;
  const cv::Point3d acrossRay = ray - ray.dot(axis) * axis;
  const cv::Point3d acrossStart = start - start.dot(axis) * axis;
  const double a = acrossRay.dot(acrossRay);
  const double b = acrossRay.dot(acrossStart);
  const double root = b * b - a * (acrossStart.dot(acrossStart) - rod.radius * rod.radius);
  const Met nothing = {std::numeric_limits<double>::infinity(), 0.0};
  if (!(root > 0.0)) {
    return nothing;
  }
  const double z = (-b - std::sqrt(root)) / a;
  const double along = (start + z * ray).dot(axis);
  if (along < 0.0 || along > cv::norm(span)) {
    return nothing;
  }
  const cv::Point3d normal = (acrossStart + z * acrossRay) / rod.radius;
  return {z, std::acos(std::min(std::abs(normal.z), 1.0))};
}

}  // namespace

MadeScan makeRods(const MakeParams& params, Progress& progress) {
  MadeScan made;
  made.plane = kFloor;
  made.rods = rods();
  made.scan.assign(kRodsLines, Line(kSamples));
  forEachLine(made.scan, [&](std::size_t l) {
    Noise noise(params.seed * 1'000'003U + l);
    for (int i = 0; i < kSamples; ++i) {
      const double x = kLineStep * static_cast<double>(l);
      const double y = kSampleStep * i;
      Met met = {kFloor.at(x, y), 0.0};
      for (const TrueRod& rod : made.rods) {
        const Met onRod = meet(rod, x, y);
        met = onRod.z < met.z ? onRod : met;
      }
      const double z = met.z + params.noise * noise.bell();
      const bool isLost = noise.chance(kDropouts) || met.slope > kSteepest;
      made.scan[l][static_cast<std::size_t>(i)] = {i, {x, y, isLost ? 0.0 : z}};
    }
    progress.advance();
  });
  return made;
}

}  // namespace program
