#include <algorithm>
#include <cmath>

#include "base/failure.h"
#include "base/number.h"
#include "roads/split.h"
#include "roads/split_map.h"

namespace program {
namespace {

/// An object must stand out from single pixels.
constexpr double kFewestPixels = 4.0;

/// A pixel a little larger than the spacing, so that none is left empty, but not more pixels than a
/// map may have.
double derivedPixel(const Scan& scan, double spacing) {
  constexpr double kSlack = 1.2;
  const STesk3DRangeD box = robustBounds(scan);
  const double area = std::max(box.xRange.max - box.xRange.min, 0.0) *
                      std::max(box.yRange.max - box.yRange.min, 0.0);
  return std::max(kSlack * spacing, std::sqrt(area / kMostPixels));
}

void checkAboveZero(const Parameters& p) {
  for (const char* name : {"min-height", "cut", "min-width", "pixel", "waist"}) {
    if (!(p.get(std::string("split.") + name) > 0.0)) {
      throw Failure(ExitCode::usage, std::string("--split-") + name + " must be above 0");
    }
  }
}

void check(const Parameters& p, double spacing, const Extent& extent) {
  checkAboveZero(p);
  const double pixel = p.get("split.pixel");
  if (pixel < spacing) {
    throw Failure(ExitCode::usage,
                  "--split-pixel " + significant(pixel, 4) +
                      " leaves empty pixels: neighbouring lines are " +
                      significant(extent.lineSpacing, 4) + " apart, neighbouring samples " +
                      significant(extent.sampleSpacing, 4) + ". Take a larger pixel");
  }
  if (p.get("split.min-width") < kFewestPixels * pixel) {
    throw Failure(ExitCode::usage, "--split-min-width " + significant(p.get("split.min-width"), 4) +
                                       " is less than " + significant(kFewestPixels, 1) +
                                       " pixels of the map, which are " + significant(pixel, 4) +
                                       " wide (--split-pixel). The scan is too coarse for such "
                                       "objects; take a larger width");
  }
}

}  // namespace

void addSplitParameters(Parameters& p) {
  p.addDerived(
      "split.min-height", Kind::length,
      "half a spacing, 8 times the noise, or 4 times the roughness of the belt, the largest",
      "What rises less over the belt belongs to the belt");
  p.addDerived("split.min-width", Kind::length, "6 pixels", "Leave out what is narrower");
  p.addDerived("split.cut", Kind::length, "4 spacings or 10 times the noise, the larger",
               "A larger step in height within two pixels divides objects");
  p.add("split.waist", Kind::percent, 60,
        "Divide where a waist has less than this percentage of the smaller object's width");
  p.addDerived("split.pixel", Kind::length, "1.2 spacings, more if the map gets too large",
               "Side of a pixel of the map");
}

SplitParams splitParams(Parameters& p, const Scan& scan, const Extent& extent, double roughness) {
  requireSpacing(extent);
  const double spacing = std::max(extent.lineSpacing, extent.sampleSpacing);
  p.derive("split.pixel", derivedPixel(scan, spacing));
  p.derive("split.min-height", std::max({0.5 * spacing, 8.0 * extent.noise, 4.0 * roughness}));
  p.derive("split.min-width", 6.0 * p.get("split.pixel"));
  p.derive("split.cut", std::max(4.0 * spacing, 10.0 * extent.noise));
  check(p, spacing, extent);
  constexpr double kPercent = 0.01;
  return {p.get("split.min-height"), p.get("split.cut"), p.get("split.min-width"),
          p.get("split.pixel"), kPercent * p.get("split.waist")};
}

}  // namespace program
