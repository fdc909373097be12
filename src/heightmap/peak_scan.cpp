// Finds contour points of the object around a peak, by walks away from it in four directions.
#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/peak_walk.h"

namespace detail = scanline::detail;

namespace {

using detail::Track;
using ContourPoints = std::vector<SQO_contourPtInfo>;
using Contours = std::vector<SQO_lineConotours>;

/// Removes the contours that were added to a list at the end of a scope, unless keep() was called.
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

/// The contours that the walks in one direction of an axis append to the list of the caller.
struct Side {
  Contours& contours;
  std::size_t first;       ///< Index of the first contour that was appended.
  std::size_t beyond = 0;  ///< Index of the first contour of a place after that of the peak.
  int maxEdge = 0;

  void add(int lineIdx, ContourPoints&& points) {
    for (const SQO_contourPtInfo& point : points) {
      maxEdge = std::max(maxEdge, point.edgeId);
    }
    if (!points.empty()) {
      contours.push_back({lineIdx, std::move(points)});
    }
  }

  /// Moves the contours of places up to that of the peak to the front of the list, in reverse
  /// order.
  void moveToFront() const {
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

/// Follows the guide from index k on in steps of -1 or 1, as far as it is near the peak, and walks
/// in both directions from each place on it. Contours are appended in the order of the places.
void walkFromGuide(const Track& guide, int k, int step, Sides& sides) {
  for (; k >= 0 && k < guide.count(); k += step) {
    if (guide.distanceAt(k) > guide.peak.halfSpan) {
      return;
    }
    const Track track = {guide.peak, !guide.isLine, k};
    const int next = std::clamp(k + step, 0, guide.count() - 1);
    ContourPoints low;
    ContourPoints high;
    detail::walkFromPeak(track, -1, next, low);  // has no consequence if it is stopped
    if (detail::walkFromPeak(track, 1, next, high)) {
      return;
    }
    sides.low.add(k, std::move(low));
    sides.high.add(k, std::move(high));
  }
}

/// Walks from all places near the peak on the guide, a track through the peak.
Sides scanAround(const Track& guide, Contours& low, Contours& high) {
  Sides sides = {{low, low.size()}, {high, high.size()}};
  walkFromGuide(guide, guide.start(), -1, sides);
  sides.low.beyond = low.size();
  sides.high.beyond = high.size();
  walkFromGuide(guide, guide.start() + 1, 1, sides);
  return sides;
}

/// Puts the contours into the order of their places and sets the labels; allocates nothing.
void finish(const Sides& sides, int* maxEdgeLow, int* maxEdgeHigh) {
  sides.low.moveToFront();
  // A caller may pass one list for both sides, which must not be reordered twice.
  if (&sides.high.contours != &sides.low.contours) {
    sides.high.moveToFront();
  }
  *maxEdgeLow = 0;  // both may be the same variable, which then gets the larger label
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
  assert(edgeMap.type() == CV_32SC4);
  assert(peak.x >= 0 && peak.x < std::min(lineNum, edgeMap.cols));
  assert(peak.y >= 0 && peak.y < std::min(scanLines[0].nPositionCnt, edgeMap.rows));
  constexpr int kPeakChannel = 3;
  if (edgeMap.at<cv::Vec4i>(peak.y, peak.x)[kPeakChannel] == 0) {
    return;
  }
  const detail::PeakView view = {scanLines,
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
