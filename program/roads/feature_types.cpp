#include "roads/feature_types.h"

#include <algorithm>
#include <iterator>

#include <scanline/feature_records.h>

namespace program {
namespace {

struct TypeInfo {
  int type;
  const char* name;
  Colour colour;
};

// The library names rises and falls of z, which is a distance: where it rises, the profile falls in
// every picture and table.
const TypeInfo& typeOf(int featureType) {
  static const TypeInfo types[] = {{FEATURE_JUMP_FALL, "jump rise", {1.00, 0.28, 0.19}},
                                   {FEATURE_JUMP_RISE, "jump fall", {1.00, 0.55, 0.92}},
                                   {FEATURE_SLOPE_FALL, "slope rise", {1.00, 0.63, 0.24}},
                                   {FEATURE_SLOPE_RISE, "slope fall", {0.75, 0.51, 0.98}},
                                   {FEATURE_V, "V", {0.31, 0.86, 0.47}},
                                   {FEATURE_SEG_START, "segment start", {0.40, 0.85, 0.95}},
                                   {FEATURE_SEG_END, "segment end", {0.55, 0.70, 1.00}},
                                   {FEATURE_RIGHT_ANGLE_1, "flat, then up", {1.00, 0.55, 0.92}},
                                   {FEATURE_RIGHT_ANGLE_2, "flat, then down", {1.00, 0.63, 0.24}},
                                   {FEATURE_RIGHT_ANGLE_3, "up, then flat", {0.75, 0.51, 0.98}},
                                   {FEATURE_RIGHT_ANGLE_4, "down, then flat", {1.00, 0.28, 0.19}},
                                   {FEATURE_PEAK, "peak", {1.00, 0.80, 0.16}},
                                   {FEATURE_VALLEY, "valley", {0.27, 0.78, 0.94}},
                                   {FEATURE_CORNER_OTHER, "corner", {1.00, 1.00, 1.00}},
                                   {0, "other", {1.00, 1.00, 1.00}}};
  return *std::find_if(std::begin(types), std::end(types) - 1,
                       [=](const TypeInfo& info) { return info.type == featureType; });
}

}  // namespace

std::string nameOfType(int featureType) {
  return typeOf(featureType).name;
}

Colour colourOfType(int featureType) {
  return typeOf(featureType).colour;
}

}  // namespace program
