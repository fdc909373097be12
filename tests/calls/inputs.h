#pragma once

/// Inputs of the calls, built from a seed and a size by the types of the parameters.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <opencv2/core.hpp>
#include <type_traits>
#include <vector>

#include <scanline/scanline.h>
#include "scene.h"

namespace calls {

inline void fill(Scene& s, build::Line& line) {
  line = build::randomLine(s.random, s.size, s.grid(2.0, 9.0));
}
inline void fill(Scene& s, build::Scan& scan) {
  scan = build::randomScan(s.random, s.columns, s.rows);
}
inline void fill(Scene& s, PointerScan& lines) {
  lines = makePointerScan(build::randomScan(s.random, s.columns, s.rows));
}
inline void fill(Scene& s, ColourLine& line) {
  for (const auto& [idx, pt] : build::randomLine(s.random, s.size, 3.5)) {
    line.points.push_back({static_cast<float>(pt.x), static_cast<float>(pt.y),
                           static_cast<float>(pt.z), static_cast<std::uint32_t>(idx)});
  }
  line.line = {line.points.data(), s.size};
}
inline void fill(Scene& s, Image& image) {
  image = makeImage(s.rows, s.columns, CV_32F, [&s] { return s.whole(0, 9); });
}
inline void fill(Scene& s, double (&matrix)[9]) {
  std::generate_n(matrix, 9, [&s] { return s.random.grid(-1.0, 1.0, 0.125); });
}
inline void fill(Scene& s, double (&row)[3]) {
  std::generate_n(row, 3, [&s] { return s(-1.0, -0.5, 0.0, 0.125, 0.9); });
}
inline void fill(Scene& s, std::vector<int>& marks) {
  marks.resize(static_cast<std::size_t>(s.size));
  std::generate(marks.begin(), marks.end(), [&s] { return s(0, 0, 1); });
}

// Positions

inline void fill(Scene& s, STesk2DPoint& cell) {
  cell = {s.whole(0, s.columns - 1), s.whole(0, s.rows - 1)};
}
inline void fill(Scene& s, STesk3DPoint& point) {
  point = {s.grid(2.0, 12.0), s.grid(-4.0, 10.0), s.random.chance(8) ? 0.0 : s.grid(5.0, 30.0)};
}
inline void fill(Scene& s, STeskRangeD& range) {
  range.min = s.grid(0.0, 6.0);
  range.max = range.min + s(-1.0, 2.0, 5.0, 9.0, 30.0);
}
inline void fill(Scene& s, STesk3DRangeD& box) {
  const double x = s.grid(1.0, 6.0);
  const double y = s.grid(0.0, 2.0);
  box = {{x, x + s.grid(8.0, 30.0)}, {y, y + 40.0}, {s.grid(5.0, 50.0), s.grid(6.0, 30.0)}};
}
inline void fill(Scene& s, SQO_2DValueI& at) {
  at = {s.whole(0, s.columns - 1), s.whole(0, s.rows - 1), 3, s.grid(0.0, 6.0), 4};
}
inline void fill(Scene& s, SQO_EulerAngles& angles) {
  const double right = s(-90.0, 45.0, 90.0);
  angles = {s.grid(-180.0, 180.0), s.random.chance(30) ? right : s.grid(-80.0, 80.0),
            s.grid(-180.0, 180.0)};
}
template <typename T>
void fill(Scene& s, cv::Point_<T>& point) {
  point.x = static_cast<T>(s.grid(-4.0, 9.0));
  point.y = static_cast<T>(s.grid(1.0, 9.0));
}
template <typename T>
void fill(Scene& s, cv::Point3_<T>& point) {
  point.x = static_cast<T>(s.grid(-4.0, 9.0));
  point.y = static_cast<T>(s.grid(-4.0, 9.0));
  point.z = static_cast<T>(s.grid(-4.0, 9.0));
}

// Features

inline void fill(Scene& s, SQO_basicFeature1D& feature) {
  const int type = s(1, 1, 2, 3, 4, 5, 5, 6, 7, 8, 9, 13, 14, 15, 0);
  feature = {type, {s.line, s.whole(0, 20)}, s.onLine(), 0.25 * type};
}
inline void fill(Scene& s, SQO_basicFeatureGap& gap) {
  gap = {s.line, {1, 2, 3}, {4, s.onLine()}, {5, s.onLine()}, {6, 7, 8, 9}};
}
inline void fill(Scene& s, SJU_segFeature& segment) {
  segment = {s.line, 1, 2, 3, s.onLine(), s.onLine(), s.grid(1.0, 5.0)};
}
inline void fill(Scene& s, SQO_featureSemiCircle& arc) {
  const int state = s(0, 0, 0, 0, 0, 1, 2, 3, 4, 5);
  arc = {state, s.line, 1, 5, 3, s.onLine(), s.grid(1.0, 5.0), 30.0};
}
inline void fill(Scene& s, SQO_featureClusteringInfo& cell) {
  cell = {s(0, 1, 1, 1), 2, 3, s(0, 0, 0, 0, 0, 1), s(0, 0, 0, 0, 1), 4, 5};
}
inline void fill(Scene& s, SQO_Region& region) {
  region = {{1, 3, 2, 4}, s.whole(1, 6), s.whole(2, 9)};
}
inline void fill(Scene& s, SQO_intPair& labels) {
  labels = {s.whole(0, 2), s.whole(0, 2), 7};
}
inline void fill(Scene& s, SQO_contourPtInfo& point) {
  const STesk3DPoint at = {s.grid(0.0, 9.0), s.grid(0.0, 9.0), s.grid(5.0, 9.0)};
  point = {s.whole(0, 9), 3, s.whole(0, 8), s.whole(0, 4), s(0, 0, 1, 2), s.grid(0.0, 12.0), at};
}
inline void fill(Scene& s, SQO_conotourPair& pair) {
  pair = {1, s.whole(0, 2), s.whole(0, 2), 2, 3.5, {}, {}};
  fill(s, pair.contourPt_1);
  fill(s, pair.contourPt_2);
}
inline void fill(Scene& s, SJU_waterShedImage& image) {
  const auto side = static_cast<std::size_t>(s.columns);
  image = {s.columns, s.columns, {side, std::vector<int>(side)}, {side, std::vector<int>(side)}};
  for (std::size_t k = 0; k < side * side; ++k) {
    image.gray[k / side][k % side] = s.whole(0, 5);
    image.markers[k / side][k % side] = s.random.chance(4) ? s.whole(1, 3) : 0;
  }
}

// Tuning

inline void fill(Scene& s, SQO_cornerParam& p) {
  p = {s(1.5, 3.0, 6.0),    s(2.0, 3.0, 5.0, 9.0), s(1.0, 1.5, 2.0, 3.0),
       s(10.0, 20.0, 45.0), s(20.0, 45.0, 60.0),   s(10.0, 30.0, 45.0)};
}
inline void fill(Scene& s, SQO_lineSegParam& p) {
  p = {s(1.25, 2.0, 4.0), s(1.0, 3.0, 6.0), s(0.25, 0.5, 1.0, 2.0)};
}
inline void fill(Scene& s, SQO_outlierFilterParam& p) {
  p = {s(0.5, 1.0, 2.0, 4.0), s(1.0, 2.0, 3.0, 4.5)};
}
inline void fill(Scene& s, SQO_slopeParam& p) {
  p = {s(1.0, 2.0, 4.0), s(0.5, 1.0, 2.0), s(2.0, 4.0, 6.0), s(1.5, 3.0, 6.0)};
}
inline void fill(Scene& s, SQO_VFeatureParam& p) {
  p = {s(1.0, 3.0, 6.0), s(5.0, 15.0, 30.0, 60.0)};
}
inline void fill(Scene& s, SQO_lineRightAngleParam& p) {
  p = {s(1.0, 2.0, 3.0), s(2.0, 4.0, 8.0), s(0.6, 1.0, 1.5, 2.5)};
}
inline void fill(Scene& s, SQO_gloveArcParam& p) {
  p = {s(1.0, 2.0, 3.0), s(3.0, 5.0, 8.0), s(20.0, 45.0, 90.0)};
}
inline void fill(Scene& s, SQO_raisedFeatureParam& p) {
  p = {s(1.0, 3.0, 5.0), s(0.5, 1.0, 2.0), s(0.0, 2.0), s(4.0, 12.0, 30.0)};
}
inline void fill(Scene& s, SQO_treeGrowParam& p) {
  p = {s(0.5, 1.0, 1.5, 2.5), s(0.5, 1.0, 2.5),      s.whole(0, 3),
       s(0.5, 1.5, 2.5),      s(0.0, 1.0, 2.0, 3.0), s(0.0, 1.0, 2.0)};
}
inline void fill(Scene& s, SQO_bagParam& p) {
  p = {s(2.0, 4.0, 8.0), s(2.0, 4.0, 8.0, 16.0)};
}
inline void fill(Scene& s, SQO_localPkParam& p) {
  p = {s.whole(2, 7), s.whole(2, 7)};
}

/// A few nodes on the lines before the current one.
template <typename Tree>
void fillNodes(Scene& s, Tree& tree) {
  const int line = s.line;
  tree.treeNodes.resize(static_cast<std::size_t>(s.whole(1, 4)));
  s.line -= static_cast<int>(tree.treeNodes.size());
  tree.sLineIdx = s.line;
  for (auto& node : tree.treeNodes) {
    fill(s, node);
    tree.eLineIdx = s.line++;
  }
  s.line = line;
  tree.treeState = s(TREE_GROWING, TREE_GROWING, TREE_CLOSED);
  if constexpr (std::is_same_v<Tree, SQO_featureTree>) {
    tree.treeType = tree.treeNodes.front().featureType;
    tree.anchorNode = s(-1, 0);
  }
}

template <typename T>
void fill(Scene& s, T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    value = s.random.chance(50);
  } else if constexpr (std::is_floating_point_v<T>) {
    value = static_cast<T>(s.grid(-6.0, 10.0));
  } else if constexpr (std::is_integral_v<T>) {
    value = static_cast<T>(s.whole(0, 9));
  } else if constexpr (std::is_array_v<T>) {
    for (auto& element : value) {
      fill(s, element);
    }
  } else {
    withFields(value, [&s](auto&... field) { (fill(s, field), ...); });
  }
  if constexpr (std::is_same_v<T, SQO_lineFeature>) {
    value.lineIdx = s.line;
  } else if constexpr (IsTree<T>::value) {
    fillNodes(s, value);
  }
}

/// Lists of points and of cells are as long as a line of the scan, lists of lines as long as the
/// scan.
template <typename T>
void fill(Scene& s, std::vector<T>& list) {
  constexpr bool isPoint = std::is_same_v<T, STesk3DPoint> || std::is_same_v<T, cv::Point2d> ||
                           std::is_same_v<T, cv::Point3d> || std::is_same_v<T, cv::Point3f> ||
                           std::is_same_v<T, SQO_featureClusteringInfo>;
  constexpr bool isLine = std::is_same_v<T, SQO_lineFeature> || IsVector<T>::value;
  const int some = s.size < 4 ? s.size : s.whole(1, s.columns);
  list.resize(static_cast<std::size_t>(isLine ? s.columns : isPoint ? s.rows : some));
  const int line = s.line;
  s.line = isLine ? 0 : s.line;
  for (T& value : list) {
    fill(s, value);
    s.line += isLine ? 1 : 0;
  }
  s.line = line;
}

}  // namespace calls
