#include <algorithm>
#include <cmath>
#include <functional>
#include <opencv2/imgproc.hpp>
#include <utility>
#include <vector>

#include <scanline/clustering.h>
#include "bench_scan.h"
#include "plain_clustering.h"

// Clustering and labelling compared with their plain forms, and labelling with the connected
// components of OpenCV.

namespace {

using Points = std::vector<STesk3DPosition>;
using Clusters = std::vector<Points>;

/// Points in groups of about `groupSize`. Links of 1.0 connect a group, but no two groups.
Points makeGroups(std::int64_t count, std::int64_t groupSize) {
  bench::Noise noise;
  Points points;
  const double extent =
      4.0 * std::sqrt(static_cast<double>(count) / static_cast<double>(groupSize));
  double x = 0.0;
  double y = 0.0;
  for (std::int64_t i = 0; i < count; ++i) {
    if (i % groupSize == 0) {
      x = extent * noise.next();
      y = extent * noise.next();
    }
    points.push_back({0, {x + noise.next(), y + noise.next(), 100.0}});
  }
  // Neighbours in space are seldom neighbours in the list.
  for (std::size_t i = 0; i < points.size(); ++i) {
    std::swap(points[i], points[i * 7919 % points.size()]);
  }
  return points;
}

using Method = void (*)(Points&, double, Clusters&);

void BM_Clustering_Points(benchmark::State& state, Method cluster) {
  const Points input = makeGroups(state.range(0), state.range(1));
  Points points;
  Clusters clusters;
  for (auto _ : state) {
    state.PauseTiming();
    points = input;
    clusters.clear();
    state.ResumeTiming();
    cluster(points, 1.0, clusters);
  }
  bench::countSamples(state, state.range(0));
  state.counters["clusters"] = static_cast<double>(clusters.size());
}

void pointCases(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"points", "group"})->Unit(benchmark::kMillisecond);
  bench->Args({1000, 20})->Args({10000, 20})->Args({10000, 10000});
  bench->Args({10000, 1})->Args({50000, 100});
}
BENCHMARK_CAPTURE(BM_Clustering_Points, library, qo_pointClustering)->Apply(pointCases);
BENCHMARK_CAPTURE(BM_Clustering_Points, plain, plain::pointClustering)->Apply(pointCases);

constexpr int kGridSide = 1000;

/// A full grid of unit steps; x and y follow the indices.
std::vector<std::vector<STesk3DPoint>> makeGridPoints() {
  std::vector<std::vector<STesk3DPoint>> grid(kGridSide, std::vector<STesk3DPoint>(kGridSide));
  for (int x = 0; x < kGridSide; ++x) {
    for (int y = 0; y < kGridSide; ++y) {
      grid[x][y] = {1.0 * x, 1.0 * y, 100.0};
    }
  }
  return grid;
}

void BM_Clustering_Grid(benchmark::State& state) {
  const std::vector<SQO_featureClusteringInfo> column(kGridSide, {1, 0, 0, 0, 0, 0, 0});
  const int window = static_cast<int>(state.range(0));
  std::vector<std::vector<STesk3DPoint>> points = makeGridPoints();
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::vector<SQO_featureClusteringInfo>> grid(kGridSide, column);
    std::vector<STesk2DPoint> queue = {{kGridSide / 2, kGridSide / 2}};
    state.ResumeTiming();
    if (window > 0) {
      STesk3DRangeD box = {{1e9, -1e9}, {1e9, -1e9}, {1e9, -1e9}};
      ju_gridPointClustering(grid, points, window, {2.0, 2.0, 0, 2.0, 0.0, 0.0}, 1, queue, box);
    } else {
      STeskRect box = {kGridSide, -1, kGridSide, -1};
      ju_gridPointClustering_labelling(grid, points, 1, queue, box);
    }
    benchmark::DoNotOptimize(queue.data());
  }
  bench::countSamples(state, std::int64_t{kGridSide} * kGridSide);
}
BENCHMARK(BM_Clustering_Grid)
    ->ArgName("window")
    ->Arg(0)
    ->Arg(1)
    ->Arg(5)
    ->Unit(benchmark::kMillisecond);

