#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <opencv2/core/mat.hpp>
#include <utility>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/prefetch.h"

namespace {

using ContourPoints = std::vector<SQO_contourPtInfo>;
using Contours = std::vector<SQO_lineConotours>;

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
};

/// The samples of one line or, across the lines, those of one sample index.
struct Track {
  const PeakView& peak;
  bool isLine;
  int index;  ///< Of the line or of the samples.

  [[nodiscard]] int start() const {
    return isLine ? peak.place.y : peak.place.x;
  }
  [[nodiscard]] int count() const {
    return isLine ? peak.sampleCount : peak.lineCount;
  }
  [[nodiscard]] STesk2DPoint place(int i) const {
    return isLine ? STesk2DPoint{index, i} : STesk2DPoint{i, index};
  }
  [[nodiscard]] const STesk3DPosition& sample(int i) const {
    const STesk2DPoint at = place(i);
    return peak.lines[at.x].p3DPosition[at.y];
  }
  /// Distance from the peak along the track.
  [[nodiscard]] double distanceAt(int i) const {
    const STesk3DPoint& point = sample(i).pt3D;
    return std::fabs(isLine ? peak.point.y - point.y : peak.point.x - point.x);
  }
};

/// How a walk reads the flags of samples.
struct Direction {
  int step;
  unsigned ownShift;    ///< First bit of the type code along the track,
  unsigned otherShift;  ///< and of the one across it.
  int facingJump;       ///< The types whose flank faces the walk.
  int facingSlope;
  int firstLabel;  ///< Virtual label of the marks on walks to lower index. Plus 1: to higher index.
};

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

/// A walk away from the peak to the boundary of its object.
class Walk {
 public:
  Walk(const Track& track, const Direction& direction, int nextIndex)
      : track_(track), direction_(direction), nextIndex_(nextIndex), last_(track.count() - 1) {}

