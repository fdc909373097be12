#include <algorithm>
#include <utility>

#include "base/number.h"
#include "commands/session.h"

namespace program {
namespace {

Field rangeField(std::string name, const STeskRangeD& range) {
  return {std::move(name), std::vector<Cell>{range.min, range.max}};
}

std::string withUnit(double value, const std::string& unit) {
  return significant(value, 4) + " " + unit;
}

}  // namespace

Field inputField(const InputOptions& input, const LoadedScan& loaded, const Extent& extent) {
  std::size_t samples = 0;
  for (const Line& line : loaded.scan) {
    samples = std::max(samples, line.size());
  }
  return {"input",
          std::vector<Field>{
              field("file", input.path),
              field("format", loaded.format),
              field("unit", input.unit),
              field("scale", input.scale),
              field("transposed", input.transpose),
              field("lines", static_cast<long long>(loaded.scan.size())),
              field("samples", static_cast<long long>(samples)),
              field("holes", loaded.holes),
              field("not_positive", loaded.notPositive),
              field("strays", loaded.strays),
              field("outside_roi", loaded.outside),
              {"spacing", std::vector<Field>{field("line", extent.lineSpacing),
                                             field("sample", extent.sampleSpacing)}},
              field("noise", extent.noise),
              {"extent", std::vector<Field>{rangeField("x", extent.x), rangeField("y", extent.y),
                                            rangeField("z", extent.z)}}}};
}

Field axesField(const InputOptions& input, const PlaneChoice& plane) {
  const char* meaning = plane.showsHeights() ? "height over the plane"
                        : input.zIsHeight    ? "distance from the highest sample"
                                             : "distance";
  return {"axes", std::vector<Field>{field("line_advances", std::string("x")),
                                     field("sample_follows", std::string("y")),
                                     field("z_is", std::string(meaning))}};
}

std::vector<std::string> describe(const InputOptions& input, const PreparedScan& scan) {
  std::vector<std::string> lines = {
      "Scan: " + input.path + ", " + scan.loaded.format + ", " +
      counted(scan.loaded.scan.size(), "line") + ", " + counted(scan.loaded.samples, "sample") +
      ", " + withUnit(scan.raw.lineSpacing, input.unit) + " between lines, " +
      withUnit(scan.raw.sampleSpacing, input.unit) + " between samples"};
  if (!scan.plane.chosen) {
    lines.emplace_back("Plane: none; z is the distance as read");
    return lines;
  }
  const PlaneCandidate& plane = *scan.plane.chosen;
  lines.push_back("Plane: by " + plane.method + ", tilted by " + fixed(plane.tiltDegrees, 2) +
                  " deg at " + (plane.isGround ? "y" : "z") + " = " +
                  withUnit(plane.height, input.unit) + ", " + fixed(100.0 * plane.onPlane, 1) +
                  " % of the samples within " + withUnit(plane.band, input.unit) +
                  (plane.isGround ? "; z is the distance" : "; z is the height over it"));
  return lines;
}

}  // namespace program
