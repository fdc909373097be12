#pragma once

#include <cmath>

#include <scanline/conditioning.h>
#include "geometry/distance.h"
#include "records/sample_rules.h"

namespace scanline::detail {

/// Continuity by the distance in z from the preceding sample that is no hole.
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

/// Continuity by the distance in space from the preceding sample that is no hole.
class LastPoint {
 public:
  void keep(const STesk3DPoint& point) {
    point_ = point;
  }
  [[nodiscard]] double distanceTo(const STesk3DPoint& point) const {
    return distanceInSpace(point_, point);
  }

 private:
  STesk3DPoint point_ = {};
};

/**
 * Cuts a sequence of samples into stretches of continuous samples and reports each stretch that is
 * too short as soon as it is complete.
 *
 * The samples are passed one by one, so that many walks can advance together. The walk keeps what
 * it needs of the preceding samples by value, so that these may be blanked at once.
 */
template <typename Last>
class OutlierWalk {
 public:
  /// Takes the sample with index `i`. If it begins a new stretch and the stretch before is an
  /// outlier, calls `blank(first, last)` for the latter, with both ends and the holes between them
  /// included.
  template <typename Blank>
  void take(int i, const STesk3DPoint& point, const SQO_outlierFilterParam& para, Blank&& blank) {
    // A z of NaN is not a hole. It counts, and it is continuous with nothing.
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
  /// The open stretch: first index, number of samples that are no holes (0: none is open), last
  /// index.
  SQO_RUN stretch_ = {};
  Last last_;
};

}  // namespace scanline::detail
