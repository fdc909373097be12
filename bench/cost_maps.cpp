#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>

#include <scanline/clustering.h>
#include <scanline/heightmap.h>
#include <scanline/watershed.h>
#include "cost.h"

// Clustering and functions on images: `size` pixels in a square.

namespace cost {
namespace {

constexpr int kPixels = 4096;

int sideOf(int size) {
  return static_cast<int>(std::lround(std::sqrt(size)));
}

using Prepared = std::function<void()>;

/// Points in a row, `spacing` apart: one cluster or one cluster each.
std::function<Prepared(int)> points(double spacing) {
  return [spacing](int size) {
    Line row = makeLine(size, [=](int i) { return STesk3DPoint{spacing * i, 0.0, 10.0}; });
    return
        [row, clusters = std::vector<Line>{}]() mutable { qo_pointClustering(row, 1.0, clusters); };
  };
}

Prepared gridCells(int size) {
  const int side = sideOf(size);
  std::vector<std::vector<SQO_featureClusteringInfo>> cells(
      side, std::vector<SQO_featureClusteringInfo>(side, {1, 0, 0, 0, 0, 0, 0}));
  std::vector<std::vector<STesk3DPoint>> positions(side, std::vector<STesk3DPoint>(side));
  return [=, queue = std::vector<STesk2DPoint>{{0, 0}}]() mutable {
    STesk3DRangeD box = {{0.0, 0.0}, {0.0, 0.0}, {0.0, 0.0}};
    ju_gridPointClustering(cells, positions, 2, {1.0, 1.0, 0, 1.0, 0.0, 0.0}, 1, queue, box);
  };
}

template <typename Picture>
std::function<Prepared(int)> labelling(Picture isSet, bool withRecords = false) {
  return [=](int size) {
    const int side = sideOf(size);
    cv::Mat image(side, side, CV_8U);
    for (int r = 0; r < side; ++r) {
      for (int c = 0; c < side; ++c) {
        image.ptr(r)[c] = isSet(r, c, side) ? 1 : 0;
      }
    }
    std::vector<SQO_Region> regions;
    for (int k = 0; withRecords && k < size / 4; ++k) {
      regions.push_back({{0, 0, 0, 0}, 0, k + 2});
    }
    return [image, regions, labels = cv::Mat()]() mutable {
      QO_TwoPassLabel(image, labels, regions, 4);
    };
  };
}

bool onSpiral(int r, int c, int side) {
  const int last = side - 3;
  const int ring = std::min({r - 2, c - 2, last - r, last - c});
  const bool gap = r == c + 1 && r <= side / 2;
  return ring >= 0 && ((ring % 2 == 0) != gap);
}

bool onComb(int r, int c, int side) {
  return c % 2 == 1 || r == side - 2;
}

bool onDots(int r, int c, int) {
  return r % 2 == 1 && c % 2 == 1;
}

cv::Mat flatMap(int size, float value) {
  return {sideOf(size), sideOf(size), CV_32F, cv::Scalar(value)};
}

Prepared distances(int size) {
  return [map = flatMap(size, 1e6F), out = cv::Mat()]() mutable { qo_distanceTrans(map, out, 0); };
}

/// One value throughout, in blocks a quarter of the map wide.
std::function<Prepared(int)> mapPeaks(float value) {
  return [value](int size) {
    const int block = sideOf(size) / 4;
    return [map = flatMap(size, value), block, peaks = std::vector<SQO_2DValueI>{}]() mutable {
      qo_getLocalPeaks_distTransform(map, peaks, {block, block});
    };
  };
}

Scan squareScan(int size, double step) {
  const int side = sideOf(size);
  Scan scan(side);
  for (int l = 0; l < side; ++l) {
    scan[l] = makeLine(side, [=](int i) { return STesk3DPoint{step * l, step * i, 10.0}; });
  }
  return scan;
}

Prepared scanPeaks(int size) {
  return [scan = squareScan(size, 1.0), peaks = std::vector<SQO_2DValueI>{}]() mutable {
    const int block = static_cast<int>(scan.size()) / 4;
    std::vector<STesk3DLaserLine> lines = pointerForm(scan);
    qo_getLocalPeaks(lines.data(), static_cast<int>(lines.size()), peaks, {block, block});
  };
}

/// Samples three pixels apart, all linked.
Prepared projection(int size) {
  const int side = 3 * sideOf(size) + 10;
  return [scan = squareScan(size, 3.0), mask = cv::Mat(side, side, CV_32F, cv::Scalar(0.0)),
          index = cv::Mat(side, side, CV_32SC2, cv::Scalar(0, 0))]() mutable {
    const STeskRangeD range = {0.0, 0.0};
    pointClout2DProjection(scan, range, range, 1.0, 0.0, 2, 5.0, mask, index);
  };
}

/// Contour points all over the scan, except for a cross of untyped samples, in which the walks
/// start.
Prepared peakScan(int size) {
  const int side = sideOf(size);
  Scan scan = squareScan(size, 1.0);
  cv::Mat edges(side, side, CV_32SC4, cv::Scalar(3, 0, 0, 1));
  const int peak = side / 2;
  for (int l = 0; l < side; ++l) {
    for (int i = 0; i < side; ++i) {
      const bool isBare = std::abs(l - peak) <= 1 || std::abs(i - peak) <= 1;
      scan[l][i].nPointIdx = isBare ? 0 : FEATURE_SLOPE_RISE + 16 * FEATURE_SLOPE_RISE;
    }
  }
  return [=, contours = std::vector<std::vector<SQO_lineConotours>>(4)]() mutable {
    std::vector<STesk3DLaserLine> lines = pointerForm(scan);
    int maxEdges[4] = {};
    qo_peakXYScan(lines.data(), side, edges, {peak, peak, 0, 0.0, 0}, {}, {1.0 * side, 0.0}, true,
                  contours[0], contours[1], contours[2], contours[3], maxEdges, maxEdges + 1,
                  maxEdges + 2, maxEdges + 3);
  };
}

SQO_contourPtInfo contourPoint(int k, int edge) {
  return {k, 0, FEATURE_JUMP_RISE, edge, 1, 1.0 + edge, {0.0, 0.0, 10.0}};
}

/// Contour points with an edge for each.
Prepared contourPostProc(int size) {
  std::vector<SQO_contourPtInfo> all;
  for (int k = 0; k < size; ++k) {
    all.push_back(contourPoint(k, k));
  }
  return [all, size, kept = std::vector<SQO_2DValueI>{}]() mutable {
    int verdict = 0;
    qo_contourPostProc(all, size, 10.0, kept, 0, &verdict);
  };
}

/// Pairs whose labels are the last ones in a list of equal length.
Prepared contourPairs(int size) {
  std::vector<SQO_conotourPair> pairs;
  std::vector<SQO_intPair> edgePairs;
  for (int k = 0; k < size; ++k) {
    pairs.push_back({0, size, size, 0, 0.0, contourPoint(k, 1), contourPoint(k, 1)});
    edgePairs.push_back({k + 1, k + 1, 0});
  }
  return [pairs, edgePairs, matched = std::vector<SQO_conotourPair>{}]() mutable {
    int verdicts[2] = {};
    qo_getPairingContourPts(pairs, edgePairs, matched, {-1.0, 1.0}, true, verdicts, verdicts + 1);
  };
}

template <typename Level>
SJU_waterShedImage imageOf(int side, Level level) {
  SJU_waterShedImage image = {side, side, {}, {}};
  image.markers.assign(side, std::vector<int>(side));
  for (int r = 0; r < side; ++r) {
    image.gray.emplace_back();
    for (int c = 0; c < side; ++c) {
      image.gray[r].push_back(level(r, c));
    }
  }
  return image;
}

template <typename Level>
std::function<Prepared(int)> minima(Level level) {
  return [=](int size) {
    return [image = imageOf(sideOf(size), level)]() mutable { watershed(image); };
  };
}

/// A winding corridor between walls, seeded at its end: each walk over the level advances by one
/// pixel.
Prepared snake(int size) {
  const int side = sideOf(size) / 2 * 2 + 1;
  SJU_waterShedImage image = imageOf(
      side, [=](int r, int c) { return r % 2 == 0 || c == (r % 4 == 1 ? side - 1 : 0) ? 0 : 2; });
  const int end = (side - 1) % 4 == 0 ? side - 1 : 0;
  image.gray[side - 1][end] = 1;  // otherwise the plateau of the seed is the corridor
  return [image, seeds = std::vector<SQO_2DValueI>{{end, side - 1, 0, 0.0, 0}}]() mutable {
    ju_seedWatershed(image, seeds, 1, 2);
  };
}

/// A slope with a different level in each row, seeded at the top: each sweep settles one row.
Prepared downhill(int size) {
  const int side = sideOf(size);
  SJU_waterShedImage image = imageOf(side, [=](int r, int) { return side - r; });
  return [image, side, seeds = std::vector<SQO_2DValueI>{{0, 0, 0, 0.0, 0}}]() mutable {
    ju_seedWatershed(image, seeds, side, 2);
  };
}

}  // namespace

std::vector<Case> mapCases() {
  const auto linear = Growth::kLinear;
  const auto scattered = [](int r, int c) { return (r * 7919 + c * 104729) % 1000003; };
  return {
      {"clustering/points/one-row", Growth::kQuadratic, 1000, points(0.6)},
      {"clustering/points/all-apart", Growth::kQuadratic, 1000, points(2.0)},
      {"clustering/grid/full", linear, kPixels, gridCells},
      {"clustering/labelling/spiral", linear, kPixels, labelling(onSpiral)},
      {"clustering/labelling/comb", linear, kPixels, labelling(onComb)},
      {"clustering/labelling/dots", linear, kPixels, labelling(onDots)},
      {"clustering/labelling/dots-with-records", linear, kPixels, labelling(onDots, true)},
      {"heightmap/distances/full", linear, kPixels, distances},
      {"heightmap/map-peaks/flat", linear, kPixels, mapPeaks(1.0F)},
      {"heightmap/map-peaks/negative", linear, kPixels, mapPeaks(-1.0F)},
      {"heightmap/scan-peaks/flat", linear, kPixels, scanPeaks},
      {"heightmap/projection/linked", linear, kPixels, projection},
      {"heightmap/peak-scan/many-edges", linear, kPixels, peakScan},
      {"heightmap/contour-post-proc/many-edges", linear, kPixels, contourPostProc},
      {"heightmap/contour-pairs/many-labels", Growth::kQuadratic, 1000, contourPairs},
      {"heightmap/watershed/flat", linear, kPixels, minima([](int, int) { return 5; })},
      {"heightmap/watershed/scattered", linear, kPixels, minima(scattered)},
      {"heightmap/seed-watershed/snake", linear, kPixels, snake},
      {"heightmap/seed-watershed/downhill", linear, kPixels, downhill},
  };
}

}  // namespace cost
