/**
 * @file
 * Finds round rods on a floor on each line, and fits circles to them.
 */

#include <cmath>
#include <cstdio>
#include <utility>
#include <vector>

#include <scanline/scanline.h>

namespace {

/// A line across a floor with two rods on it, of radius 10 mm and 6 mm.
std::vector<STesk3DPosition> makeLine() {
  constexpr double kFloor = 400.0;
  std::vector<STesk3DPosition> line(600);
  for (int i = 0; i < 600; ++i) {
    const double y = 0.2 * i;
    double z = kFloor;
    for (const auto& [centre, radius] : {std::pair{35.0, 10.0}, std::pair{85.0, 6.0}}) {
      const double across = y - centre;
      if (std::abs(across) < radius) {
        z = kFloor - radius - std::sqrt(radius * radius - across * across);
      }
    }
    line[i] = {i, {0.0, y, z}};
  }
  return line;
}

}  // namespace

int main() {
  std::vector<STesk3DPosition> line = makeLine();
  SQO_cornerParam corner = {};
  corner.minEndingGap_z = 50.0;
  corner.scale = 1.5;
  corner.cornerTh = 60.0;
  std::vector<SJU_segFeature> arcs;
  ju_getRingArcFeature(line, 0, corner, {8.0, 30.0}, arcs);

  for (const SJU_segFeature& arc : arcs) {
    // The fit is in the x-y plane; here that is the plane of the line.
    std::vector<STesk3DPoint> points;
    for (int i = arc.startPtIdx; i <= arc.endPtIdx; ++i) {
      points.push_back({line[i].pt3D.y, line[i].pt3D.z, 0.0});
    }
    STesk3DPoint centre = {};
    double radius = 0.0;
    fitCircleByLeastSquare(points, centre, radius);
    std::printf("rod of radius %.2f mm, centre at y = %.2f, z = %.2f\n", radius, centre.x,
                centre.y);
  }
}
