#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/progress.h"
#include "base/scan.h"

namespace program {

/// How a scan is made.
struct MakeParams {
  std::uint64_t seed;  ///< Of noise, dropouts and, for the belt, of its objects.
  double noise;        ///< Standard deviation of z.
  int objects;         ///< On the belt; not for other kinds.
  std::string shape;   ///< Of the profile; not for other kinds.
};

/// The plane z = c + a x + b y.
struct TruePlane {
  double a;
  double b;
  double c;

  [[nodiscard]] double at(double x, double y) const {
    return c + a * x + b * y;
  }
};

/// A thing on the reference plane.
struct TrueObject {
  std::string kind;
  double x;  ///< Its centre on the plane, in the scan's coordinates.
  double y;
  double length;
  double width;
  double height;   ///< Of its top over the plane; negative for a groove.
  double degrees;  ///< From x to its length.
};

/// A gap, by the centre line that it follows.
struct TrueGap {
  std::string name;
  double width;  ///< Along the lines.
  STeskRangeD x;
  double (*centre)(double x);  ///< y of its centre line.
};

/// A round rod, from one end of its axis to the other, in the scan's coordinates.
struct TrueRod {
  double radius;
  STesk3DPoint from;
  STesk3DPoint to;
};

/// A made scan, and what is known to be in it.
struct MadeScan {
  Scan scan;  ///< z is a distance from the sensor.
  TruePlane plane;
  bool isGround = false;  ///< The plane is to be levelled to a constant y.
  std::vector<TrueObject> objects;
  std::vector<TrueGap> gaps;
  std::vector<TrueRod> rods;
  Line profile;  ///< What every line is without noise, at x = 0.
};

/// Angle between the reference plane and the level that it is to be turned to.
double tiltDegrees(const MadeScan& made);

/// A kind of scan that can be made. All are the same for the same parameters, with any number of
/// threads.
struct SceneKind {
  const char* name;
  const char* shows;    ///< For help.
  double defaultNoise;  ///< In mm.
  int lines;            ///< Steps of progress; 0: it depends on the objects.
  MadeScan (*make)(const MakeParams& params, Progress& progress);
};

/// In the order of help.
const std::vector<SceneKind>& sceneKinds();

// Each makes one kind.

/// A workbench, 400 x 300 mm: a tilted table with three boxes, one of them stepped, a round boss, a
/// round bar, a wedge and a curved groove. A camera beside the laser leaves shadows at edges, and
/// there are dropouts, false distances and ghosts: patches far above everything, as mirror
/// reflections make them.
MadeScan makeBench(const MakeParams& params, Progress& progress);
constexpr int kBenchLines = 800;

/// Two plates before they are welded, 100 x 80 mm together. The seam between them, a V groove with
/// a flat root, follows an arc and is interrupted by two tack welds. One plate has a straight slot
/// and a scratch, and two clamps hold the part.
MadeScan makePart(const MakeParams& params, Progress& progress);
constexpr int kPartLines = 500;

/// A belt of bags and boxes, 1 m wide, longer the more objects it carries.
/// @throws Failure (usage) if the belt does not take all objects
MadeScan makeBelt(const MakeParams& params, Progress& progress);

/// A tilted plate with blocks on it.
MadeScan makePlate(const MakeParams& params, Progress& progress);

/// A tilted plate with a wide round hole.
MadeScan makeHole(const MakeParams& params, Progress& progress);

/// A shelf over falling ground, seen from the side: every line ends on the ground.
MadeScan makeShelf(const MakeParams& params, Progress& progress);
constexpr int kPlateLines = 240;

/// Round rods on a tilted floor, one of them with an end propped up.
MadeScan makeRods(const MakeParams& params, Progress& progress);
constexpr int kRodsLines = 300;

/// One profile on every line, for the search of one extractor.
MadeScan makeProfile(const MakeParams& params, Progress& progress);
constexpr int kProfileLines = 61;

}  // namespace program
