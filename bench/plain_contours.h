#pragma once

/// The scan around a peak and the selection of contour points in their plainest form. The tests
/// compare the results of the library with it, the benchmarks compare the speed.

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <opencv2/core.hpp>
#include <set>
#include <utility>
#include <vector>

#include <scanline/heightmap.h>

namespace plain {

using ContourPoints = std::vector<SQO_contourPtInfo>;
using Contours = std::vector<SQO_lineConotours>;

/// The input of a scan around a peak.
struct PeakScene {
  std::vector<std::vector<STesk3DPosition>> scan;
  cv::Mat edges;
  SQO_2DValueI peak;
  double halfSpan;
  bool useMark;
};

/// A walk along line `k` or, if not `along`, across the lines at sample index `k`. Returns whether
/// it was stopped.
// NOLINTNEXTLINE(readability-function-cognitive-complexity): the rules in one piece
inline bool walkFromPeak(
    const PeakScene& scene, bool along, int k, int step, ContourPoints& points) {
  const int count = static_cast<int>(along ? scene.scan[k].size() : scene.scan.size());
  const int start = along ? scene.peak.y : scene.peak.x;
  const STesk3DPoint& peak = scene.scan[scene.peak.x][scene.peak.y].pt3D;
  const auto sampleAt = [&](int i) { return along ? scene.scan[k][i] : scene.scan[i][k]; };
  const auto typeAt = [&](int i, bool own) {
    return sampleAt(i).nPointIdx >> (own == along ? 0 : 4) & 15;
  };
  for (int i = start; i >= 0 && i < count; i += step) {
    const auto [flags, point] = sampleAt(i);
    const bool isMarked = scene.useMark && (flags & 0xFF00) != 0;
    int type = typeAt(i, true);
    if (type == 0 && i != 0 && i != count - 1 && !isMarked) {
      if (typeAt(i, false) == 1 || typeAt(i, false) == 2) {
        bool isSeen = false;
        for (int n = 0; n < 5 && i + n * step >= 0 && i + n * step < count; ++n) {
          isSeen = isSeen || typeAt(i + n * step, true) != 0;
        }
        if (!isSeen) {
          return true;
        }
      }
      continue;
    }
    int edge = scene.edges.at<cv::Vec4i>(along ? i : k, along ? k : i)[0];
    const int side = type == (step < 0 ? 1 : 2) || type == (step < 0 ? 3 : 4) ? 1 : 0;
    if (type == 0 && isMarked) {
      type = 8;
      edge = (along ? 5 : 7) + (step > 0 ? 1 : 0);
    }
    const double dist = along ? std::abs(peak.y - point.y) : std::abs(peak.x - point.x);
    if (dist > scene.halfSpan) {
      return false;
    }
    if (type != 0 && edge >= 1) {
      if (std::abs(i - start) <= 1) {
        return false;
      }
      points.push_back({along ? k : i, along ? i : k, type, edge, side, dist, point});
    }
    const bool isVirtual = edge == (along ? 5 : 7) || edge == (along ? 6 : 8);
    if (type == 1 || type == 2 || (type >= 6 && type <= 8) || isVirtual) {
      return false;
    }
  }
  return false;
}

/// The four stages of a scan. Lists and labels: low y, high y, low x, high x.
// NOLINTNEXTLINE(readability-function-cognitive-complexity): the rules in one piece
inline void peakXYScan(const PeakScene& scene,
                       const std::array<Contours*, 4>& lists,
                       std::array<int, 4>& maxEdges) {
  const STesk3DPosition& peak = scene.scan[scene.peak.x][scene.peak.y];
  maxEdges = {0, 0, 0, 0};
  for (int stage = 0; stage < 4; ++stage) {
    const bool along = stage < 2;
    const int step = stage % 2 == 0 ? -1 : 1;
    const int count = static_cast<int>(along ? scene.scan.size() : scene.scan[0].size());
    for (int k = (along ? scene.peak.x : scene.peak.y) + stage % 2; k >= 0 && k < count;
         k += step) {
      const STesk3DPosition& at = along ? scene.scan[k][scene.peak.y] : scene.scan[scene.peak.x][k];
      if (std::abs(along ? peak.pt3D.x - at.pt3D.x : peak.pt3D.y - at.pt3D.y) > scene.halfSpan) {
        break;
      }
      std::array<ContourPoints, 2> found;
      walkFromPeak(scene, along, k, -1, found[0]);
      if (walkFromPeak(scene, along, k, 1, found[1])) {
        break;
      }
      for (int side = 0; side < 2; ++side) {
        const int kind = (along ? 0 : 2) + side;
        for (const SQO_contourPtInfo& p : found[side]) {
          maxEdges[kind] = std::max(maxEdges[kind], p.edgeId);
        }
        if (!found[side].empty()) {
          lists[kind]->insert(step < 0 ? lists[kind]->begin() : lists[kind]->end(),
                              {k, found[side]});
        }
      }
    }
  }
}

/// Appends the points; returns 1 if more than half of the whole list face the walk.
inline int appendPoints(const ContourPoints& points, int tag, std::vector<SQO_2DValueI>& list) {
  int facing = 0;
  for (const SQO_contourPtInfo& p : points) {
    list.push_back({p.x, p.y, p.type, p.edgePt.z, tag});
    facing += p.sideFlag >= 1 ? 1 : 0;
  }
  return facing * 2 > static_cast<int>(list.size()) ? 1 : 0;
}

inline ContourPoints ofEdge(const ContourPoints& points, int edge) {
  ContourPoints kept;
  std::copy_if(points.begin(), points.end(), std::back_inserter(kept),
               [edge](const SQO_contourPtInfo& p) { return p.edgeId == edge; });
  return kept;
}

/// The points of all edges that are long enough and near enough to the peak, edge by edge.
inline ContourPoints contourPostProc(const ContourPoints& points, double distTol) {
  std::vector<std::pair<double, ContourPoints>> edges;
  std::set<int> seen;
  double best = -1.0;
  for (const SQO_contourPtInfo& p : points) {
    if (!seen.insert(p.edgeId).second) {
      continue;
    }
    const ContourPoints edge = ofEdge(points, p.edgeId);
    double mean = 0.0;
    for (const SQO_contourPtInfo& q : edge) {
      mean += q.scanDist;
    }
    mean /= static_cast<double>(edge.size());
    if (edge.size() > 3 * points.size() / 10) {
      best = best < 0.0 || best > mean ? mean : best;
      edges.emplace_back(mean, edge);
    }
  }
  ContourPoints kept;
  for (const auto& [mean, edge] : edges) {
    if (distTol > mean - best) {
      kept.insert(kept.end(), edge.begin(), edge.end());
    }
  }
  return kept;
}

}  // namespace plain
