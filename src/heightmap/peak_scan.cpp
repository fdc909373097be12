#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/heightmap.h>
#include "heightmap/peak_walk.h"

namespace detail = scanline::detail;

namespace {

using ContourPoints = std::vector<SQO_contourPtInfo>;
using Contours = std::vector<SQO_lineConotours>;

/// Where the walks in the two directions of one axis leave what they found.
struct Sides {
  Contours& low;
  Contours& high;
  int* maxEdgeLow;
  int* maxEdgeHigh;
};

void addContour(int lineIdx, ContourPoints&& points, Contours& contours, int* maxEdge) {
  for (const SQO_contourPtInfo& point : points) {
    *maxEdge = std::max(*maxEdge, point.edgeId);
  }
  if (!points.empty()) {
    contours.push_back({lineIdx, std::move(points)});
  }
}

/// Follows the guide from index k on in steps of -1 or 1, as far as it stays near the peak, and
/// walks both ways from each place on it. Contours are appended in the order of the places.
template <typename WalkAxis, typename Guide>
void walkFromGuide(const Guide& guide, int k, int step, const Sides& sides) {
  for (; step < 0 ? k >= 0 : k < guide.count(); k += step) {
    if (detail::distanceAt(guide, k) > guide.peak.halfSpan) {
      return;
    }
    const WalkAxis axis = {guide.peak, k};
    ContourPoints low;
    ContourPoints high;
    detail::walkFromPeak(axis, -1, low);  // that this one was stopped means nothing
    if (detail::walkFromPeak(axis, 1, high)) {
      return;
    }
    addContour(k, std::move(low), sides.low, sides.maxEdgeLow);
    addContour(k, std::move(high), sides.high, sides.maxEdgeHigh);
  }
}

/// Puts what follows the first `held` contours in front of them, the last one first.
void turnToFront(Contours& contours, std::size_t held) {
  const auto added = contours.begin() + static_cast<std::ptrdiff_t>(held);
  std::reverse(added, contours.end());
  std::rotate(contours.begin(), added, contours.end());
}

/// Walks from all places near the peak on the guide, which runs through the peak.
template <typename WalkAxis, typename Guide>
void scanAround(const Guide& guide, const Sides& sides) {
  *sides.maxEdgeLow = 0;
  *sides.maxEdgeHigh = 0;
  const std::size_t heldLow = sides.low.size();
  const std::size_t heldHigh = sides.high.size();
  walkFromGuide<WalkAxis>(guide, guide.start(), -1, sides);
  turnToFront(sides.low, heldLow);
  // A caller may have one list for both sides, which must not be turned back.
  if (&sides.high != &sides.low) {
    turnToFront(sides.high, heldHigh);
  }
  walkFromGuide<WalkAxis>(guide, guide.start() + 1, 1, sides);
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
  const detail::PeakView view = {scanLines,
                                 lineNum,
                                 scanLines[0].nPositionCnt,
                                 edgeMap,
                                 {peak.x, peak.y},
                                 scanLines[peak.x].p3DPosition[peak.y].pt3D,
                                 bagParam.bagWidth - peak.valueD * 0.5,
                                 useMark};
  scanAround<detail::AlongLine>(detail::AcrossLines{view, peak.y},
                                {lowYContours, highYContours, maxEdgeLowY, maxEdgeHighY});
  scanAround<detail::AcrossLines>(detail::AlongLine{view, peak.x},
                                  {lowXContours, highXContours, maxEdgeLowX, maxEdgeHighX});
}
