// Marks the samples of a line at right angles, by the arms on both sides.
#include <algorithm>
#include <cmath>
#include <cstddef>

#include "features/right_angle_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

constexpr RightAngleMark kNoMark = {0, false};
constexpr ArmWalk kNoWalk = {ArmWalk::kRanOut, -1.0, -1.0};

/// The shortest arm of all kinds: a marked sample has such an arm on both sides.
double shortestArm(const RightAngleKinds& kinds) {
  return std::min({kinds.flatRise.flatArmLen, kinds.flatRise.steepArmLen, kinds.riseFlat.flatArmLen,
                   kinds.riseFlat.steepArmLen, kinds.flatFall.flatArmLen,
                   kinds.flatFall.steepArmLen, kinds.fallFlat.flatArmLen,
                   kinds.fallFlat.steepArmLen});
}

/// The widest tolerance of all kinds: no arm of a marked sample exceeds it.
double widestTolerance(const RightAngleKinds& kinds) {
  return std::max(
      {kinds.flatRise.armTol, kinds.riseFlat.armTol, kinds.flatFall.armTol, kinds.fallFlat.armTol});
}

/// Decides which kind of right angle a sample is at.
class Marker {
 public:
  Marker(const STesk3DPosition* lineData, int dataSize, const RightAngleKinds& kinds)
      : lineData_(lineData),
        walker_(lineData, dataSize),
        kinds_(kinds),
        minLen_(shortestArm(kinds)),
        maxTol_(widestTolerance(kinds)) {}

  /// Whether any sample can be marked.
  [[nodiscard]] bool canMark() const {
    return walker_.canEnd(minLen_);
  }

  /// The mark of sample `i`. Few samples of a line have a steep arm, so walks along both arms are
  /// made from these only.
  [[nodiscard]] RightAngleMark markOf(int i, const ArmOrigin& origin) const {
    if (!walker_.hasSteepArm(origin, minLen_, maxTol_)) {
      return kNoMark;
    }
    const ArmWalk back = walker_.backward(origin, minLen_);
    const ArmWalk ahead = walker_.forward(origin, minLen_);
    if (!back.isComplete() || !ahead.isComplete()) {
      return kNoMark;
    }
    if (maxTol_ > back.maxDz && maxTol_ > ahead.maxDy) {
      return markFlatThenSteep(i, origin, zOf(ahead.stop) > origin.z);
    }
    // A backward arm that ends at once deviates by 0 instead of -1.0, a forward one does not.
    const double backDy = back.stop == i - 1 ? 0.0 : back.maxDy;
    if (maxTol_ > backDy && maxTol_ > ahead.maxDz) {
      return markSteepThenFlat(i, origin, origin.z > zOf(back.stop));
    }
    return kNoMark;
  }

 private:
  [[nodiscard]] double zOf(int i) const {
    return lineData_[i].pt3D.z;
  }

  [[nodiscard]] ArmWalk backward(const ArmOrigin& origin, double armLen) const {
    return walker_.canEnd(armLen) ? walker_.backward(origin, armLen) : kNoWalk;
  }
  [[nodiscard]] ArmWalk forward(const ArmOrigin& origin, double armLen) const {
    return walker_.canEnd(armLen) ? walker_.forward(origin, armLen) : kNoWalk;
  }

  [[nodiscard]] RightAngleMark markFlatThenSteep(int i, const ArmOrigin& origin, bool rises) const {
    const SQO_lineRightAngleParam& param = rises ? kinds_.flatRise : kinds_.flatFall;
    const ArmWalk flat = backward(origin, param.flatArmLen);
    const ArmWalk steep = forward(origin, param.steepArmLen);
    const double flatDeviation = flat.isComplete() ? flat.maxDz : 0.0;
    const double steepDeviation = steep.isComplete() ? steep.maxDy : 0.0;
    // The tolerance of the rising kind applies to the falling one as well: the documented results
    // depend on it.
    const double armTol = kinds_.flatRise.armTol;
    if (!(armTol > flatDeviation && armTol > steepDeviation)) {
      return kNoMark;
    }
    return {rises ? FEATURE_RIGHT_ANGLE_2 : FEATURE_RIGHT_ANGLE_1, flat.stop == i - 1};
  }

  [[nodiscard]] RightAngleMark markSteepThenFlat(int i, const ArmOrigin& origin, bool rises) const {
    const SQO_lineRightAngleParam& param = rises ? kinds_.riseFlat : kinds_.fallFlat;
    const ArmWalk steep = backward(origin, param.steepArmLen);
    const ArmWalk flat = forward(origin, param.flatArmLen);
    const bool isSharp = steep.stop == i - 1;
    const double steepDeviation = steep.isComplete() && !isSharp ? steep.maxDy : 0.0;
    const double flatDeviation = flat.isComplete() ? flat.maxDz : 0.0;
    if (!(param.armTol > steepDeviation && param.armTol > flatDeviation)) {
      return kNoMark;
    }
    return {rises ? FEATURE_RIGHT_ANGLE_4 : FEATURE_RIGHT_ANGLE_3, isSharp};
  }

  const STesk3DPosition* lineData_;
  ArmWalker walker_;
  RightAngleKinds kinds_;
  double minLen_;
  double maxTol_;
};

/// Whether walks from a point can end. Those from a NaN never do, and would cost the whole line.
bool canEndWalks(const STesk3DPoint& point) {
  return !std::isnan(point.y) && !std::isnan(point.z);
}

}  // namespace

std::vector<RightAngleMark> markRightAngles(const STesk3DPosition* lineData,
                                            int dataSize,
                                            const RightAngleKinds& kinds) {
  std::vector<RightAngleMark> marks(static_cast<std::size_t>(std::max(dataSize, 0)), kNoMark);
  const Marker marker(lineData, dataSize, kinds);
  if (!marker.canMark()) {
    return marks;
  }
  int place = 0;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    const int next = isMeasured(point.z) ? place + 1 : place;
    if (!isMissing(point.z) && canEndWalks(point)) {
      marks[i] = marker.markOf(i, {point.y, point.z, place - 1, next});
    }
    place = next;
  }
  return marks;
}

}  // namespace scanline::detail
