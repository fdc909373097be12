#include <algorithm>

#include "roads/extractors.h"

namespace program {

void addExtractorParameters(Parameters& p) {
  p.addDerived("corner.scale", Kind::length, "12 sample spacings or 25 times the noise, the larger",
               "Length of the arms of a corner");
  p.add("corner.angle", Kind::angle, 28, "cornerTh: smallest turn of a corner");
  p.add("corner.th1", Kind::angle, 40, "jumpCornerTh_1: limit of the first kind of arm");
  p.add("corner.th2", Kind::angle, 40, "jumpCornerTh_2: limit of the second kind of arm");
  p.addDerived("corner.gap-y", Kind::length, "the scale", "minEndingGap: limit in y");
  p.addDerived("corner.gap-z", Kind::length, "4 times the scale", "minEndingGap_z: limit in z");
  p.addDerived("mask.y-min", Kind::number, "the smallest y", "Start of the samples that are used");
  p.addDerived("mask.y-max", Kind::number, "the largest y", "End of the samples that are used");
  p.addDerived("limit.z", Kind::number, "the middle of the scan", "Height that limits the corners");
  p.addDerived("ground.band", Kind::length, "6 times the noise",
               "Samples this near to the plane are ground");
  p.addDerived("ground.distance", Kind::length, "2 times the scale",
               "Largest distance of a corner from the ground");
  p.addDerived("width.min", Kind::length, "4 sample spacings", "Smallest width");
  p.addDerived("width.max", Kind::length, "a quarter of the extent in y", "Largest width");
  p.addDerived("jump.z", Kind::length, "8 times the noise or 4 sample spacings, the larger",
               "Change of z that makes a step");
  p.addDerived("peak.scale", Kind::length, "20 sample spacings",
               "Distance within which a peak is the extreme");
  p.addDerived("dent.window", Kind::length, "5 sample spacings", "Width of the slope's window");
  p.addDerived("slope.z", Kind::length, "half of the step", "Smallest change of z along a run");
  p.addDerived("slope.gap-y", Kind::length, "4 sample spacings",
               "Width of a hole inside a segment");
  p.addDerived("v.apex-z", Kind::length, "the step", "Difference of the tops of a V");
  p.addDerived("arm.flat", Kind::length, "12 sample spacings", "Length of the flat arm");
  p.addDerived("arm.steep", Kind::length, "8 sample spacings", "Length of the steep arm");
  p.addDerived("arm.deviation", Kind::length, "6 times the noise or 2 sample spacings, the larger",
               "Largest deviation of an arm");
  p.addDerived("tube.unit", Kind::length, "10 sample spacings", "Expected width of a tube");
  p.add("tube.hole", Kind::length, 0, "Holes up to this width are inside of one tube");
  p.addDerived("glove.arm", Kind::length, "60 sample spacings", "Length of the flanks of an arc");
  p.add("glove.angle", Kind::angle, 60, "Smallest turn of an arc");
  p.add("raised.slope", Kind::number, 2, "Slope dz / dy that a flank exceeds");
}

void deriveExtractorParameters(Parameters& p, const Extent& extent, const PlaneChoice& plane) {
  const double sample = extent.sampleSpacing;
  const double middle = 0.5 * (extent.shownZ.min + extent.shownZ.max);
  p.derive("corner.scale", std::max(12.0 * sample, 25.0 * extent.noise));
  p.derive("corner.gap-y", p.get("corner.scale"));
  p.derive("corner.gap-z", 4.0 * p.get("corner.scale"));
  p.derive("mask.y-min", extent.y.min);
  p.derive("mask.y-max", extent.y.max);
  p.derive("limit.z", plane.shown(middle));
  p.derive("ground.band", 6.0 * extent.noise);
  p.derive("ground.distance", 2.0 * p.get("corner.scale"));
  p.derive("width.min", 4.0 * sample);
  p.derive("width.max", 0.25 * (extent.y.max - extent.y.min));
  p.derive("jump.z", std::max(8.0 * extent.noise, 4.0 * sample));
  p.derive("peak.scale", 20.0 * sample);
  p.derive("dent.window", 5.0 * sample);
  p.derive("slope.z", 0.5 * p.get("jump.z"));
  p.derive("slope.gap-y", 4.0 * sample);
  p.derive("v.apex-z", p.get("jump.z"));
  p.derive("arm.flat", 12.0 * sample);
  p.derive("arm.steep", 8.0 * sample);
  p.derive("arm.deviation", std::max(6.0 * extent.noise, 2.0 * sample));
  p.derive("tube.unit", 10.0 * sample);
  p.derive("glove.arm", 60.0 * sample);
  if (p.isGiven("mask.y-min") || p.isGiven("mask.y-max")) {
    requireLess(p, "mask.y-min", "mask.y-max");
  }
}

}  // namespace program
