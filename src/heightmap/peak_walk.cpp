#include "heightmap/peak_walk.h"

#include "records/prefetch.h"

namespace scanline::detail {

namespace {

/// How a walk in one direction reads the flags of samples.
struct Direction {
  int step;
  unsigned ownShift;    ///< First bit of the own type of a sample.
  unsigned otherShift;  ///< First bit of the other type.
  int facingJump;       ///< Type of the jump that faces the walk.
  int facingSlope;      ///< Type of the slope that faces the walk.
  int firstLabel;       ///< Virtual label of walks to lower index; plus 1: to higher index.
};

// Virtual labels: 5 and 6 along a line, 7 and 8 across the lines.
constexpr Direction kLowAlongLine = {-1, 0, 4, FEATURE_JUMP_RISE, FEATURE_SLOPE_RISE, 5};
constexpr Direction kHighAlongLine = {1, 0, 4, FEATURE_JUMP_FALL, FEATURE_SLOPE_FALL, 5};
constexpr Direction kLowAcrossLines = {-1, 4, 0, FEATURE_JUMP_RISE, FEATURE_SLOPE_RISE, 7};
constexpr Direction kHighAcrossLines = {1, 4, 0, FEATURE_JUMP_FALL, FEATURE_SLOPE_FALL, 7};

constexpr int kMarkType = 8;
constexpr unsigned kMarkBits = 0xFF00U;
constexpr unsigned kTypeBits = 0x00FFU;

bool isJumpType(int type) {
  return type == FEATURE_JUMP_RISE || type == FEATURE_JUMP_FALL;
}

/// A walk away from a peak to the boundary of its object.
class Walk {
 public:
  Walk(const Track& track, const Direction& direction, int nextIndex)
      : track_(track), direction_(direction), nextIndex_(nextIndex), last_(track.count() - 1) {}

  /// Appends the contour points on the way. Returns whether the walk was stopped, in contrast to a
  /// walk that ends at a boundary.
  bool run(std::vector<SQO_contourPtInfo>& found) const {
    const PeakView& peak = track_.peak;
    for (int i = skipUnflagged(track_.start()); i >= 0 && i <= last_;
         i = skipUnflagged(i + direction_.step)) {
      const int type = typeAt(i, direction_.ownShift);
      const bool isMarked = type == 0 && peak.useMark && (flagsAt(i) & kMarkBits) != 0;
      if (type == 0 && !isMarked && i != 0 && i != last_) {
        if (isJumpType(typeAt(i, direction_.otherShift)) && !seesTypeAhead(i)) {
          return true;
        }
        continue;
      }
      const SQO_contourPtInfo point = contourPointAt(i, isMarked, type);
      if (point.scanDist > peak.halfSpan) {
        return false;
      }
      if (point.type != 0 && point.edgeId >= 1) {
        if (isBesideStart(i)) {
          return false;
        }
        found.push_back(point);
      }
      if (isBoundary(point)) {
        return false;
      }
    }
    return false;
  }

 private:
  [[nodiscard]] unsigned flagsAt(int i) const {
    return static_cast<unsigned>(track_.sample(i).nPointIdx);
  }
  [[nodiscard]] int typeAt(int i, unsigned shift) const {
    return static_cast<int>((flagsAt(i) >> shift) & 0xFU);
  }

  /// Index of the first sample from i on that has a flag that counts, or is the first or last one
  /// of the track.
  [[nodiscard]] int skipUnflagged(int i) const {
    const unsigned counted = kTypeBits | (track_.peak.useMark ? kMarkBits : 0U);
    const auto isUnflagged = [counted](const STesk3DPosition& sample) {
      return (static_cast<unsigned>(sample.nPointIdx) & counted) == 0;
    };
    const STesk3DLaserLine* const lines = track_.peak.lines;
    if (track_.isLine) {
      const STesk3DPosition* const samples = lines[track_.index].p3DPosition;
      const STesk3DPosition* const next = lines[nextIndex_].p3DPosition;
      for (; i > 0 && i < last_ && isUnflagged(samples[i]); i += direction_.step) {
        prefetch(next + i);
      }
    } else {
      for (; i > 0 && i < last_ && isUnflagged(lines[i].p3DPosition[track_.index]);
           i += direction_.step) {
        prefetch(lines[i].p3DPosition + nextIndex_);
      }
    }
    return i;
  }

  /// Whether one of five samples from i on, before the end of the track, has an own type.
  [[nodiscard]] bool seesTypeAhead(int i) const {
    constexpr int kLookahead = 5;
    for (int k = 0; k < kLookahead; ++k, i += direction_.step) {
      if (i < 0 || i > last_) {
        return false;
      }
      if (typeAt(i, direction_.ownShift) != 0) {
        return true;
      }
    }
    return false;
  }

  /// The record of sample i, which has a mark but no own type, or the own type `type`.
  [[nodiscard]] SQO_contourPtInfo contourPointAt(int i, bool isMarked, int type) const {
    const STesk2DPoint at = track_.place(i);
    const STesk3DPoint& point = track_.sample(i).pt3D;
    const double dist = track_.distanceAt(i);
    if (isMarked) {
      const int label = direction_.firstLabel + (direction_.step > 0 ? 1 : 0);
      return {at.x, at.y, kMarkType, label, 0, dist, point};
    }
    const bool facesWalk = type == direction_.facingJump || type == direction_.facingSlope;
    const int edge = track_.peak.edgeMap.at<cv::Vec4i>(at.y, at.x)[0];
    return {at.x, at.y, type, edge, facesWalk ? 1 : 0, dist, point};
  }

  /// Whether sample i is at most one step from the start of the walk.
  [[nodiscard]] bool isBesideStart(int i) const {
    return (i - track_.start()) * direction_.step <= 1;
  }

  /// Whether a walk ends at this sample, whether or not it is a contour point. Slopes do not end
  /// it, as a harder boundary may follow.
  [[nodiscard]] bool isBoundary(const SQO_contourPtInfo& point) const {
    return isJumpType(point.type) || point.type == FEATURE_SEG_START ||
           point.type == FEATURE_SEG_END || point.type == kMarkType ||
           point.edgeId == direction_.firstLabel || point.edgeId == direction_.firstLabel + 1;
  }

  Track track_;
  const Direction& direction_;
  int nextIndex_;  // index of the track that is prefetched
  int last_;
};

}  // namespace

bool walkFromPeak(const Track& track,
                  int step,
                  int nextIndex,
                  std::vector<SQO_contourPtInfo>& found) {
  const Direction& low = track.isLine ? kLowAlongLine : kLowAcrossLines;
  const Direction& high = track.isLine ? kHighAlongLine : kHighAcrossLines;
  return Walk(track, step < 0 ? low : high, nextIndex).run(found);
}

}  // namespace scanline::detail