  /// Appends the contour points on the way. Returns whether the walk was stopped, which is not how
  /// it ends at a boundary.
  bool run(ContourPoints& found) const {
    const PeakView& peak = track_.peak;
    for (int i = skipBare(track_.start()); i >= 0 && i <= last_;
         i = skipBare(i + direction_.step)) {
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

  /// The first sample from i on that has any flag that counts, or is the first or last of the
  /// track: the samples before it are passed.
  [[nodiscard]] int skipBare(int i) const {
    const unsigned counted = kTypeBits | (track_.peak.useMark ? kMarkBits : 0U);
    const auto isBare = [counted](const STesk3DPosition& sample) {
      return (static_cast<unsigned>(sample.nPointIdx) & counted) == 0;
    };
    const STesk3DLaserLine* const lines = track_.peak.lines;
    if (track_.isLine) {
      const STesk3DPosition* const samples = lines[track_.index].p3DPosition;
      const STesk3DPosition* const next = lines[nextIndex_].p3DPosition;
      for (; i > 0 && i < last_ && isBare(samples[i]); i += direction_.step) {
        scanline::detail::prefetch(next + i);
      }
    } else {
      while (i > 0 && i < last_ && isBare(lines[i].p3DPosition[track_.index])) {
        i += direction_.step;
      }
    }
    return i;
  }

  /// Whether one of five samples from i on has a type. A track that ends among them has none.
  [[nodiscard]] bool seesTypeAhead(int i) const {
    constexpr int kOutlook = 5;
    for (int k = 0; k < kOutlook; ++k, i += direction_.step) {
      if (i < 0 || i > last_) {
        return false;
      }
      if (typeAt(i, direction_.ownShift) != 0) {
        return true;
      }
    }
    return false;
  }

  /// The record of sample i, which has a mark in place of a type or the type code `type`.
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

  /// Whether a walk ends at this sample, be it added or not. Slopes let it go on to what is harder.
  /// As jumps end it, there never are two jumps in a row.
  [[nodiscard]] bool isBoundary(const SQO_contourPtInfo& point) const {
    return isJumpType(point.type) || point.type == FEATURE_SEG_START ||
           point.type == FEATURE_SEG_END || point.type == kMarkType ||
           point.edgeId == direction_.firstLabel || point.edgeId == direction_.firstLabel + 1;
  }

  Track track_;
  const Direction& direction_;
  int nextIndex_;  // of the line that is walked next
  int last_;
};

/// Removes the contours that were added to a list, unless keep() is called.
class AddedContours {
 public:
  explicit AddedContours(Contours& contours) : contours_(contours), kept_(contours.size()) {}
  AddedContours(const AddedContours&) = delete;
  AddedContours& operator=(const AddedContours&) = delete;
  ~AddedContours() {
    contours_.erase(contours_.begin() + static_cast<std::ptrdiff_t>(kept_), contours_.end());
  }

  void keep() {
    kept_ = contours_.size();
  }

 private:
  Contours& contours_;
  std::size_t kept_;
};

/// What the walks in one direction of an axis appended to the caller's list.
struct Side {
  Contours& contours;
  std::size_t first;       ///< Index of the first contour that was appended.
  std::size_t beyond = 0;  ///< Index of the first one of a place beyond the peak's.
  int maxEdge = 0;

  void add(int lineIdx, ContourPoints&& points) {
    for (const SQO_contourPtInfo& point : points) {
      maxEdge = std::max(maxEdge, point.edgeId);
    }
    if (!points.empty()) {
      contours.push_back({lineIdx, std::move(points)});
    }
  }

  /// Moves the contours up to the peak's place, the last one first, before all others.
  void turnToFront() const {
    const auto added = contours.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = contours.begin() + static_cast<std::ptrdiff_t>(beyond);
    std::reverse(added, end);
    std::rotate(contours.begin(), added, end);
  }
};

/// The walks in both directions of an axis.
struct Sides {
  Side low;
  Side high;
};

/// Follows the guide from index k on in steps of -1 or 1, as far as it stays near the peak, and
/// walks both ways from each place on it. Contours are appended in the order of the places.
void walkFromGuide(const Track& guide, int k, int step, Sides& sides) {
  const Direction& lowDirection = guide.isLine ? kLowAcrossLines : kLowAlongLine;
  const Direction& highDirection = guide.isLine ? kHighAcrossLines : kHighAlongLine;
  for (; k >= 0 && k < guide.count(); k += step) {
    if (guide.distanceAt(k) > guide.peak.halfSpan) {
      return;
    }
    const Track track = {guide.peak, !guide.isLine, k};
    const int next = std::clamp(k + step, 0, guide.count() - 1);
    ContourPoints low;
    ContourPoints high;
    Walk(track, lowDirection, next).run(low);  // that this one was stopped means nothing
    if (Walk(track, highDirection, next).run(high)) {
      return;
    }
    sides.low.add(k, std::move(low));
    sides.high.add(k, std::move(high));
  }
}

/// Walks from all places near the peak on the guide, which runs through the peak.
Sides scanAround(const Track& guide, Contours& low, Contours& high) {
  Sides sides = {{low, low.size()}, {high, high.size()}};
  walkFromGuide(guide, guide.start(), -1, sides);
  sides.low.beyond = low.size();
  sides.high.beyond = high.size();
  walkFromGuide(guide, guide.start() + 1, 1, sides);
  return sides;
}

/// Brings the contours into the order of their places; allocates nothing.
void finish(const Sides& sides, int* maxEdgeLow, int* maxEdgeHigh) {
  sides.low.turnToFront();
  // A caller may have one list for both sides, which must not be turned back.
  if (&sides.high.contours != &sides.low.contours) {
    sides.high.turnToFront();
  }
  *maxEdgeLow = 0;
  *maxEdgeHigh = 0;
  *maxEdgeLow = std::max(*maxEdgeLow, sides.low.maxEdge);
  *maxEdgeHigh = std::max(*maxEdgeHigh, sides.high.maxEdge);
}

}  // namespace

void qo_peakXYScan(STesk3DLaserLine* scanLines,
                   int lineNum,
                   cv::Mat& edgeMap,
                   SQO_2DValueI peak,
                   SQO_treeGrowParam /*growParam*/,
                   SQO_bagParam bagParam,
                   bool useMark,
                   std::vector<SQO_lineConotours>& lowYContours,
                   std::vector<SQO_lineConotours>& highYContours,
                   std::vector<SQO_lineConotours>& lowXContours,
                   std::vector<SQO_lineConotours>& highXContours,
                   int* maxEdgeLowY,
                   int* maxEdgeHighY,
                   int* maxEdgeLowX,
                   int* maxEdgeHighX) {
  constexpr int kPeakChannel = 3;
  if (edgeMap.at<cv::Vec4i>(peak.y, peak.x)[kPeakChannel] == 0) {
    return;
  }
  const PeakView view = {scanLines,
                         lineNum,
                         scanLines[0].nPositionCnt,
                         edgeMap,
                         {peak.x, peak.y},
                         scanLines[peak.x].p3DPosition[peak.y].pt3D,
                         bagParam.bagWidth - peak.valueD * 0.5,
                         useMark};
  std::array<AddedContours, 4> added = {AddedContours(lowYContours), AddedContours(highYContours),
                                        AddedContours(lowXContours), AddedContours(highXContours)};
  const Sides sidesY = scanAround({view, false, peak.y}, lowYContours, highYContours);
  const Sides sidesX = scanAround({view, true, peak.x}, lowXContours, highXContours);
  for (AddedContours& contours : added) {
    contours.keep();
  }
  finish(sidesY, maxEdgeLowY, maxEdgeHighY);
  finish(sidesX, maxEdgeLowX, maxEdgeHighX);
}
