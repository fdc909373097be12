#pragma once

#include <cmath>
#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/heightmap.h>

/// Walks away from a peak to the boundary of its object, one walk for both directions of the scan.
namespace scanline::detail {

/// What all walks around one peak read. Positions have the line in x and the sample in y.
struct PeakView {
  const STesk3DLaserLine* lines;
  int lineCount;
  int sampleCount;
  const cv::Mat& edgeMap;
  STesk2DPoint place;
  STesk3DPoint point;
  double halfSpan;
  bool useMark;

  [[nodiscard]] const STesk3DPosition& sample(STesk2DPoint at) const {
    return lines[at.x].p3DPosition[at.y];
  }
  [[nodiscard]] int edge(STesk2DPoint at) const {
    return edgeMap.at<cv::Vec4i>(at.y, at.x)[0];
  }
};

constexpr bool isJumpType(int type) {
  return type == FEATURE_JUMP_RISE || type == FEATURE_JUMP_FALL;
}

/// One line, whose indices are those of its samples.
struct AlongLine {
  static constexpr unsigned kOwnShift = 0;
  static constexpr unsigned kOtherShift = 4;
  static constexpr int kLowLabel = 5;
  static constexpr int kHighLabel = 6;

  const PeakView& peak;
  int line;

  [[nodiscard]] int start() const {
    return peak.place.y;
  }
  [[nodiscard]] int count() const {
    return peak.sampleCount;
  }
  [[nodiscard]] STesk2DPoint place(int i) const {
    return {line, i};
  }
  static double coordinate(const STesk3DPoint& point) {
    return point.y;
  }
};

/// The samples of one index, which are numbered by their lines.
struct AcrossLines {
  static constexpr unsigned kOwnShift = 4;
  static constexpr unsigned kOtherShift = 0;
  static constexpr int kLowLabel = 7;
  static constexpr int kHighLabel = 8;

  const PeakView& peak;
  int sample;

  [[nodiscard]] int start() const {
    return peak.place.x;
  }
  [[nodiscard]] int count() const {
    return peak.lineCount;
  }
  [[nodiscard]] STesk2DPoint place(int i) const {
    return {i, sample};
  }
  static double coordinate(const STesk3DPoint& point) {
    return point.x;
  }
};

/// Distance from the peak along the axis.
template <typename Axis>
double distanceAt(const Axis& axis, int i) {
  const PeakView& peak = axis.peak;
  return std::fabs(Axis::coordinate(peak.point) -
                   Axis::coordinate(peak.sample(axis.place(i)).pt3D));
}

/// The type code that a sample's flags hold from bit `shift`.
inline int typeIn(int flags, unsigned shift) {
  return static_cast<int>((static_cast<unsigned>(flags) >> shift) & 0xFU);
}

inline bool hasMark(int flags) {
  return (static_cast<unsigned>(flags) & 0xFF00U) != 0;
}

/// Whether one of five samples from i on has a type. A scan that ends among them has none.
template <typename Axis>
bool seesTypeAhead(const Axis& axis, int i, int step) {
  constexpr int kOutlook = 5;
  for (int k = 0; k < kOutlook; ++k, i += step) {
    if (i < 0 || i >= axis.count()) {
      return false;
    }
    if (typeIn(axis.peak.sample(axis.place(i)).nPointIdx, Axis::kOwnShift) != 0) {
      return true;
    }
  }
  return false;
}

/// Whether a flank of this type faces the walk: rises one to lower, falls one to higher index.
inline bool facesWalk(int type, int step) {
  return step < 0 ? type == FEATURE_JUMP_RISE || type == FEATURE_SLOPE_RISE
                  : type == FEATURE_JUMP_FALL || type == FEATURE_SLOPE_FALL;
}

constexpr int kMarkType = 8;

/// The record of sample i, which has a mark in place of a type or the type code `type`.
template <typename Axis>
SQO_contourPtInfo contourPointAt(const Axis& axis, int i, int step, bool isMarked, int type) {
  const STesk2DPoint at = axis.place(i);
  const STesk3DPoint& point = axis.peak.sample(at).pt3D;
  const double dist = distanceAt(axis, i);
  if (isMarked) {
    const int label = step < 0 ? Axis::kLowLabel : Axis::kHighLabel;
    return {at.x, at.y, kMarkType, label, 0, dist, point};
  }
  const int sideFlag = facesWalk(type, step) ? 1 : 0;
  return {at.x, at.y, type, axis.peak.edge(at), sideFlag, dist, point};
}

/// Whether sample i lies next to the walk's start or behind it.
template <typename Axis>
bool isBesideStart(const Axis& axis, int i, int step) {
  return step > 0 ? i <= axis.start() + 1 : i >= axis.start() - 1;
}

/// Whether a walk ends at this sample, be it added or not. Slopes let it go on to what is harder.
/// Jumps end it, so that the walk needs no rule for two jumps in a row that are far apart.
template <typename Axis>
bool isBoundary(const SQO_contourPtInfo& point) {
  return isJumpType(point.type) || point.type == FEATURE_SEG_START ||
         point.type == FEATURE_SEG_END || point.type == kMarkType ||
         point.edgeId == Axis::kLowLabel || point.edgeId == Axis::kHighLabel;
}

/// Walks from the peak in steps of -1 or 1 and appends the contour points on the way. Returns
/// whether the walk was stopped, which is not how it ends at a boundary.
template <typename Axis>
bool walkFromPeak(const Axis& axis, int step, std::vector<SQO_contourPtInfo>& found) {
  const PeakView& peak = axis.peak;
  const int last = axis.count() - 1;
  for (int i = axis.start(); i >= 0 && i <= last; i += step) {
    const int flags = peak.sample(axis.place(i)).nPointIdx;
    const int type = typeIn(flags, Axis::kOwnShift);
    const bool isMarked = type == 0 && peak.useMark && hasMark(flags);
    if (type == 0 && !isMarked && i != 0 && i != last) {
      if (isJumpType(typeIn(flags, Axis::kOtherShift)) && !seesTypeAhead(axis, i, step)) {
        return true;
      }
      continue;
    }
    const SQO_contourPtInfo point = contourPointAt(axis, i, step, isMarked, type);
    if (point.scanDist > peak.halfSpan) {
      return false;
    }
    if (point.type != 0 && point.edgeId >= 1) {
      if (isBesideStart(axis, i, step)) {
        return false;
      }
      found.push_back(point);
    }
    if (isBoundary<Axis>(point)) {
      return false;
    }
  }
  return false;
}

}  // namespace scanline::detail
