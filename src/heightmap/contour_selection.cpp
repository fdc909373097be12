// Selects contour points, and pairs of them, by their edges.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include <scanline/heightmap.h>

namespace {

bool facesWalk(const SQO_contourPtInfo& point) {
  return point.sideFlag >= 1;
}

/// The side verdict: 1 if more than half of all points in a list were added and face the walk.
int verdictOn(std::size_t facing, std::size_t listSize) {
  return 2 * facing > listSize ? 1 : 0;
}

/// Selected contour points as plain positions.
class SelectedPoints {
 public:
  void add(const SQO_contourPtInfo& point, int tag) {
    points_.push_back({point.x, point.y, point.type, point.edgePt.z, tag});
    facing_ += facesWalk(point) ? 1 : 0;
  }
  /// Appends the points. Returns the side verdict: 1 if more than half of the whole list are
  /// selected points that face the walk, otherwise 0.
  [[nodiscard]] int appendTo(std::vector<SQO_2DValueI>& list) const {
    list.insert(list.end(), points_.begin(), points_.end());
    return verdictOn(facing_, list.size());
  }

 private:
  std::vector<SQO_2DValueI> points_;
  std::size_t facing_ = 0;
};

struct EdgeStat {
  double sumDist;
  std::size_t ptCount;

  [[nodiscard]] double meanDist() const {
    return sumDist / static_cast<double>(ptCount);
  }
};

/// Statistics of the contour points of each edge.
struct EdgeTable {
  std::vector<EdgeStat> stats;  ///< By label.
  std::vector<int> labels;      ///< In the order in which they appear.
};

EdgeTable sumByEdge(const std::vector<SQO_contourPtInfo>& contourPts, int maxEdgeId) {
  int largest = 0;
  for (const SQO_contourPtInfo& point : contourPts) {
    largest = std::max(largest, point.edgeId);
  }
  // In 64 bits: the largest int plus 1 must not overflow, nor a negative size wrap to a small one.
  const auto size = static_cast<std::size_t>(std::min(maxEdgeId, largest) + 1LL);
  EdgeTable table = {std::vector<EdgeStat>(size), {}};
  for (const SQO_contourPtInfo& point : contourPts) {
    assert(point.edgeId >= 0 && point.edgeId <= maxEdgeId);
    EdgeStat& stat = table.stats[point.edgeId];
    if (stat.ptCount == 0) {
      table.labels.push_back(point.edgeId);
    }
    stat.sumDist += point.scanDist;
    ++stat.ptCount;
  }
  return table;
}

/// Drops the labels of edges with at most `minCount` points.
void dropShortEdges(std::size_t minCount, EdgeTable& table) {
  const auto isShort = [&](int label) { return table.stats[label].ptCount <= minCount; };
  table.labels.erase(std::remove_if(table.labels.begin(), table.labels.end(), isShort),
                     table.labels.end());
}

/// The smallest mean distance of an edge.
double closestMean(const EdgeTable& table) {
  double best = -1.0;
  for (const int label : table.labels) {
    const double mean = table.stats[label].meanDist();
    if (best < 0.0 || best > mean) {
      best = mean;
    }
  }
  return best;
}

bool isInside(const STesk3DPoint& point, const STeskRangeD& window, bool useX) {
  const double value = useX ? point.x : point.y;
  return value > window.min && value < window.max;
}

bool joinsEdges(const SQO_conotourPair& pair, const std::vector<SQO_intPair>& edgePairs) {
  return std::any_of(edgePairs.begin(), edgePairs.end(), [&](const SQO_intPair& edges) {
    return pair.edgeId_1 == edges.first && pair.edgeId_2 == edges.second;
  });
}

}  // namespace

void qo_getContourPts(std::vector<SQO_lineConotours>& contours,
                      int edgeId,
                      std::vector<SQO_2DValueI>& contourPts,
                      int* sideVerdict) {
  SelectedPoints points;
  for (const SQO_lineConotours& contour : contours) {
    for (const SQO_contourPtInfo& point : contour.contourPts) {
      if (point.edgeId == edgeId) {
        points.add(point, 0);
      }
    }
  }
  *sideVerdict = points.appendTo(contourPts);
}

void qo_getPairingContourPts(std::vector<SQO_conotourPair>& pairs,
                             std::vector<SQO_intPair>& edgePairs,
                             std::vector<SQO_conotourPair>& matched,
                             STeskRangeD window,
                             bool useX,
                             int* sideVerdict_1,
                             int* sideVerdict_2) {
  assert(&matched != &pairs);
  std::vector<SQO_conotourPair> kept;
  std::size_t facing1 = 0;
  std::size_t facing2 = 0;
  for (const SQO_conotourPair& pair : pairs) {
    if (isInside(pair.contourPt_1.edgePt, window, useX) &&
        isInside(pair.contourPt_2.edgePt, window, useX) && joinsEdges(pair, edgePairs)) {
      kept.push_back(pair);
      facing1 += facesWalk(pair.contourPt_1) ? 1 : 0;
      facing2 += facesWalk(pair.contourPt_2) ? 1 : 0;
    }
  }
  matched.insert(matched.end(), kept.begin(), kept.end());
  *sideVerdict_1 = 0;
  *sideVerdict_2 = 0;
  // Both may be the same variable, which then becomes 1 if either verdict is 1.
  *sideVerdict_1 |= verdictOn(facing1, matched.size());
  *sideVerdict_2 |= verdictOn(facing2, matched.size());
}

void qo_contourPostProc(std::vector<SQO_contourPtInfo>& contourPts,
                        int maxEdgeId,
                        double distTol,
                        std::vector<SQO_2DValueI>& outPts,
                        int tag,
                        int* sideVerdict) {
  if (contourPts.empty()) {
    *sideVerdict = 0;
    return;
  }
  EdgeTable table = sumByEdge(contourPts, maxEdgeId);
  dropShortEdges(3 * contourPts.size() / 10, table);
  const double best = closestMean(table);
  SelectedPoints points;
  // A pass per edge is cheap: at most three edges can each hold more than 30 % of the points.
  for (const int label : table.labels) {
    if (!(distTol > table.stats[label].meanDist() - best)) {
      continue;
    }
    for (const SQO_contourPtInfo& point : contourPts) {
      if (point.edgeId == label) {
        points.add(point, tag);
      }
    }
  }
  *sideVerdict = points.appendTo(outPts);
}
