#pragma once

#include <opencv2/core/types.hpp>
#include <vector>

#include "base/noise.h"

namespace program {

enum class ObjectKind { bag, box };

/// One thing on the belt: a box, or a bag like a pillow with a rounded outline.
struct BeltObject {
  ObjectKind kind;
  cv::Point2d centre;
  double angle;       ///< From x to its long side, in radians.
  double halfLength;  ///< Half of its long side.
  double halfWidth;   ///< Half of its short side.
  double thickness;   ///< Its own height.
  double base;        ///< What lies below it, if it rests on another object.
};

/// Height over the belt at a place, 0.0 beside the object.
double heightAt(const BeltObject& object, cv::Point2d place);

/// Whether the outlines of two objects overlap.
bool overlap(const BeltObject& a, const BeltObject& b);

/**
 * Lays objects onto a belt of the given size: most of them touch an earlier one, and some bags rest
 * on its rim.
 */
std::vector<BeltObject> layObjects(int count, cv::Size2d belt, Noise& noise);

}  // namespace program
