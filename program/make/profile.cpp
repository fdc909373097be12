#include <algorithm>
#include <cmath>

#include "base/noise.h"
#include "make/made_scan.h"
#include "make/profile_shapes.h"

namespace program {
namespace {

constexpr double kLineStep = 0.5;
constexpr double kPi = 3.141592653589793;

/// How far a piece of a profile takes its samples.
double lengthOf(const ProfilePoint& a, const ProfilePoint& b, bool hasWalls) {
  return hasWalls ? std::hypot(b.y - a.y, b.z - a.z) : b.y - a.y;
}

/// The straight pieces, a step from one sample to the next.
Line straightLine(const ProfileShape& shape) {
  Line line;
  double next = 0.0;
  double passed = 0.0;
  for (std::size_t k = 1; k < shape.corners.size(); ++k) {
    const ProfilePoint& a = shape.corners[k - 1];
    const ProfilePoint& b = shape.corners[k];
    const double length = lengthOf(a, b, shape.hasWalls);
    for (; next <= passed + length + 1e-9; next += shape.step) {
      const double share = (next - passed) / length;
      const int index = static_cast<int>(line.size());
      line.push_back({index, {0.0, a.y + share * (b.y - a.y), a.z + share * (b.z - a.z)}});
    }
    passed += length;
  }
  return line;
}

/// How far round places raise the profile.
double raisedBy(const ProfileShape& shape, double y) {
  double height = 0.0;
  for (const Rounding& arch : shape.arches) {
    const double share = (y - arch.centre) / arch.halfWidth;
    height += std::abs(share) < 1.0 ? arch.height * std::sqrt(1.0 - share * share) : 0.0;
  }
  for (const Rounding& bump : shape.bumps) {
    const double share = (y - bump.centre) / bump.halfWidth;
    height += std::abs(share) < 1.0 ? bump.height * 0.5 * (1.0 + std::cos(kPi * share)) : 0.0;
  }
  return height;
}

bool isSeen(const ProfileShape& shape, const STesk3DPoint& p) {
  return p.z < shape.farthest &&
         std::none_of(shape.holes.begin(), shape.holes.end(),
                      [&](const STeskRangeD& hole) { return p.y >= hole.min && p.y <= hole.max; });
}

}  // namespace

const ProfileShape& shapeNamed(const std::string& name) {
  return *std::find_if(profileShapes().begin(), profileShapes().end(),
                       [&](const ProfileShape& shape) { return shape.name == name; });
}

MadeScan makeProfile(const MakeParams& params, Progress& progress) {
  const ProfileShape& shape = shapeNamed(params.shape);
  MadeScan made;
  made.plane = {0.0, 0.0, shape.corners.front().z};
  made.profile = straightLine(shape);
  for (STesk3DPosition& sample : made.profile) {
    sample.pt3D.z -= raisedBy(shape, sample.pt3D.y);
    sample.pt3D.z = isSeen(shape, sample.pt3D) ? sample.pt3D.z : 0.0;
  }
  Noise noise(params.seed);
  made.scan.assign(kProfileLines, made.profile);
  for (int l = 0; l < kProfileLines; ++l) {
    for (STesk3DPosition& sample : made.scan[static_cast<std::size_t>(l)]) {
      sample.pt3D.x = kLineStep * l;
      sample.pt3D.z += isMeasured(sample) ? params.noise * noise.bell() : 0.0;
    }
    progress.advance();
  }
  return made;
}

}  // namespace program
