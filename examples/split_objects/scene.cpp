#include "scene.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <opencv2/core/utility.hpp>

#include "program.h"

namespace examples {
namespace {

constexpr double kLineStep = 3.0;
constexpr double kPtStep = 2.0;
constexpr double kWidth = 1000.0;
constexpr double kLengthPerObject = 145.0;
constexpr double kShortest = 900.0;
constexpr double kDropouts = 0.003;
constexpr double kDegrees = 180.0 / 3.141592653589793;

/// The belt itself, as a height over the far end of the measuring range.
struct Belt {
  double length;
  double slopeX;
  double slopeY;

  [[nodiscard]] double at(cv::Point2d place) const {
    constexpr double kStart = 60.0;
    return kStart + slopeX * place.x + slopeY * place.y;
  }
};

Belt beltFor(int objects) {
  constexpr double kRiseX = 14.0;
  constexpr double kRiseY = -11.0;
  const double length = std::max(kShortest, kLengthPerObject * objects);
  return {length, kRiseX / length, kRiseY / kWidth};
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

Line scanLine(const Belt& belt,
              const std::vector<BeltObject>& objects,
              const SceneOptions& options,
              int index) {
  // Lines have generators of their own, so that they can be scanned side by side.
  Noise noise(options.seed * 1'000'003U + static_cast<std::uint64_t>(index));
  const double x = kLineStep * index;
  const std::vector<BeltObject> near = objectsNear(objects, x);
  Line line(static_cast<std::size_t>(kWidth / kPtStep) + 1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    const cv::Point2d place(x, kPtStep * static_cast<double>(i));
    const double z = belt.at(place) + topAt(near, place) + options.noise * noise.bell();
    const bool isLost = noise.chance(kDropouts);
    // Samples are told in single precision.
    const double told = isLost ? 0.0 : static_cast<double>(static_cast<float>(z));
    line[i] = {static_cast<int>(i), {place.x, place.y, told}};
  }
  return line;
}

}  // namespace

Scene makeScene(const SceneOptions& options) {
  const Belt belt = beltFor(options.objects);
  Noise noise(options.seed);
  Scene scene = {Scan(static_cast<std::size_t>(belt.length / kLineStep) + 1),
                 std::atan(std::hypot(belt.slopeX, belt.slopeY)) * kDegrees,
                 layObjects(options.objects, {belt.length, kWidth}, noise)};
  if (static_cast<int>(scene.objects.size()) < options.objects) {
    throw UserError("--objects: the belt took only " + std::to_string(scene.objects.size()) +
                    " objects; try another --seed");
  }
  const int lines = static_cast<int>(scene.scan.size());
  Progress progress("Scanning the belt", lines);
  cv::parallel_for_({0, lines}, [&](const cv::Range& range) {
    for (int l = range.start; l < range.end; ++l) {
      scene.scan[static_cast<std::size_t>(l)] = scanLine(belt, scene.objects, options, l);
      progress.advance();
    }
  });
  return scene;
}

}  // namespace examples
