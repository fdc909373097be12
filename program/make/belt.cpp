#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/failure.h"
#include "make/belt_objects.h"
#include "make/made_scan.h"

namespace program {
namespace {

constexpr double kLineStep = 3.0;
constexpr double kSampleStep = 2.0;
constexpr double kWidth = 1000.0;
constexpr double kDropouts = 0.003;

double lengthFor(int objects) {
  constexpr double kLengthPerObject = 145.0;
  constexpr double kShortest = 900.0;
  return std::max(kShortest, kLengthPerObject * objects);
}

/// The belt is not level.
TruePlane beltOf(double length) {
  constexpr double kDistance = 1440.0;
  constexpr double kRiseX = 14.0;
  constexpr double kRiseY = -11.0;
  return {-kRiseX / length, -kRiseY / kWidth, kDistance};
}

/// What is met from above.
double topAt(const std::vector<BeltObject>& objects, cv::Point2d place) {
  double top = 0.0;
  for (const BeltObject& object : objects) {
    top = std::max(top, heightAt(object, place));
  }
  return top;
}

/// The objects that may be met on the line at `x`.
std::vector<BeltObject> objectsNear(const std::vector<BeltObject>& objects, double x) {
  std::vector<BeltObject> near;
  std::copy_if(objects.begin(), objects.end(), std::back_inserter(near), [&](const BeltObject& o) {
    return std::abs(o.centre.x - x) <= std::hypot(o.halfLength, o.halfWidth);
  });
  return near;
}

Line scannedLine(const TruePlane& belt,
                 const std::vector<BeltObject>& objects,
                 const MakeParams& params,
                 std::size_t index) {
  // Lines have generators of their own, so that they can be scanned side by side.
  Noise noise(params.seed * 1'000'003U + index);
  const double x = kLineStep * static_cast<double>(index);
  const std::vector<BeltObject> near = objectsNear(objects, x);
  Line line(static_cast<std::size_t>(kWidth / kSampleStep) + 1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    const double y = kSampleStep * static_cast<double>(i);
    const double z = belt.at(x, y) - topAt(near, {x, y}) + params.noise * noise.bell();
    line[i] = {static_cast<int>(i), {x, y, noise.chance(kDropouts) ? 0.0 : z}};
  }
  return line;
}

TrueObject truthOf(const BeltObject& object) {
  constexpr double kDegrees = 180.0 / 3.141592653589793;
  return {object.kind == ObjectKind::bag ? "bag" : "box",
          object.centre.x,
          object.centre.y,
          2.0 * object.halfLength,
          2.0 * object.halfWidth,
          object.base + object.thickness,
          object.angle * kDegrees};
}

}  // namespace

MadeScan makeBelt(const MakeParams& params, Progress& progress) {
  const double length = lengthFor(params.objects);
  Noise noise(params.seed);
  const std::vector<BeltObject> objects = layObjects(params.objects, {length, kWidth}, noise);
  if (static_cast<int>(objects.size()) < params.objects) {
    throw Failure(ExitCode::usage, "--objects: the belt took only " +
                                       std::to_string(objects.size()) +
                                       " objects. Give another --seed, or fewer");
  }
  MadeScan made;
  made.plane = beltOf(length);
  made.scan.resize(static_cast<std::size_t>(length / kLineStep) + 1);
  forEachLine(made.scan, [&](std::size_t l) {
    made.scan[l] = scannedLine(made.plane, objects, params, l);
    progress.advance();
  });
  std::transform(objects.begin(), objects.end(), std::back_inserter(made.objects), truthOf);
  return made;
}

}  // namespace program
