#pragma once

/// Maps and their peaks in their plainest form. The tests compare the results of the library with
/// it, the benchmarks compare the speed.

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <opencv2/core.hpp>
#include <utility>
#include <vector>

#include <scanline/geometry.h>
#include <scanline/heightmap.h>

namespace plain {

/// Fills the gaps of a row between occupied pixels less than `gapLimit` apart.
inline void fillGaps(cv::Mat row, double gapLimit) {
  int last = -1;
  for (int c = 0; c < row.cols; ++c) {
    if (static_cast<double>(row.at<float>(c)) > 0.0001) {
      if (last >= 0 && c - last > 1 && c - last < gapLimit) {
        row.colRange(last + 1, c).setTo(1000000.0);
      }
      last = c;
    }
  }
}

inline void projection(std::vector<std::vector<STesk3DPosition>>& scan,
                       STeskRangeD xRange,
                       STeskRangeD yRange,
                       double scale,
                       double zLimit,
                       int edge,
                       double maxLinkDist,
                       cv::Mat& mask,
                       cv::Mat& index) {
  const auto pixelOf = [&](double position, double min) {
    return static_cast<int>(static_cast<int>(position - min) / scale + edge);
  };
  for (std::size_t l = 0; l < scan.size(); ++l) {
    const STesk3DPoint* previous = nullptr;
    STesk2DPoint from = {-1, -1};
    for (std::size_t i = 0; i < scan[0].size(); ++i) {
      const STesk3DPoint& p = scan[l][i].pt3D;
      if (p.z < 0.0001 || (zLimit > 0.0 && p.z > zLimit)) {
        continue;
      }
      const STesk2DPoint at = {pixelOf(p.x, xRange.min), pixelOf(p.y, yRange.min)};
      index.at<cv::Vec2i>(at.y, at.x) = {static_cast<int>(l), static_cast<int>(i)};
      std::vector<STesk2DPoint> drawn = {at};
      if (previous != nullptr &&
          maxLinkDist > std::sqrt((p.x - previous->x) * (p.x - previous->x) +
                                  (p.y - previous->y) * (p.y - previous->y) +
                                  (p.z - previous->z) * (p.z - previous->z))) {
        drawLine(from.x, from.y, at.x, at.y, drawn);
      }
      for (const STesk2DPoint& pixel : drawn) {
        mask.at<float>(pixel.y, pixel.x) = 1000000.0F;
      }
      previous = &p;
      from = at;
    }
  }
  for (int r = 0; r < mask.rows && !scan.empty(); ++r) {
    fillGaps(mask.row(r), std::trunc(maxLinkDist / scale));
  }
}

/// The two passes, in single precision.
inline cv::Mat distances(const cv::Mat& src, float diagonal) {
  cv::Mat_<float> d = src.clone();
  const auto step = [&d](int r, int c, int fromRow, int fromCol, float cost) {
    const float candidate = d(fromRow, fromCol) + cost;
    d(r, c) = candidate < d(r, c) ? candidate : d(r, c);
  };
  for (int pass = 0; pass < 2; ++pass) {
    for (int r = 1; r < d.rows - 1; ++r) {
      for (int c = 1; c < d.cols; ++c) {
        step(r, c, r - 1, c - 1, diagonal);
        step(r, c, r - 1, c, 1.0F);
        step(r, c, r, c - 1, 1.0F);
        step(r, c, r + 1, c - 1, diagonal);
      }
    }
    cv::flip(d, d, -1);  // the second pass is the mirror image of the first
  }
  for (const cv::Mat& edge : {d.row(0), d.row(d.rows - 1), d.col(0), d.col(d.cols - 1)}) {
    cv::Mat(edge).setTo(0.0);
  }
  return d;
}

using Span = std::pair<int, int>;

inline std::vector<Span> blocks(int counted, int half, int stride, int extent) {
  std::vector<Span> spans;
  for (int i = 0; i < (counted + half - 1) / half; ++i) {
    spans.emplace_back(i * stride / 2, i * stride / 2 + extent);
  }
  return spans;
}

/// Visits every cell of a block, columns outside. `replaces(value, best)` returns whether a value
/// replaces the best one so far.
template <typename Replaces>
void searchBlock(const cv::Mat& map,
                 Span xs,
                 Span ys,
                 Replaces replaces,
                 cv::Mat& isReported,
                 std::vector<SQO_2DValueI>& peaks) {
  SQO_2DValueI best = {-1, -1, 0, -1.0, 0};
  for (int x = xs.first; x < std::min(xs.second, map.cols); ++x) {
    for (int y = ys.first; y < std::min(ys.second, map.rows); ++y) {
      const auto value = static_cast<double>(map.at<float>(y, x));
      if (replaces(value, best.valueD)) {
        best = {x, y, 0, value, 0};
      }
    }
  }
  const auto isInside = [](int i, Span span) { return i > span.first && i < span.second - 1; };
  if (isInside(best.x, xs) && isInside(best.y, ys) &&
      std::exchange(isReported.at<unsigned char>(best.y, best.x), 1) == 0) {
    peaks.push_back(best);
  }
}

inline void mapPeaks(cv::Mat& map, std::vector<SQO_2DValueI>& peaks, SQO_localPkParam blockSize) {
  const auto [w, h] = blockSize;
  const auto isHigher = [](double v, double best) { return best < 0.0 || v > best; };
  cv::Mat isReported = cv::Mat::zeros(map.size(), CV_8U);
  for (const Span& rows : blocks(map.rows, h / 2, w, h)) {
    for (const Span& columns : blocks(map.cols, w / 2, h, w)) {
      searchBlock(map, columns, rows, isHigher, isReported, peaks);
    }
  }
}

/// The peaks of a scan whose z are given as a map: columns are lines, rows are samples.
inline void scanPeaks(const cv::Mat& z,
                      std::vector<SQO_2DValueI>& peaks,
                      SQO_localPkParam blockSize) {
  const auto [w, h] = blockSize;
  const auto isLower = [](double v, double best) {
    return !(0.0001 > v) && (best < 0.0 || best > v);
  };
  cv::Mat isReported = cv::Mat::zeros(z.size(), CV_8U);
  for (const Span& lines : blocks(z.rows, h / 2, w, w)) {
    for (const Span& samples : blocks(z.cols, w / 2, h, h)) {
      searchBlock(z, lines, samples, isLower, isReported, peaks);
    }
  }
}

}  // namespace plain
