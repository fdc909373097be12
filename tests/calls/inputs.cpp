#include "inputs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace calls {

namespace {

constexpr std::uint8_t kMargin = 0xA5;

/// A point on the current line, with few different y and z.
STesk3DPoint onLine(Scene& scene) {
  const double x = 3.5 + scene.line + (scene.random.chance(20) ? 0.5 : 0.0);
  return {x, scene.random.grid(10.0, 16.0, 0.5), scene.random.grid(30.0, 32.0, 0.5)};
}

}  // namespace

Scene::Scene(unsigned seed, int aSize)
    : random(seed),
      size(aSize),
      columns(size < 4 ? size : 3 + static_cast<int>(std::sqrt(size))),
      rows(size < 4 ? size : 3 + static_cast<int>(2.0 * std::sqrt(size))),
      line(random.whole(2, 5)) {}

Image makeImage(int rows, int columns, int type, const std::function<double()>& value) {
  Image image;
  image.whole.create(rows + 2, columns + 3, type);
  std::fill_n(image.whole.data, image.whole.total() * image.whole.elemSize(), kMargin);
  image.view = image.whole(cv::Rect(1, 1, columns, rows));
  walk(image, [&value](Number number) {
    std::visit(
        [&value](auto at) {
          if constexpr (std::is_pointer_v<decltype(at)>) {
            using T = std::remove_pointer_t<decltype(at)>;
            if constexpr (!std::is_const_v<T>) {
              *at = static_cast<T>(value());
            }
          }
        },
        number);
  });
  return image;
}

bool marginIsKept(const Image& image) {
  const int pixel = static_cast<int>(image.whole.elemSize());
  for (int row = 0; row < image.whole.rows; ++row) {
    const bool outer = row == 0 || row + 1 == image.whole.rows;
    for (int k = 0; k < image.whole.cols * pixel; ++k) {
      const bool inside = !outer && k >= pixel && k < (image.whole.cols - 2) * pixel;
      if (!inside && image.whole.ptr(row)[k] != kMargin) {
        return false;
      }
    }
  }
  return true;
}

PointerScan makePointerScan(build::Scan scan) {
  PointerScan result;
  result.scan = std::move(scan);
  result.lines = build::pointerForm(result.scan);
  return result;
}

void fill(Scene& scene, Image& image) {
  image = makeImage(scene.rows, scene.columns, CV_32F, [&] { return scene.random.whole(0, 9); });
}

void fill(Scene& scene, PointerScan& lines) {
  lines = makePointerScan(build::randomScan(scene.random, scene.columns, scene.rows));
}

void fill(Scene& scene, ColourLine& line) {
  for (const auto& [idx, pt] : build::randomLine(scene.random, scene.size, 3.5)) {
    line.points.push_back({static_cast<float>(pt.x), static_cast<float>(pt.y),
                           static_cast<float>(pt.z), static_cast<std::uint32_t>(idx)});
  }
  line.line = {line.points.data(), static_cast<int>(line.points.size())};
}

void fill(Scene& scene, double (&matrix)[9]) {
  std::generate(matrix, matrix + 9, [&] { return scene.random.grid(-1.0, 1.0, 0.125); });
}

void fill(Scene& scene, double (&matrix)[3][3]) {
  for (auto& row : matrix) {
    std::generate(row, row + 3, [&] { return scene.random.pick({-1.0, -0.5, 0.0, 0.125, 0.9}); });
  }
}

void fill(Scene& scene, std::vector<int>& marks) {
  marks.resize(static_cast<std::size_t>(scene.size));
  std::generate(marks.begin(), marks.end(), [&] { return scene.random.chance(30) ? 1 : 0; });
}

void fill(Scene& scene, STesk2DPoint& cell) {
  cell = {scene.random.whole(0, scene.columns - 1), scene.random.whole(0, scene.rows - 1)};
}

void fill(Scene& scene, STesk3DPoint& point) {
  point = {scene.random.grid(2.0, 12.0), scene.random.grid(-4.0, 10.0),
           scene.random.chance(8) ? 0.0 : scene.random.grid(5.0, 30.0)};
}

void fill(Scene& scene, STeskRangeD& range) {
  range.min = scene.random.grid(0.0, 6.0);
  range.max = range.min + scene.random.pick({-1.0, 2.0, 5.0, 9.0, 30.0});
}

void fill(Scene& scene, STesk3DRangeD& box) {
  const double x = scene.random.grid(1.0, 6.0);
  const double y = scene.random.grid(1.0, 9.0);
  box = {{x, x + scene.random.grid(2.0, 9.0)},
         {y, y + scene.random.grid(4.0, 30.0)},
         {scene.random.grid(5.0, 40.0), scene.random.grid(8.0, 30.0)}};
}

void fill(Scene& scene, SQO_2DValueI& position) {
  position = {scene.random.whole(0, scene.columns - 1), scene.random.whole(0, scene.rows - 1),
              scene.random.whole(0, 9), scene.random.grid(0.0, 6.0), scene.random.whole(0, 9)};
}

void fill(Scene& scene, SQO_EulerAngles& angles) {
  angles = {scene.random.grid(-180.0, 180.0, 22.5), scene.random.grid(-90.0, 90.0, 22.5),
            scene.random.grid(-180.0, 180.0, 22.5)};
}

void fill(Scene& scene, SQO_Region& region) {
  const int at = scene.random.whole(0, 9);
  region = {{at, at + 2, at, at + 1}, scene.random.whole(1, 6), scene.random.whole(2, 9)};
}