void BM_Clustering_GridPlain(benchmark::State& state) {
  const std::vector<SQO_featureClusteringInfo> column(kGridSide, {1, 0, 0, 0, 0, 0, 0});
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<std::vector<SQO_featureClusteringInfo>> grid(kGridSide, column);
    std::vector<STesk2DPoint> queue = {{kGridSide / 2, kGridSide / 2}};
    state.ResumeTiming();
    plain::growOnGrid(
        grid, 1, [](auto...) { return true; }, 1, queue);
    benchmark::DoNotOptimize(queue.data());
  }
  bench::countSamples(state, std::int64_t{kGridSide} * kGridSide);
}
BENCHMARK(BM_Clustering_GridPlain)->Unit(benchmark::kMillisecond);

using Picture = std::function<bool(int r, int c)>;

cv::Mat draw(int side, const Picture& picture) {
  cv::Mat image(side, side, CV_8U);
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) {
      image.ptr(r)[c] = picture(r, c) ? 1 : 0;
    }
  }
  return image;
}

/// Kinds of pictures: 0 noise, 1 blobs, 2 a spiral one pixel wide, 3 a comb joined in the last row.
cv::Mat makePicture(int kind, int side) {
  bench::Noise noise;
  switch (kind) {
    case 0:
      return draw(side, [&](int, int) { return noise.next() > 0.0; });
    case 1:
      return draw(side, [](int r, int c) {
        return std::sin(0.031 * r + 0.7 * std::sin(0.017 * c)) * std::sin(0.043 * c) > 0.2;
      });
    case 2: {
      // Every other ring, each cut and connected to the next one at one corner.
      return draw(side, [side](int r, int c) {
        const int last = side - 3;
        const int ring = std::min({r - 2, c - 2, last - r, last - c});
        const bool gap = r == c + 1 && r <= side / 2;
        return ring >= 0 && ((ring % 2 == 0) != gap);
      });
    }
    default:
      return draw(side, [side](int r, int c) { return c % 2 == 1 || r == side - 2; });
  }
}

void BM_Labelling_Library(benchmark::State& state) {
  const cv::Mat image =
      makePicture(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  cv::Mat labels;
  std::vector<SQO_Region> regions;
  for (auto _ : state) {
    regions.clear();
    QO_TwoPassLabel(image, labels, regions, static_cast<int>(state.range(2)));
  }
  bench::countSamples(state, static_cast<std::int64_t>(image.total()));
  state.counters["regions"] = static_cast<double>(regions.size());
}

void BM_Labelling_Plain(benchmark::State& state) {
  const cv::Mat image =
      makePicture(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  cv::Mat labels;
  for (auto _ : state) {
    image.convertTo(labels, CV_32S);
    benchmark::DoNotOptimize(plain::labelRegions(labels, static_cast<int>(state.range(2))).data());
  }
  bench::countSamples(state, static_cast<std::int64_t>(image.total()));
}

/// The library uses one thread, so OpenCV is measured with one thread and with its default.
void BM_Labelling_OpenCv(benchmark::State& state, int threads) {
  const cv::Mat image =
      makePicture(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  cv::Mat labels;
  cv::Mat stats;
  cv::Mat centroids;
  const int before = cv::getNumThreads();
  cv::setNumThreads(threads);
  for (auto _ : state) {
    cv::connectedComponentsWithStats(image, labels, stats, centroids,
                                     static_cast<int>(state.range(2)), CV_32S);
  }
  cv::setNumThreads(before);
  bench::countSamples(state, static_cast<std::int64_t>(image.total()));
  state.counters["regions"] = stats.rows - 1;
}

void pictureCases(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"picture", "side", "connectivity"})->Unit(benchmark::kMillisecond);
  bench->ArgsProduct({{0, 1, 2, 3}, {2048}, {4, 8}})->Args({2, 4096, 8})->Args({3, 4096, 4});
}
BENCHMARK(BM_Labelling_Library)->Apply(pictureCases);
BENCHMARK(BM_Labelling_Plain)->Apply(pictureCases);
BENCHMARK_CAPTURE(BM_Labelling_OpenCv, oneThread, 1)->Apply(pictureCases);
BENCHMARK_CAPTURE(BM_Labelling_OpenCv, allThreads, -1)->Apply(pictureCases);

}  // namespace
