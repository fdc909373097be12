#pragma once

#include <cmath>

#include <scanline/conditioning.h>
#include "records/sample_rules.h"

namespace scanline::detail {

/// Continuity by height: what the walk keeps of the last measured sample.
class LastHeight {
 public:
  void keep(const STesk3DPoint& point) {
    z_ = point.z;
  }
  [[nodiscard]] double distanceTo(const STesk3DPoint& point) const {
    return std::fabs(point.z - z_);
  }

 private:
  double z_ = {};
};

/// Continuity by distance in space.
class LastPoint {
 public:
  void keep(const STesk3DPoint& point) {
    point_ = point;
  }
  [[nodiscard]] double distanceTo(const STesk3DPoint& point) const {
    const double dx = point.x - point_.x;
    const double dy = point.y - point_.y;
    const double dz = point.z - point_.z;
    return std::sqrt(dx * dx + dy * dy + dz * dz);
  }

 private:
  STesk3DPoint point_ = {};
};

/**
 * Cuts a sequence of samples into stretches of continuous ones and reports the stretches that hold
 * too few, each as soon as it is complete.
 *
 * The samples are handed in one by one, from wherever they lie: many walks can go on side by side.
 * What the walk needs of the samples it has passed, it keeps by value, so that those may be blanked
 * at once.
 */
template <typename Last>
class OutlierWalk {
 public:
  /// Takes the sample of index `i`. Calls `blank(first, last)`, both inclusive and with the holes
  /// between them, for the stretch that ends before it, if that is an outlier.
  template <typename Blank>
  void take(int i, const STesk3DPoint& point, const SQO_outlierFilterParam& para, Blank&& blank) {
    // A z that is not a number passes: it counts as measured and is continuous with nothing.
    if (isHole(point.z)) {
      return;
    }
    if (stretch_.len > 0 && para.continuityTh > last_.distanceTo(point)) {
      ++stretch_.len;
    } else {
      finish(para, blank);
      stretch_.start = i;
      stretch_.len = 1;
    }
    stretch_.value = i;
    last_.keep(point);
  }

  /// Closes the open stretch, if any, after the last sample.
  template <typename Blank>
  void finish(const SQO_outlierFilterParam& para, Blank&& blank) const {
    if (stretch_.len > 0 && para.outlierTh > static_cast<double>(stretch_.len)) {
      blank(stretch_.start, stretch_.value);
    }
  }

 private:
  /// The open stretch: first index, count of measured samples (0: none is open), last index.
  SQO_RUN stretch_ = {};
  Last last_;
};

}  // namespace scanline::detail
