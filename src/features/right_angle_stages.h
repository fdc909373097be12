#pragma once

#include <vector>

#include <scanline/line_features.h>
#include <scanline/scan_records.h>
#include "features/profile.h"

/// The stages of the search for right angles: walks along the two arms of a sample, and the marks
/// of the samples.
namespace scanline::detail {

/// A sample that may be at a corner. Places are indices in the profile.
struct ArmOrigin {
  double y;
  double z;
  int placeBefore;  ///< Where a walk to lower indices begins.
  int placeAfter;   ///< Where a walk to higher indices begins.
};

/// The end of a walk along an arm, and the deviations of the samples on the way from its origin.
struct ArmWalk {
  static constexpr int kRanOut = -1;

  int stop;  ///< Index of the first sample beyond the arm's length; `kRanOut` if there is none.
  // Defined unless the walk ran out.
  double maxDy;  ///< Largest deviation in y; -1.0 if the walk ended at once.
  double maxDz;  ///< Largest deviation in z; -1.0 if the walk ended at once.

  [[nodiscard]] bool isComplete() const {
    return stop != kRanOut;
  }
};

/// Walks along the measured samples of a line only, so a walk costs the samples of one arm. A walk
/// that cannot end costs the whole line: ask `canEnd` first.
class ArmWalker {
 public:
  ArmWalker(const STesk3DPosition* lineData, int dataSize);

  /// Whether any walk of this length can end.
  [[nodiscard]] bool canEnd(double armLen) const {
    return span_ > armLen;
  }

  /// Walks to lower indices, up to the first sample with |dy| + |dz| > `armLen`.
  [[nodiscard]] ArmWalk backward(const ArmOrigin& origin, double armLen) const {
    return walk(origin, origin.placeBefore, -1, armLen);
  }
  /// Walks to higher indices, up to the first sample with |dy| + |dz| > `armLen`.
  [[nodiscard]] ArmWalk forward(const ArmOrigin& origin, double armLen) const {
    return walk(origin, origin.placeAfter, 1, armLen);
  }

  /// Whether the walk backward or the walk forward ends before a sample that deviates by
  /// `maxDeviation` or more in y. Visits samples up to the first such one on each side.
  [[nodiscard]] bool hasSteepArm(const ArmOrigin& origin, double armLen, double maxDeviation) const;

 private:
  [[nodiscard]] ArmWalk walk(const ArmOrigin& origin, int place, int stride, double armLen) const;

  Profile profile_;  ///< The measured samples.
  double span_;      ///< The greatest |dy| + |dz| of two samples is at most this, unless NaN.
};

/// The parameters of the four kinds.
struct RightAngleKinds {
  SQO_lineRightAngleParam flatRise;
  SQO_lineRightAngleParam riseFlat;
  SQO_lineRightAngleParam flatFall;
  SQO_lineRightAngleParam fallFlat;
};

/// The corner at a sample.
struct RightAngleMark {
  int kind;      ///< The feature type of the corner, 0 where there is none.
  bool isSharp;  ///< The backward arm ends at once, on the sample before.
};

/// One mark for each sample of a line.
std::vector<RightAngleMark> markRightAngles(const STesk3DPosition* lineData,
                                            int dataSize,
                                            const RightAngleKinds& kinds);

}  // namespace scanline::detail
