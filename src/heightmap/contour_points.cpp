#include <algorithm>
#include <cstddef>
#include <vector>

#include <scanline/heightmap.h>

namespace {

/// Contour points as plain positions.
class PickedPoints {
 public:
  void add(const SQO_contourPtInfo& point, int tag) {
    points_.push_back({point.x, point.y, point.type, point.edgePt.z, tag});
    facing_ += point.sideFlag >= 1 ? 1 : 0;
  }
  /// Appends the points. Returns the verdict: 1 if more than half of the whole list face the walk.
  [[nodiscard]] int appendTo(std::vector<SQO_2DValueI>& list) const {
    list.insert(list.end(), points_.begin(), points_.end());
    return 2 * facing_ > list.size() ? 1 : 0;
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

/// Per-edge statistics of contour points.
struct EdgeTable {
  std::vector<EdgeStat> stats;  ///< By label.
  std::vector<int> labels;      ///< In the order in which they appear.
};

EdgeTable sumByEdge(const std::vector<SQO_contourPtInfo>& contourPts, int maxEdgeId) {
  int largest = 0;
  for (const SQO_contourPtInfo& point : contourPts) {
    largest = std::max(largest, point.edgeId);
  }
  // Widened so that a label below -1 asks for an impossible table instead of a wrapped one.
  const auto size = static_cast<std::size_t>(std::min(maxEdgeId, largest) + 1LL);
  EdgeTable table = {std::vector<EdgeStat>(size), {}};
  for (const SQO_contourPtInfo& point : contourPts) {
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

}  // namespace

void qo_getContourPts(std::vector<SQO_lineConotours>& contours,
                      int edgeId,
                      std::vector<SQO_2DValueI>& contourPts,
                      int* sideVerdict) {
  PickedPoints points;
  for (const SQO_lineConotours& contour : contours) {
    for (const SQO_contourPtInfo& point : contour.contourPts) {
      if (point.edgeId == edgeId) {
        points.add(point, 0);
      }
    }
  }
  *sideVerdict = points.appendTo(contourPts);
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
  PickedPoints points;
  // A pass per edge is cheap: no more than three can hold over 30 % of the points each.
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
