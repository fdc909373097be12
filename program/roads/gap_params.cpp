#include <algorithm>
#include <cmath>

#include "roads/gaps.h"

namespace program {

void addGapParameters(Parameters& p) {
  p.addDerived("outlier.step", Kind::length, "the scale", "Step in z that ends a run of samples");
  p.add("outlier.count", Kind::count, 3, "Blank runs of fewer samples");
  p.addDerived("gap.scale", Kind::length, "8 sample spacings or 10 times the noise, the larger",
               "Length of the arms of an edge; closer edges are one");
  p.add("gap.angle", Kind::angle, 30, "Smallest turn of an edge");
  p.addDerived("gap.step-z", Kind::length, "none does: the whole range of z",
               "Step in z beyond which no gap continues");
  p.addDerived("gap.width-min", Kind::length, "1.2 times the scale", "A gap is wider");
  p.addDerived("gap.width-max", Kind::length, "a quarter of the scan's extent in y",
               "A gap is narrower");
  p.addDerived("gap.depth-min", Kind::length,
               "8 times the noise or a tenth of the scale, the larger",
               "The floor of a gap is deeper than both edges by this");
  p.addDerived("gap.rim", Kind::length, "4 times the noise or a twentieth of the scale, the larger",
               "A rim is straight within this; its last such sample is the edge");
  p.addDerived("gap.level", Kind::length, "the scale",
               "Largest difference in z of the edges of an open gap");
  p.addDerived("tree.y", Kind::length, "8 line spacings or the scale, the larger",
               "Largest step in y of a gap's centre from line to line");
  p.addDerived("tree.z", Kind::length, "the scale", "Largest step in z of its centre");
  p.addDerived("tree.lines", Kind::count, "a tenth of the lines, but 8 or more",
               "Lines that a gap may miss");
  p.addDerived("tree.distance", Kind::length, "the distance of these lines",
               "Longest interruption in x that is bridged if more lines are missed");
  p.add("tree.seen", Kind::percent, 50,
        "Drop gaps that are found on a smaller percentage of their lines");
  p.addDerived("tree.length", Kind::length, "20 line spacings", "Drop gaps that are not longer");
}

GapParams gapParams(Parameters& p, const Extent& extent) {
  requireSpacing(extent);
  const double lines =
      extent.lineSpacing > 0.0 ? (extent.x.max - extent.x.min) / extent.lineSpacing : 0.0;
  p.derive("gap.scale", std::max(8.0 * extent.sampleSpacing, 10.0 * extent.noise));
  const double scale = p.get("gap.scale");
  p.derive("outlier.step", scale);
  p.derive("gap.step-z", extent.z.max - extent.z.min + scale);
  p.derive("gap.width-min", 1.2 * scale);
  p.derive("gap.width-max", std::max(0.25 * (extent.y.max - extent.y.min), 5.0 * scale));
  p.derive("gap.depth-min", std::max(8.0 * extent.noise, 0.1 * scale));
  p.derive("gap.rim", std::max(4.0 * extent.noise, 0.05 * scale));
  p.derive("gap.level", scale);
  p.derive("tree.y", std::max(8.0 * extent.lineSpacing, scale));
  p.derive("tree.z", scale);
  p.derive("tree.lines", std::max(8.0, std::floor(0.1 * lines)));
  p.derive("tree.distance", (p.get("tree.lines") + 1.0) * extent.lineSpacing);
  p.derive("tree.length", 20.0 * extent.lineSpacing);

  GapParams params{};
  params.cleaning = {p.get("outlier.step"), p.count("outlier.count"), 0, 0.0, 0.0};
  params.corner.minEndingGap_z = p.get("gap.step-z");
  params.corner.scale = scale;
  params.corner.cornerTh = p.get("gap.angle");
  params.width = {p.get("gap.width-min"), p.get("gap.width-max")};
  params.sampleSpacing = extent.sampleSpacing;
  params.minDepth = p.get("gap.depth-min");
  params.rimBand = p.get("gap.rim");
  params.rimLevel = p.get("gap.level");
  params.grow = {p.get("tree.y"),        p.get("tree.z"),      p.count("tree.lines"),
                 p.get("tree.distance"), p.get("tree.length"), 0.0};
  params.minCoverage = 0.01 * p.get("tree.seen");
  requireLess(p, "gap.width-min", "gap.width-max");
  return params;
}

}  // namespace program
