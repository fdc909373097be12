// Grows clusters over a grid, from cell to cell.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <scanline/clustering.h>
#include "records/prefetch.h"

namespace {

using scanline::detail::prefetchForWrite;

using Grid = std::vector<std::vector<SQO_featureClusteringInfo>>;

/// A range of grid indices, inclusive at both ends.
struct IndexRange {
  std::int64_t first;
  std::int64_t last;
};

/// The indices that a window covers on an axis of `count` cells. Computed in 64 bits, since any
/// reach is valid.
IndexRange windowOnGrid(std::int64_t centre, int reach, std::size_t count) {
  const auto last = static_cast<std::int64_t>(count) - 1;
  return {std::max<std::int64_t>(centre - reach, 0), std::min(centre + reach, last)};
}

bool isOpen(const SQO_featureClusteringInfo& info) {
  return info.queued == 0 && info.featureFlag != 0 && info.clusterID <= 0;
}

/// Appends the open cells of the window around `cell` that `links(cell, neighbour)`.
template <typename Links>
void enqueueNeighbours(
    Grid& grid, STesk2DPoint cell, int reach, Links links, std::vector<STesk2DPoint>& queue) {
  const IndexRange xs = windowOnGrid(cell.x, reach, grid.size());
  const IndexRange ys = windowOnGrid(cell.y, reach, grid.front().size());
  const std::int64_t height = ys.last - ys.first + 1;
  const auto enqueueIf = [&](SQO_featureClusteringInfo& info, std::int64_t x, std::int64_t y) {
    const STesk2DPoint neighbour = {static_cast<int>(x), static_cast<int>(y)};
    if (isOpen(info) && links(cell, neighbour)) {
      if (queue.size() == queue.capacity()) {
        queue.reserve(4 * queue.size());  // unused capacity costs only address space
      }
      queue.push_back(neighbour);
      info.queued = 1;
    }
  };
  for (std::int64_t x = xs.first; x <= xs.last; ++x) {
    SQO_featureClusteringInfo* cells = grid[x].data() + ys.first;
    if (height == 3) {
      // Usually all three are on the queue already.
      if ((cells[0].queued & cells[1].queued & cells[2].queued) == 0) {
        enqueueIf(cells[0], x, ys.first);
        enqueueIf(cells[1], x, ys.first + 1);
        enqueueIf(cells[2], x, ys.first + 2);
      }
      continue;
    }
    for (std::int64_t k = 0; k < height; ++k) {
      enqueueIf(cells[k], x, ys.first + k);
    }
  }
}

/// Prefetches the sides of the window around a cell, which is not empty. The queue follows the rim
/// of the cluster across all its columns, so they are seldom in the cache.
void prefetchWindow(const Grid& grid, STesk2DPoint cell, int reach) {
  const IndexRange xs = windowOnGrid(cell.x, reach, grid.size());
  const IndexRange ys = windowOnGrid(cell.y, reach, grid.front().size());
  prefetchForWrite(&grid[xs.first][cell.y]);
  prefetchForWrite(&grid[xs.last][cell.y]);
  prefetchForWrite(&grid[cell.x][ys.first]);
  prefetchForWrite(&grid[cell.x][ys.last]);
}

/// Visits the cells of the queue, which grows on the way. Calls `widen(cell)` for each.
template <typename Links, typename Widen>
void growCluster(Grid& grid,
                 int reach,
                 int clusterID,
                 std::vector<STesk2DPoint>& queue,
                 Links links,
                 Widen widen) {
  assert(std::all_of(queue.begin(), queue.end(), [&](const STesk2DPoint& cell) {
    return cell.x >= 0 && cell.x < static_cast<std::int64_t>(grid.size()) && cell.y >= 0 &&
           cell.y < static_cast<std::int64_t>(grid.front().size());
  }));
  constexpr std::size_t kAhead = 16;
  for (std::size_t i = 0; i < queue.size(); ++i) {
    if (reach > 0 && i + kAhead < queue.size()) {
      prefetchWindow(grid, queue[i + kAhead], reach);
    }
    const STesk2DPoint cell = queue[i];
    int& ownID = grid[cell.x][cell.y].clusterID;
    if (ownID == 0) {
      enqueueNeighbours(grid, cell, reach, links, queue);
    }
    ownID = clusterID;
    widen(cell);
  }
}

/// Whether all columns of `grid` are as long as the first column of `reference`.
template <typename Cell>
[[maybe_unused]] bool isGridLike(const Grid& reference,
                                 const std::vector<std::vector<Cell>>& grid) {
  return grid.size() == reference.size() &&
         std::all_of(grid.begin(), grid.end(), [&](const std::vector<Cell>& column) {
           return column.size() == reference.front().size();
         });
}

template <typename Value>
void widenBy(Value value, Value& smallest, Value& largest) {
  smallest = std::min(smallest, value);
  largest = std::max(largest, value);
}

}  // namespace

void ju_gridPointClustering(std::vector<std::vector<SQO_featureClusteringInfo>>& featureInfo,
                            std::vector<std::vector<STesk3DPoint>>& feature3D,
                            int clusterCheckWin,
                            SQO_treeGrowParam growParam,
                            int clusterID,
                            std::vector<STesk2DPoint>& clusterQueue,
                            STesk3DRangeD& clusterRoi) {
  assert(isGridLike(featureInfo, featureInfo) && isGridLike(featureInfo, feature3D));
  const auto links = [&](STesk2DPoint cell, STesk2DPoint neighbour) {
    const STesk3DPoint& p = feature3D[cell.x][cell.y];
    const STesk3DPoint& q = feature3D[neighbour.x][neighbour.y];
    return growParam.yDeviation_max > std::abs(p.y - q.y) &&
           growParam.zDeviation_max > std::abs(p.z - q.z) &&
           growParam.maxSkipDistance > std::abs(p.x - q.x);
  };
  const auto widen = [&](STesk2DPoint cell) {
    const STesk3DPoint& p = feature3D[cell.x][cell.y];
    widenBy(p.x, clusterRoi.xRange.min, clusterRoi.xRange.max);
    widenBy(p.y, clusterRoi.yRange.min, clusterRoi.yRange.max);
    widenBy(p.z, clusterRoi.zRange.min, clusterRoi.zRange.max);
  };
  growCluster(featureInfo, clusterCheckWin, clusterID, clusterQueue, links, widen);
}

void ju_gridPointClustering_labelling(
    std::vector<std::vector<SQO_featureClusteringInfo>>& featureInfo,
    std::vector<std::vector<STesk3DPoint>>& /*feature3D*/,
    int clusterID,
    std::vector<STesk2DPoint>& clusterQueue,
    STeskRect& clusterRoi) {
  assert(isGridLike(featureInfo, featureInfo));
  const auto links = [](STesk2DPoint, STesk2DPoint) { return true; };
  const auto widen = [&](STesk2DPoint cell) {
    widenBy(cell.x, clusterRoi.left, clusterRoi.right);
    widenBy(cell.y, clusterRoi.top, clusterRoi.bottom);
  };
  growCluster(featureInfo, 1, clusterID, clusterQueue, links, widen);
}
