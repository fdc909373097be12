#pragma once

#include <vector>

#include <scanline/line_features.h>
#include <scanline/scan_records.h>

/// The stages of the search for right angles: walks along the two arms of a sample, and the marks
/// that samples get from them.
namespace scanline::detail {

/// Where a walk along an arm ended and how far the samples on the way strayed from its start.
struct ArmWalk {
  static constexpr int kRanOut = -1;

  int stop;  ///< Index of the first sample beyond the arm's length; `kRanOut` if there is none.
  // Defined unless the walk ran out.
  double maxDy;  ///< Largest distance in y on the way; -1.0 if nothing was.
  double maxDz;  ///< Largest distance in z on the way; -1.0 if nothing was.

  [[nodiscard]] bool isComplete() const {
    return stop != kRanOut;
  }
};

/// Walks along a line from its samples. Holes are left out beforehand, so that a walk costs the
/// samples of one arm. A walk that cannot end costs the whole line and must not be made.
class ArmWalker {
 public:
  ArmWalker(const STesk3DPosition* lineData, int dataSize);

  /// Whether any walk of this length can end.
  [[nodiscard]] bool canEnd(double armLen) const {
    return span_ > armLen;
  }

  /// Walks from a sample to lower indices, up to the first with |dy| + |dz| > `armLen`.
  [[nodiscard]] ArmWalk backward(int sample, double armLen) const {
    return walk(sample, placeOf_[sample] - 1, -1, armLen);
  }
  /// Walks from a sample to higher indices, up to the first with |dy| + |dz| > `armLen`.
  [[nodiscard]] ArmWalk forward(int sample, double armLen) const {
    return walk(sample, placeOf_[sample + 1], 1, armLen);
  }

 private:
  struct Neighbour {
    double y;
    double z;
    int index;
  };

  [[nodiscard]] ArmWalk walk(int sample, int place, int stride, double armLen) const;

  const STesk3DPosition* lineData_;
  std::vector<Neighbour> neighbours_;  ///< The samples that a walk sees.
  std::vector<int> placeOf_;  ///< For each sample and the end, the number of neighbours before it.
  double span_;  ///< No two samples are farther apart in |dy| + |dz|; not above any length if NaN.
};

/// The parameters of the four kinds.
struct RightAngleKinds {
  SQO_lineRightAngleParam flatRise;
  SQO_lineRightAngleParam riseFlat;
  SQO_lineRightAngleParam flatFall;
  SQO_lineRightAngleParam fallFlat;
};

/// What the search says of one sample.
struct RightAngleMark {
  int kind;      ///< The feature type of the corner, 0 where there is none.
  bool isSharp;  ///< The backward arm ends at once, on the sample before.
};

/// One mark for each sample of a line.
std::vector<RightAngleMark> markRightAngles(const STesk3DPosition* lineData,
                                            int dataSize,
                                            const RightAngleKinds& kinds);

}  // namespace scanline::detail
