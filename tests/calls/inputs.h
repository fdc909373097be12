#pragma once

/// Inputs of the calls, built from a seed and a size by the types of the parameters.

#include <cstddef>
#include <functional>
#include <opencv2/core.hpp>
#include <type_traits>
#include <vector>

#include <scanline/scanline.h>
#include "archive.h"
#include "builders.h"

namespace calls {

/// What the arguments of one call have in common.
struct Scene {
  Scene(unsigned seed, int aSize);

  build::Random random;
  int size;     ///< Samples of a line, points of a list.
  int columns;  ///< Lines of a scan, columns of an image.
  int rows;     ///< Samples of each line of a scan, rows of an image.
  int line;     ///< Index of the line that features are on.
};

/// An image whose channels all come from `value`, as a view with a margin of known bytes.
Image makeImage(int rows, int columns, int type, const std::function<double()>& value);
PointerScan makePointerScan(std::vector<std::vector<STesk3DPosition>> scan);

void fill(Scene& scene, Image& image);
void fill(Scene& scene, PointerScan& lines);
void fill(Scene& scene, ColourLine& line);
void fill(Scene& scene, double (&matrix)[9]);
void fill(Scene& scene, double (&matrix)[3][3]);
void fill(Scene& scene, std::vector<int>& marks);
void fill(Scene& scene, STesk2DPoint& cell);
void fill(Scene& scene, STesk3DPoint& point);
void fill(Scene& scene, STeskRangeD& range);
void fill(Scene& scene, STesk3DRangeD& box);
void fill(Scene& scene, SQO_2DValueI& position);
void fill(Scene& scene, SQO_EulerAngles& angles);
void fill(Scene& scene, SQO_Region& region);
void fill(Scene& scene, SQO_basicFeature1D& feature);
void fill(Scene& scene, SQO_basicFeatureGap& gap);
void fill(Scene& scene, SJU_segFeature& segment);
void fill(Scene& scene, SQO_featureSemiCircle& semiCircle);
void fill(Scene& scene, SQO_featureClusteringInfo& cell);
void fill(Scene& scene, SQO_contourPtInfo& point);
void fill(Scene& scene, SQO_intPair& labels);
void fill(Scene& scene, SQO_conotourPair& pair);
void fill(Scene& scene, SJU_waterShedImage& image);
void fill(Scene& scene, SQO_cornerParam& param);
void fill(Scene& scene, SQO_lineSegParam& param);
void fill(Scene& scene, SQO_outlierFilterParam& param);
void fill(Scene& scene, SQO_slopeParam& param);
void fill(Scene& scene, SQO_VFeatureParam& param);
void fill(Scene& scene, SQO_lineRightAngleParam& param);
void fill(Scene& scene, SQO_gloveArcParam& param);
void fill(Scene& scene, SQO_raisedFeatureParam& param);
void fill(Scene& scene, SQO_treeGrowParam& param);
void fill(Scene& scene, SQO_bagParam& param);
void fill(Scene& scene, SQO_localPkParam& param);
void fill(Scene& scene, std::vector<STesk3DPosition>& line);
void fill(Scene& scene, std::vector<std::vector<STesk3DPosition>>& scan);

template <typename T>
void fill(Scene& scene, cv::Point_<T>& point) {
  point = {static_cast<T>(scene.random.grid(-4.0, 9.0)), static_cast<T>(scene.random.grid(1, 9))};
}

template <typename T>
void fill(Scene& scene, cv::Point3_<T>& point) {
  const auto value = [&] { return static_cast<T>(scene.random.grid(-4.0, 9.0)); };
  point.x = value();
  point.y = value();
  point.z = value();
}

template <typename T>
void fill(Scene& scene, std::vector<T>& list);
template <typename T>
void fill(Scene& scene, std::vector<std::vector<T>>& grid);

template <typename T>
void fill(Scene& scene, T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    value = scene.random.chance(50);
  } else if constexpr (std::is_floating_point_v<T>) {
    value = static_cast<T>(scene.random.grid(-6.0, 10.0));
  } else if constexpr (std::is_integral_v<T>) {
    value = static_cast<T>(scene.random.whole(0, 9));
  } else if constexpr (std::is_array_v<T>) {
    for (auto& element : value) {
      fill(scene, element);
    }
  } else {
    withFields(value, [&scene](auto&... field) { (fill(scene, field), ...); });
  }
  if constexpr (std::is_same_v<T, SQO_lineFeature>) {
    value.lineIdx = scene.line;
  }
  if constexpr (IsTree<T>::value) {
    // A few nodes on the lines before this one.
    const int last = scene.line;
    value.treeNodes.resize(static_cast<std::size_t>(scene.random.whole(1, 4)));
    scene.line -= static_cast<int>(value.treeNodes.size());
    value.sLineIdx = scene.line;
    for (auto& node : value.treeNodes) {
      fill(scene, node);
      value.eLineIdx = scene.line++;
    }
    scene.line = last;
    value.treeState = scene.random.pick({TREE_GROWING, TREE_GROWING, TREE_CLOSED});
  }
  if constexpr (std::is_same_v<T, SQO_featureTree>) {
    value.treeType = value.treeNodes.front().featureType;
    value.anchorNode = scene.random.pick({-1, 0});
  }
}

/// Of points and cells there are as many in every list.
template <typename T>
constexpr bool kIsOnGrid = std::is_same_v<T, STesk3DPoint> || std::is_same_v<T, cv::Point2d> ||
                           std::is_same_v<T, cv::Point3d> || std::is_same_v<T, cv::Point3f> ||
                           std::is_same_v<T, SQO_featureClusteringInfo>;

template <typename T>
void fill(Scene& scene, std::vector<T>& list) {
  const int some = scene.size < 4 ? scene.size : scene.random.whole(1, scene.columns);
  list.resize(static_cast<std::size_t>(kIsOnGrid<T> ? scene.rows : some));
  for (T& value : list) {
    fill(scene, value);
  }
}

/// A list of lines.
template <typename T>
void fillByLine(Scene& scene, std::vector<T>& lines) {
  lines.resize(static_cast<std::size_t>(scene.columns));
  const int line = scene.line;
  scene.line = 0;
  for (T& value : lines) {
    fill(scene, value);
    ++scene.line;
  }
  scene.line = line;
}

inline void fill(Scene& scene, std::vector<SQO_lineFeature>& lines) {
  fillByLine(scene, lines);
}

template <typename T>
void fill(Scene& scene, std::vector<std::vector<T>>& grid) {
  fillByLine(scene, grid);
}

template <typename T>
void fillArgument(Scene& scene, T& value) {
  fill(scene, value);
}
/// A whole number is the index of the line unless its row says otherwise.
inline void fillArgument(Scene& scene, int& value) {
  value = scene.line;
}

}  // namespace calls
