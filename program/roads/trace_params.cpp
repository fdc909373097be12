#include <algorithm>

#include "roads/trace.h"

namespace program {

void addTraceParameters(Parameters& p) {
  p.addDerived("outlier.step", Kind::length, "the scale", "Step in z that ends a run of samples");
  p.add("outlier.count", Kind::count, 4, "Blank runs of fewer samples");
  p.add("smooth.window", Kind::window, 5,
        "Width of the moving mean in samples, an odd number, or 0");
  p.addDerived("smooth.step-y", Kind::length, "4 sample spacings",
               "Smoothing stops at a larger step in y");
  p.addDerived("smooth.step-z", Kind::length, "3 sample spacings or 6 times the noise, the larger",
               "Smoothing stops at a larger step in z");
  p.addDerived("corner.scale", Kind::length, "12 sample spacings or 25 times the noise, the larger",
               "Length of the arms of a corner");
  p.add("corner.angle", Kind::angle, 28, "Smallest turn of a corner");
  p.add("corner.steep", Kind::angle, 55, "A steeper arm makes it a jump");
  p.add("corner.flat", Kind::angle, 40, "The other arm of a jump is flatter");
  p.addDerived("corner.gap-y", Kind::length, "the scale", "Step in y that ends a segment");
  p.addDerived("corner.gap-z", Kind::length, "4 times the scale", "Step in z that ends a segment");
  p.addDerived("tree.y", Kind::length, "8 line spacings or the scale, the larger",
               "Largest step in y from node to node");
  p.addDerived("tree.z", Kind::length, "the scale", "Largest step in z from node to node");
  p.add("tree.lines", Kind::count, 8, "Lines that a tree may miss; 0: any number");
  p.addDerived("tree.distance", Kind::length, "the distance of these lines",
               "Largest step in x once that many lines are missed");
  p.addDerived("tree.length", Kind::length, "20 line spacings", "Drop trees that are not longer");
}

TraceParams traceParams(Parameters& p, const Extent& extent) {
  requireSpacing(extent);
  p.derive("smooth.step-y", 4.0 * extent.sampleSpacing);
  p.derive("smooth.step-z", std::max(3.0 * extent.sampleSpacing, 6.0 * extent.noise));
  p.derive("corner.scale", std::max(12.0 * extent.sampleSpacing, 25.0 * extent.noise));
  const double scale = p.get("corner.scale");
  p.derive("outlier.step", scale);
  p.derive("corner.gap-y", scale);
  p.derive("corner.gap-z", 4.0 * scale);
  p.derive("tree.y", std::max(8.0 * extent.lineSpacing, scale));
  p.derive("tree.z", scale);
  p.derive("tree.distance", (p.get("tree.lines") + 1.0) * extent.lineSpacing);
  p.derive("tree.length", 20.0 * extent.lineSpacing);

  TraceParams params{};
  params.cleaning = {p.get("outlier.step"), p.count("outlier.count"), p.count("smooth.window"),
                     p.get("smooth.step-y"), p.get("smooth.step-z")};
  params.corner.minEndingGap = p.get("corner.gap-y");
  params.corner.minEndingGap_z = p.get("corner.gap-z");
  params.corner.scale = scale;
  params.corner.cornerTh = p.get("corner.angle");
  params.corner.jumpCornerTh_1 = p.get("corner.steep");
  params.corner.jumpCornerTh_2 = p.get("corner.flat");
  params.grow.yDeviation_max = p.get("tree.y");
  params.grow.zDeviation_max = p.get("tree.z");
  params.grow.maxLineSkipNum = p.count("tree.lines");
  params.grow.maxSkipDistance = p.get("tree.distance");
  params.grow.minLTypeTreeLen = p.get("tree.length");
  params.grow.minVTypeTreeLen = p.get("tree.length");
  return params;
}

}  // namespace program
