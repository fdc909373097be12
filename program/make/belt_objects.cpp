#include "make/belt_objects.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace program {
namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kBagRoundness = 2.6;

/// A place in the object's own directions, in halves of its sides.
cv::Point2d inObject(const BeltObject& object, cv::Point2d place) {
  const cv::Point2d from = place - object.centre;
  const double c = std::cos(object.angle);
  const double s = std::sin(object.angle);
  return {(c * from.x + s * from.y) / object.halfLength,
          (c * from.y - s * from.x) / object.halfWidth};
}

/// 0.0 in the object's middle, 1.0 on its outline: a superellipse for bags.
double outwardness(const BeltObject& object, cv::Point2d place) {
  const cv::Point2d p = inObject(object, place);
  if (object.kind == ObjectKind::box) {
    return std::max(std::abs(p.x), std::abs(p.y));
  }
  return std::pow(std::abs(p.x), kBagRoundness) + std::pow(std::abs(p.y), kBagRoundness);
}

cv::Point2d outlinePoint(const BeltObject& object, double turn) {
  const cv::Point2d direction(std::cos(turn), std::sin(turn));
  const double out = outwardness(object, object.centre + direction);
  const double reach =
      object.kind == ObjectKind::box ? 1.0 / out : std::pow(out, -1.0 / kBagRoundness);
  return object.centre + reach * direction;
}

bool reachesInto(const BeltObject& a, const BeltObject& b) {
  constexpr int kPoints = 180;
  for (int i = 0; i < kPoints; ++i) {
    if (outwardness(b, outlinePoint(a, 2.0 * kPi * i / kPoints)) < 1.0) {
      return true;
    }
  }
  return false;
}

double between(Noise& noise, double min, double max) {
  return min + (max - min) * noise.unit();
}

BeltObject makeObject(Noise& noise) {
  const bool isBag = noise.chance(0.6);
  const double angle = between(noise, 0.0, kPi);
  if (isBag) {
    return {ObjectKind::bag,
            {},
            angle,
            between(noise, 120.0, 165.0),
            between(noise, 75.0, 110.0),
            between(noise, 80.0, 130.0),
            0.0};
  }
  return {ObjectKind::box,
          {},
          angle,
          between(noise, 90.0, 145.0),
          between(noise, 60.0, 85.0),
          between(noise, 60.0, 190.0),
          0.0};
}

/// Moves an object outwards from another until they only just touch.
void moveBeside(BeltObject& object, const BeltObject& other, double direction) {
  constexpr double kStep = 1.0;
  const cv::Point2d outwards(std::cos(direction), std::sin(direction));
  object.centre = other.centre;
  while (overlap(object, other)) {
    object.centre += kStep * outwards;
  }
}

bool isOnBelt(const BeltObject& object, cv::Size2d belt) {
  constexpr double kMargin = 20.0;
  const double reach = std::hypot(object.halfLength, object.halfWidth) + kMargin;
  return object.centre.x > reach && object.centre.x < belt.width - reach &&
         object.centre.y > reach && object.centre.y < belt.height - reach;
}

/// Puts an object somewhere, or beside or onto the rim of one that lies there.
std::optional<BeltObject> tryToLay(const std::vector<BeltObject>& laid,
                                   cv::Size2d belt,
                                   Noise& noise) {
  BeltObject object = makeObject(noise);
  object.centre = {between(noise, 0.0, belt.width), between(noise, 0.0, belt.height)};
  const auto partner = static_cast<std::size_t>(noise.unit() * static_cast<double>(laid.size()));
  const double direction = between(noise, 0.0, 2.0 * kPi);
  const bool touches = !laid.empty() && noise.chance(0.75);
  const bool rests = touches && object.kind == ObjectKind::bag && noise.chance(0.35);
  if (touches) {
    moveBeside(object, laid[partner], direction);
  }
  for (const BeltObject& other : laid) {
    if (overlap(object, other)) {
      return std::nullopt;
    }
  }
  if (rests) {
    const double onto = between(noise, 12.0, 28.0);
    object.centre -= onto * cv::Point2d(std::cos(direction), std::sin(direction));
    object.base = laid[partner].base + laid[partner].thickness;
  }
  return isOnBelt(object, belt) ? std::optional<BeltObject>(object) : std::nullopt;
}

}  // namespace

double heightAt(const BeltObject& object, cv::Point2d place) {
  const double out = outwardness(object, place);
  if (!(out < 1.0)) {
    return 0.0;
  }
  const double share = object.kind == ObjectKind::box ? 1.0 : std::pow(1.0 - out, 0.4);
  return object.base + object.thickness * share;
}

bool overlap(const BeltObject& a, const BeltObject& b) {
  const cv::Point2d apart = b.centre - a.centre;
  const double reach =
      std::hypot(a.halfLength, a.halfWidth) + std::hypot(b.halfLength, b.halfWidth);
  if (apart.dot(apart) > reach * reach) {
    return false;
  }
  return reachesInto(a, b) || reachesInto(b, a);
}

std::vector<BeltObject> layObjects(int count, cv::Size2d belt, Noise& noise) {
  // A belt that is full takes no more, however often it is tried.
  const int mostTries = 2000 * count;
  std::vector<BeltObject> laid;
  for (int i = 0; i < mostTries && static_cast<int>(laid.size()) < count; ++i) {
    if (const auto object = tryToLay(laid, belt, noise)) {
      laid.push_back(*object);
    }
  }
  return laid;
}

}  // namespace program
