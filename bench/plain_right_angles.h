#pragma once

/// The search for right angles in its plainest form. The tests compare the library with it, the
/// benchmarks measure both.

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

/// The parameters in the order of the arguments.
using RightAngleKinds = std::array<SQO_lineRightAngleParam, 4>;

struct Arm {
  int stop;  ///< -1 if the arm does not end on the line.
  double dy;
  double dz;
};

inline Arm walkArm(const Line& line, int i, int step, double length) {
  Arm arm = {-1, -1.0, -1.0};
  for (int j = i + step; j >= 0 && j < static_cast<int>(line.size()); j += step) {
    if (line[j].pt3D.z > 0.0001) {
      const double dy = std::abs(line[j].pt3D.y - line[i].pt3D.y);
      const double dz = std::abs(line[j].pt3D.z - line[i].pt3D.z);
      if (dy + dz > length) {
        arm.stop = j;
        break;
      }
      arm.dy = dy > arm.dy ? dy : arm.dy;
      arm.dz = dz > arm.dz ? dz : arm.dz;
    }
  }
  return arm;
}

/// The type of the corner at a sample, 0 if there is none, and whether it is sharp.
using Corner = std::pair<int, bool>;

inline double deviationOf(const Arm& arm, double value) {
  return arm.stop < 0 ? 0.0 : value;
}

inline Corner flatThenSteep(const Line& line, int i, bool rises, const RightAngleKinds& kinds) {
  const SQO_lineRightAngleParam& kind = kinds[rises ? 0 : 2];
  const Arm flat = walkArm(line, i, -1, kind.flatArmLen);
  const Arm steep = walkArm(line, i, 1, kind.steepArmLen);
  const double tol = kinds[0].armTol;
  if (tol > deviationOf(flat, flat.dz) && tol > deviationOf(steep, steep.dy)) {
    return {rises ? FEATURE_RIGHT_ANGLE_2 : FEATURE_RIGHT_ANGLE_1, flat.stop == i - 1};
  }
  return {0, false};
}

inline Corner steepThenFlat(const Line& line, int i, bool rises, const RightAngleKinds& kinds) {
  const SQO_lineRightAngleParam& kind = kinds[rises ? 1 : 3];
  const Arm steep = walkArm(line, i, -1, kind.steepArmLen);
  const Arm flat = walkArm(line, i, 1, kind.flatArmLen);
  const bool isSharp = steep.stop == i - 1;
  if (kind.armTol > deviationOf(steep, isSharp ? 0.0 : steep.dy) &&
      kind.armTol > deviationOf(flat, flat.dz)) {
    return {rises ? FEATURE_RIGHT_ANGLE_4 : FEATURE_RIGHT_ANGLE_3, isSharp};
  }
  return {0, false};
}

inline Corner cornerAt(const Line& line, int i, const RightAngleKinds& kinds) {
  double minLen = kinds[0].flatArmLen;
  double maxTol = kinds[0].armTol;
  for (const SQO_lineRightAngleParam& kind : kinds) {
    minLen = std::min({minLen, kind.flatArmLen, kind.steepArmLen});
    maxTol = std::max(maxTol, kind.armTol);
  }
  const auto zOf = [&](int k) { return line[k].pt3D.z; };
  const Arm back = walkArm(line, i, -1, minLen);
  const Arm ahead = walkArm(line, i, 1, minLen);
  if (0.0001 > zOf(i) || back.stop < 0 || ahead.stop < 0) {
    return {0, false};
  }
  if (maxTol > back.dz && maxTol > ahead.dy) {
    return flatThenSteep(line, i, zOf(ahead.stop) > zOf(i), kinds);
  }
  if (maxTol > (back.stop == i - 1 ? 0.0 : back.dy) && maxTol > ahead.dz) {
    return steepThenFlat(line, i, zOf(i) > zOf(back.stop), kinds);
  }
  return {0, false};
}

inline void rightAngles(const Line& line,
                        int lineIdx,
                        const RightAngleKinds& kinds,
                        Features& features) {
  const int count = static_cast<int>(line.size());
  std::vector<Corner> corners;
  for (int i = 0; i < count; ++i) {
    corners.push_back(cornerAt(line, i, kinds));
  }
  for (int start = 0, end = 0; start < count; start = end) {
    int sharp = -1;
    for (end = start; end < count && corners[end].first == corners[start].first; ++end) {
      sharp = corners[end].second ? end : sharp;
    }
    if (corners[start].first != 0) {
      const int at = sharp >= 0 ? sharp : (start + end - 1) / 2;
      features.push_back({corners[start].first, {lineIdx, at}, line[at].pt3D, 0.0});
    }
  }
}

}  // namespace plain
