#include <algorithm>

#include "roads/arcs.h"

namespace program {
namespace {

void addCircleParameters(Parameters& p) {
  p.addDerived("arc.width-min", Kind::length, "3 times the scale",
               "Smallest distance of the ends of a ring arc");
  p.addDerived("arc.width-max", Kind::length, "the scan's extent in y",
               "Largest distance of the ends of an arc");
  p.addDerived("arc.radius-min", Kind::length, "2 sample spacings", "Smallest radius");
  p.addDerived("arc.radius-max", Kind::length, "the scan's extent in y", "Largest radius");
  p.addDerived("arc.rms", Kind::length, "4 times the noise or half a sample spacing, the larger",
               "Largest rms distance of the samples from the circle");
  p.add("arc.span", Kind::angle, 45, "Smallest part of a circle");
}

void addTreeParameters(Parameters& p) {
  p.addDerived("tree.y", Kind::length, "8 line spacings or the scale, the larger",
               "Largest step in y of an arc's top from line to line");
  p.addDerived("tree.z", Kind::length, "the scale", "Largest step in z of its top");
  p.add("tree.lines", Kind::count, 8, "Lines that a track may miss");
  p.addDerived("tree.distance", Kind::length, "the distance of these lines",
               "Longest interruption in x that is bridged if more lines are missed");
  p.add("tree.seen", Kind::percent, 50,
        "Drop tracks that are found on a smaller percentage of their lines");
  p.addDerived("tree.length", Kind::length, "20 line spacings", "Drop tracks that are not longer");
}

/// Sets what depends on the scan, and returns the scale.
double deriveFrom(Parameters& p, const Extent& extent) {
  const double spacing = extent.sampleSpacing;
  const double span = extent.y.max - extent.y.min;
  p.derive("arc.scale", std::max(6.0 * spacing, 25.0 * extent.noise));
  const double scale = p.get("arc.scale");
  p.derive("outlier.step", scale);
  p.derive("smooth.step-y", 4.0 * spacing);
  p.derive("smooth.step-z", std::max(3.0 * spacing, 6.0 * extent.noise));
  p.derive("arc.step-z", 4.0 * scale);
  p.derive("arc.width-min", 3.0 * scale);
  p.derive("arc.width-max", std::max(span, 10.0 * scale));
  p.derive("arc.radius-min", 2.0 * spacing);
  p.derive("arc.radius-max", std::max(span, 10.0 * scale));
  p.derive("arc.rms", std::max(4.0 * extent.noise, 0.5 * spacing));
  p.derive("tube.width-min", 6.0 * spacing);
  p.derive("tube.gap-y", 4.0 * spacing);
  p.derive("tube.step-z", std::max(3.0 * spacing, 6.0 * extent.noise));
  p.derive("tree.y", std::max(8.0 * extent.lineSpacing, scale));
  p.derive("tree.z", scale);
  p.derive("tree.distance", (p.get("tree.lines") + 1.0) * extent.lineSpacing);
  p.derive("tree.length", 20.0 * extent.lineSpacing);
  return scale;
}

}  // namespace

void addArcParameters(Parameters& p) {
  p.addDerived("outlier.step", Kind::length, "the scale", "Step in z that ends a run of samples");
  p.add("outlier.count", Kind::count, 3, "Blank runs of fewer samples");
  p.add("smooth.window", Kind::window, 5,
        "Width in samples of the moving mean with which ring arcs are searched, an odd number, or "
        "0; circles are fitted to unsmoothed samples");
  p.addDerived("smooth.step-y", Kind::length, "4 sample spacings",
               "Smoothing stops at a larger step in y");
  p.addDerived("smooth.step-z", Kind::length, "3 sample spacings or 6 times the noise, the larger",
               "Smoothing stops at a larger step in z");
  p.addDerived("arc.scale", Kind::length, "6 sample spacings or 25 times the noise, the larger",
               "Smallest length over which a ring arc turns");
  p.add("arc.scales", Kind::count, 3,
        "Lengths to search with, each twice the one before; more find larger radii in noise");
  p.addDerived("arc.step-z", Kind::length, "4 times the scale", "Step in z that ends a ring arc");
  p.add("arc.turn", Kind::angle, 30, "Smallest turn of a ring arc");
  addCircleParameters(p);
  p.addDerived("tube.width-min", Kind::length, "6 sample spacings",
               "Smallest distance of the ends of a tube");
  p.addDerived("tube.gap-y", Kind::length, "4 sample spacings", "A wider hole ends a tube");
  p.addDerived("tube.step-z", Kind::length, "3 sample spacings or 6 times the noise, the larger",
               "Step in z that ends a tube");
  p.add("tube.height", Kind::length, 0,
        "Ignore what lies lower over the plane when tubes are searched, so that those without a "
        "step beside them stand alone; 0: nothing");
  addTreeParameters(p);
}

ArcParams arcParams(Parameters& p, const Extent& extent, double planeZ) {
  requireSpacing(extent);
  const double scale = deriveFrom(p, extent);
  ArcParams params{};
  params.cleaning = {p.get("outlier.step"), p.count("outlier.count"), p.count("smooth.window"),
                     p.get("smooth.step-y"), p.get("smooth.step-z")};
  params.corner.minEndingGap_z = p.get("arc.step-z");
  params.corner.scale = scale;
  // Beyond this a length would not fit on any line.
  params.scales = std::min(p.count("arc.scales"), 20);
  params.corner.cornerTh = p.get("arc.turn");
  params.width = {p.get("arc.width-min"), p.get("arc.width-max")};
  params.radius = {p.get("arc.radius-min"), p.get("arc.radius-max")};
  params.maxRms = p.get("arc.rms");
  params.minSpan = p.get("arc.span");
  params.minTubeWidth = p.get("tube.width-min");
  params.tubeGap = p.get("tube.gap-y");
  params.tubeStep = p.get("tube.step-z");
  params.tubeHeight = p.get("tube.height");
  params.planeZ = planeZ;
  params.grow = {p.get("tree.y"),        p.get("tree.z"),      p.count("tree.lines"),
                 p.get("tree.distance"), p.get("tree.length"), 0.0};
  params.minCoverage = 0.01 * p.get("tree.seen");
  requireLess(p, "arc.width-min", "arc.width-max");
  requireLess(p, "arc.radius-min", "arc.radius-max");
  return params;
}

}  // namespace program
