#include <cmath>

#include "make/made_scan.h"

namespace program {

double tiltDegrees(const MadeScan& made) {
  constexpr double kDegrees = 180.0 / 3.141592653589793;
  const TruePlane& plane = made.plane;
  return kDegrees * (made.isGround ? std::atan2(std::hypot(plane.a, 1.0), std::abs(plane.b))
                                   : std::atan(std::hypot(plane.a, plane.b)));
}

const std::vector<SceneKind>& sceneKinds() {
  static const std::vector<SceneKind> all = {
      {"bench", "a tilted table with boxes, a boss, a bar, a wedge and a groove, for 'trace'",
       0.045, kBenchLines, makeBench},
      {"part", "two plates with a weld seam, a slot and clamps, for 'gaps'", 0.01, kPartLines,
       makePart},
      {"belt", "bags and boxes on a belt, for 'split'", 0.6, 0, makeBelt},
      {"plate", "a tilted plate with blocks, for 'calibrate'", 0.03, kPlateLines, makePlate},
      {"hole", "a tilted plate with a round hole, for 'calibrate'", 0.03, kPlateLines, makeHole},
      {"shelf", "a shelf over falling ground, seen from the side, for 'calibrate'", 0.03,
       kPlateLines, makeShelf},
      {"rods", "round rods on a floor, for 'arcs'", 0.03, kRodsLines, makeRods},
      {"profile", "the same profile on every line, for 'line'; see --shape", 0.03, kProfileLines,
       makeProfile}};
  return all;
}

}  // namespace program