void fill(Scene& scene, SQO_basicFeature1D& feature) {
  const int type = scene.random.pick({1, 1, 2, 3, 4, 5, 5, 6, 7, 8, 9, 13, 14, 15, 0});
  feature = {type, {scene.line, scene.random.whole(0, 20)}, onLine(scene), 0.25 * type};
}

void fill(Scene& scene, SQO_basicFeatureGap& gap) {
  gap = {scene.line, {1, 2, 3}, {4, onLine(scene)}, {5, onLine(scene)}, {6, 7, 8, 9}};
}

void fill(Scene& scene, SJU_segFeature& segment) {
  segment = {scene.line, 1, 2, 3, onLine(scene), onLine(scene), scene.random.grid(1.0, 5.0)};
}

void fill(Scene& scene, SQO_featureSemiCircle& semiCircle) {
  const int state = scene.random.pick({0, 0, 0, 0, 0, 1, 2, 3, 4, 5});
  semiCircle = {state, scene.line, 1, 5, 3, onLine(scene), scene.random.grid(1.0, 5.0), 30.0};
}

void fill(Scene& scene, SQO_featureClusteringInfo& cell) {
  cell = {scene.random.chance(75) ? 1 : 0,    2, 3, scene.random.pick({0, 0, 0, 0, 0, 1}),
          scene.random.pick({0, 0, 0, 0, 1}), 4, 5};
}

void fill(Scene& scene, SQO_contourPtInfo& point) {
  point = {scene.random.whole(0, 9),
           scene.random.whole(0, 9),
           scene.random.whole(0, 8),
           scene.random.whole(0, 4),
           scene.random.whole(0, 2),
           scene.random.grid(0.0, 12.0),
           {scene.random.grid(0.0, 9.0), scene.random.grid(0.0, 9.0), scene.random.grid(5.0, 9.0)}};
}

void fill(Scene& scene, SQO_intPair& labels) {
  labels = {scene.random.whole(0, 2), scene.random.whole(0, 2), 7};
}

void fill(Scene& scene, SQO_conotourPair& pair) {
  pair = {1, scene.random.whole(0, 2), scene.random.whole(0, 2), 2, 3.5, {}, {}};
  fill(scene, pair.contourPt_1);
  fill(scene, pair.contourPt_2);
}

void fill(Scene& scene, SJU_waterShedImage& image) {
  const int side = scene.columns;
  image = {side, side, {}, {}};
  for (int row = 0; row < side; ++row) {
    image.gray.emplace_back();
    image.markers.emplace_back();
    for (int column = 0; column < side; ++column) {
      image.gray.back().push_back(scene.random.whole(0, 5));
      image.markers.back().push_back(scene.random.chance(4) ? scene.random.whole(1, 3) : 0);
    }
  }
}

void fill(Scene& scene, SQO_cornerParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.5, 3.0, 6.0}),    r.pick({2.0, 3.0, 5.0, 9.0}), r.pick({1.0, 1.5, 2.0, 3.0}),
           r.pick({10.0, 20.0, 45.0}), r.pick({20.0, 30.0, 60.0}),   r.pick({10.0, 30.0, 45.0})};
}

void fill(Scene& scene, SQO_lineSegParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.25, 2.0, 4.0}), r.pick({1.0, 3.0, 6.0}), r.pick({0.25, 0.5, 1.0, 2.0})};
}

void fill(Scene& scene, SQO_outlierFilterParam& param) {
  param = {scene.random.pick({0.5, 1.0, 2.0, 4.0}), scene.random.pick({1.0, 2.0, 3.0, 4.5})};
}

void fill(Scene& scene, SQO_slopeParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.0, 2.0, 4.0}), r.pick({0.5, 1.0, 2.0}), r.pick({2.0, 4.0, 6.0}),
           r.pick({1.5, 3.0, 6.0})};
}

void fill(Scene& scene, SQO_VFeatureParam& param) {
  param = {scene.random.pick({1.0, 3.0, 6.0}), scene.random.pick({5.0, 15.0, 30.0, 60.0})};
}

void fill(Scene& scene, SQO_lineRightAngleParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.0, 2.0, 3.0}), r.pick({2.0, 4.0, 8.0}), r.pick({0.6, 1.0, 1.5, 2.5})};
}

void fill(Scene& scene, SQO_gloveArcParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.0, 2.0, 3.0}), r.pick({3.0, 5.0, 8.0}), r.pick({20.0, 45.0, 90.0})};
}

void fill(Scene& scene, SQO_raisedFeatureParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({1.0, 3.0, 5.0}), r.pick({0.5, 1.0, 2.0}), r.pick({0.0, 2.0}),
           r.pick({4.0, 12.0, 30.0})};
}

void fill(Scene& scene, SQO_treeGrowParam& param) {
  build::Random& r = scene.random;
  param = {r.pick({0.5, 1.0, 1.5, 2.5}), r.pick({0.5, 1.0, 2.5}),      r.whole(0, 3),
           r.pick({0.5, 1.5, 2.5}),      r.pick({0.0, 1.0, 2.0, 3.0}), r.pick({0.0, 1.0, 2.0})};
}

void fill(Scene& scene, SQO_bagParam& param) {
  param = {scene.random.pick({2.0, 4.0, 8.0}), scene.random.pick({2.0, 4.0, 8.0, 16.0})};
}

void fill(Scene& scene, SQO_localPkParam& param) {
  param = {scene.random.whole(2, 7), scene.random.whole(2, 7)};
}

void fill(Scene& scene, build::Line& line) {
  line = build::randomLine(scene.random, scene.size, scene.random.grid(2.0, 9.0));
}

void fill(Scene& scene, build::Scan& scan) {
  scan = build::randomScan(scene.random, scene.columns, scene.rows);
}

}  // namespace calls
