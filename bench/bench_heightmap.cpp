#include <opencv2/imgproc.hpp>

#include <scanline/heightmap.h>
#include "bench_scan.h"
#include "plain_heightmap.h"

// The image processing of the library compared with its plain form, and with that of OpenCV on one
// thread.

namespace {

/// Elliptical objects on an empty ground, such as a projection draws.
cv::Mat maskImage(int size) {
  bench::Noise noise;
  const auto position = [&] { return static_cast<int>((noise.next() + 1.0) * 0.5 * size); };
  cv::Mat mask = cv::Mat::zeros(size, size, CV_32F);
  for (int i = 0; i < size * size / 4000; ++i) {
    const cv::Point center(position(), position());
    cv::ellipse(mask, center, {25, 12}, 90.0 * noise.next(), 0.0, 360.0, 1000000.0, cv::FILLED);
  }
  return mask;
}

cv::Mat distanceMap(int size) {
  cv::Mat distances;
  qo_distanceTrans(maskImage(size), distances, 0);
  return distances;
}

std::int64_t pixels(const benchmark::State& state) {
  return state.range(0) * state.range(0);
}

void BM_HeightMap_Distances(benchmark::State& state) {
  const cv::Mat mask = maskImage(static_cast<int>(state.range(0)));
  cv::Mat distances;
  for (auto _ : state) {
    qo_distanceTrans(mask, distances, static_cast<int>(state.range(1)));
  }
  bench::countSamples(state, pixels(state));
}
BENCHMARK(BM_HeightMap_Distances)
    ->ArgNames({"size", "type"})
    ->ArgsProduct({{1024, 2048}, {0, 1, 2}})
    ->Unit(benchmark::kMillisecond);

void BM_HeightMap_DistancesPlain(benchmark::State& state) {
  const cv::Mat mask = maskImage(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    benchmark::DoNotOptimize(plain::distances(mask, 2.0F).data);
  }
  bench::countSamples(state, pixels(state));
}
BENCHMARK(BM_HeightMap_DistancesPlain)
    ->ArgName("size")
    ->Arg(1024)
    ->Arg(2048)
    ->Unit(benchmark::kMillisecond);

void BM_HeightMap_DistancesOpenCV(benchmark::State& state) {
  cv::setNumThreads(1);
  cv::Mat mask;
  maskImage(static_cast<int>(state.range(0))).convertTo(mask, CV_8U);
  cv::Mat distances;
  for (auto _ : state) {
    cv::distanceTransform(mask, distances, cv::DIST_L1, 3, CV_32F);
  }
  bench::countSamples(state, pixels(state));
}
BENCHMARK(BM_HeightMap_DistancesOpenCV)
    ->ArgName("size")
    ->Arg(1024)
    ->Arg(2048)
    ->Unit(benchmark::kMillisecond);

const std::vector<std::vector<std::int64_t>> kPeakCases = {{1024, 2048}, {16, 32}};

using PeakSearch = void (*)(cv::Mat&, std::vector<SQO_2DValueI>&, SQO_localPkParam);

void BM_HeightMap_Peaks(benchmark::State& state, PeakSearch search) {
  cv::Mat map = distanceMap(static_cast<int>(state.range(0)));
  const int block = static_cast<int>(state.range(1));
  std::vector<SQO_2DValueI> peaks;
  for (auto _ : state) {
    peaks.clear();
    search(map, peaks, {block, block});
  }
  bench::countSamples(state, pixels(state));
}

void peakCases(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"size", "block"})->ArgsProduct(kPeakCases)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(BM_HeightMap_Peaks, library, qo_getLocalPeaks_distTransform)->Apply(peakCases);
BENCHMARK_CAPTURE(BM_HeightMap_Peaks, plain, plain::mapPeaks)->Apply(peakCases);

void BM_HeightMap_PeaksOpenCV(benchmark::State& state) {
  cv::setNumThreads(1);
  const cv::Mat map = distanceMap(static_cast<int>(state.range(0)));
  const int block = static_cast<int>(state.range(1));
  const cv::Mat kernel = cv::getStructuringElement(cv::MORPH_RECT, {block, block});
  cv::Mat highest;
  std::vector<cv::Point> peaks;
  for (auto _ : state) {
    cv::dilate(map, highest, kernel);
    const cv::Mat isPeak = (map == highest) & (map > 0.0);
    cv::findNonZero(isPeak, peaks);
  }
  bench::countSamples(state, pixels(state));
}
BENCHMARK(BM_HeightMap_PeaksOpenCV)
    ->ArgNames({"size", "block"})
    ->ArgsProduct(kPeakCases)
    ->Unit(benchmark::kMillisecond);

void BM_HeightMap_ScanPeaks(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<STesk3DLaserLine> lines = bench::pointerForm(scan);
  const int block = static_cast<int>(state.range(0));
  std::vector<SQO_2DValueI> peaks;
  for (auto _ : state) {
    peaks.clear();
    qo_getLocalPeaks(lines.data(), bench::kLines, peaks, {block, block});
  }
  bench::countSamples(state);
}
BENCHMARK(BM_HeightMap_ScanPeaks)
    ->ArgName("block")
    ->Arg(16)
    ->Arg(32)
    ->Unit(benchmark::kMillisecond);

/// The shared scan and images for its projection at 0.25 length units per pixel.
struct Projection {
  bench::Scan scan = bench::sharedScan();
  cv::Mat mask = cv::Mat::zeros(1700, 2100, CV_32F);
  cv::Mat index = cv::Mat::zeros(1700, 2100, CV_32SC2);
};

void BM_HeightMap_Projection(benchmark::State& state, decltype(&pointClout2DProjection) project) {
  Projection images;
  const STeskRangeD range = {0.0, 0.0};
  const auto maxLinkDist = static_cast<double>(state.range(0));
  for (auto _ : state) {
    images.mask.setTo(0.0);
    project(images.scan, range, range, 0.25, 0.0, 10, maxLinkDist, images.mask, images.index);
  }
  bench::countSamples(state);
}

void projectionCases(benchmark::internal::Benchmark* bench) {
  bench->ArgName("link")->Arg(0)->Arg(5)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(BM_HeightMap_Projection, library, pointClout2DProjection)->Apply(projectionCases);
BENCHMARK_CAPTURE(BM_HeightMap_Projection, plain, plain::projection)->Apply(projectionCases);

/// The least that a projection must do: read each sample, and write its pixel in both images.
void BM_HeightMap_ProjectionBaseline(benchmark::State& state) {
  Projection images;
  for (auto _ : state) {
    images.mask.setTo(0.0);
    for (int l = 0; l < bench::kLines; ++l) {
      for (int i = 0; i < bench::kSamples; ++i) {
        const STesk3DPoint& point = images.scan[l][i].pt3D;
        if (point.z > 0.0001) {
          const int row = static_cast<int>(point.y * 4.0);
          const int col = static_cast<int>(point.x * 4.0);
          images.mask.ptr<float>(row)[col] = 1000000.0F;
          images.index.ptr<cv::Vec2i>(row)[col] = {l, i};
        }
      }
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_HeightMap_ProjectionBaseline)->Unit(benchmark::kMillisecond);

}  // namespace
