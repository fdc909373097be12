#pragma once

/// Clustering and labelling in their plainest form. The tests compare the results of the library
/// with it, the benchmarks compare the speed.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <opencv2/core.hpp>
#include <vector>

#include <scanline/clustering.h>

namespace plain {

inline void pointClustering(std::vector<STesk3DPosition>& points,
                            double clusterDist,
                            std::vector<std::vector<STesk3DPosition>>& clusters) {
  while (!points.empty()) {
    std::vector<STesk3DPosition> cluster = {points.front()};
    points.front().nPointIdx = -1;
    for (std::size_t i = 0; i < cluster.size(); ++i) {
      const STesk3DPoint from = cluster[i].pt3D;
      for (STesk3DPosition& point : points) {
        const double dx = from.x - point.pt3D.x;
        const double dy = from.y - point.pt3D.y;
        if (point.nPointIdx >= 0 && clusterDist > std::sqrt(dx * dx + dy * dy)) {
          cluster.push_back(point);
          point.nPointIdx = -1;
        }
      }
    }
    clusters.push_back(cluster);
    points.erase(std::remove_if(points.begin(), points.end(),
                                [](const STesk3DPosition& point) { return point.nPointIdx < 0; }),
                 points.end());
  }
}

/// Grows a cluster over a grid; `links(from, to)` decides on a neighbour in the window.
template <typename Links>
void growOnGrid(std::vector<std::vector<SQO_featureClusteringInfo>>& grid,
                int window,
                Links links,
                int clusterID,
                std::vector<STesk2DPoint>& queue) {
  const auto isOnGrid = [&grid](int x, int y) {
    return x >= 0 && x < static_cast<int>(grid.size()) && y >= 0 &&
           y < static_cast<int>(grid[0].size());
  };
  for (std::size_t i = 0; i < queue.size(); ++i) {
    const STesk2DPoint at = queue[i];
    const int reach = grid[at.x][at.y].clusterID == 0 ? window : -1;
    for (int x = at.x - reach; x <= at.x + reach; ++x) {
      for (int y = at.y - reach; y <= at.y + reach; ++y) {
        if (isOnGrid(x, y) && grid[x][y].featureFlag != 0 && grid[x][y].clusterID <= 0 &&
            links(at, STesk2DPoint{x, y}) && grid[x][y].queued == 0) {
          grid[x][y].queued = 1;
          queue.push_back({x, y});
        }
      }
    }
    grid[at.x][at.y].clusterID = clusterID;
  }
}

/// Labels the foreground that is connected to `start`, without the outer rows and columns.
inline SQO_Region floodRegion(cv::Mat& image, cv::Point start, int label, int connectivity) {
  SQO_Region region = {{start.x, start.x, start.y, start.y}, 0, label};
  std::vector<cv::Point> open = {start};
  while (!open.empty()) {
    const cv::Point at = open.back();
    open.pop_back();
    if (at.x < 1 || at.y < 1 || at.x > image.cols - 2 || at.y > image.rows - 2 ||
        image.at<int>(at) != 1) {
      continue;
    }
    image.at<int>(at) = label;
    region.roi = {std::min(region.roi.left, at.x), std::max(region.roi.right, at.x), region.roi.top,
                  std::max(region.roi.bottom, at.y)};
    ++region.ptCounter;
    for (int k = 0; k < 9; ++k) {
      if (connectivity == 8 || k % 2 == 1) {
        open.emplace_back(at.x + k % 3 - 1, at.y + k / 3 - 1);
      }
    }
  }
  return region;
}

/// Labels the regions of an image of integers in place.
inline std::vector<SQO_Region> labelRegions(cv::Mat& image, int connectivity) {
  std::vector<SQO_Region> regions;
  for (int r = 1; r < image.rows - 1; ++r) {
    for (int c = 1; c < image.cols - 1; ++c) {
      if (image.at<int>(r, c) == 1) {
        const int label = static_cast<int>(regions.size()) + 2;
        regions.push_back(floodRegion(image, {c, r}, label, connectivity));
      }
    }
  }
  return regions;
}

}  // namespace plain
