#include "plane/plane_report.h"

#include "plane/plane_fit.h"
#include "plane/plane_methods.h"

namespace program {

std::vector<PlaneCandidate> tryAllPlanes(Scan& scan,
                                         const Extent& extent,
                                         const PlaneOptions& options) {
  const Scan few = thinned(scan);
  std::vector<PlaneCandidate> planes;
  for (const PlaneMethod& method : planeMethods()) {
    planes.push_back(tryMethod(method.name, scan, few, extent, options));
    judge(planes.back());
  }
  return planes;
}

Table planeTable(const std::vector<PlaneCandidate>& planes, const std::string& unit) {
  Table table = {"planes",
                 "Planes",
                 {{"method", ""},
                  {"tilt", "deg", 2},
                  {"height", unit},
                  {"on plane", "%", 1},
                  {"band", unit},
                  {"residual", unit, 4},
                  {"remark", ""}},
                 {}};
  for (const PlaneCandidate& plane : planes) {
    const bool isFound = plane.band > 0.0 || plane.onPlane > 0.0;
    const auto number = [&](double value) { return isFound ? Cell{value} : Cell{}; };
    table.rows.push_back({plane.method, number(plane.tiltDegrees), number(plane.height),
                          number(100.0 * plane.onPlane), number(plane.band), number(plane.residual),
                          plane.refused});
  }
  return table;
}

Field planeField(const PlaneChoice& plane) {
  std::vector<Field> fields = {{"chosen", Cell{std::string("none")}}};
  if (plane.chosen) {
    const PlaneCandidate& chosen = *plane.chosen;
    fields = {{"chosen", Cell{chosen.method}}, {"tilt_deg", Cell{chosen.tiltDegrees}},
              {"height", Cell{chosen.height}}, {"on_plane", Cell{chosen.onPlane}},
              {"band", Cell{chosen.band}},     {"residual", Cell{chosen.residual}}};
  }
  std::vector<Field> refused;
  for (const PlaneCandidate& other : plane.others) {
    refused.push_back({other.method, Cell{other.refused}});
  }
  fields.push_back({"refused", refused});
  return {"plane", fields};
}

}  // namespace program
