#include <algorithm>
#include <chrono>
#include <opencv2/core/utility.hpp>
#include <vector>

#include <scanline/scanline.h>
#include "bench_scan.h"

// The whole chain of most applications: level a raw line, blank its outliers, smooth it, find its
// corners, and chain them into trees.

namespace {

constexpr SQO_outlierFilterParam kOutlier = {1.0, 5.0};
constexpr int kSmoothWindow = 5;
constexpr SQO_cornerParam kCorner = {2.0, 5.0, 1.6, 45.0, 60.0, 30.0};
constexpr SQO_treeGrowParam kGrow = {2.0, 5.0, 5, 4.0, 20.0, 20.0};
constexpr double kCutNothing = 0.0;
constexpr int kSamplesPerEdge = 51;

bench::Scan scanOf(int samples) {
  return bench::makeScan(samples / kSamplesPerEdge, samples);
}

SQO_planeCalibPara calibrationOf(bench::Scan scan) {
  std::vector<STesk3DLaserLine> lines = bench::pointerForm(scan);
  return qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
}

/// The buffers of one thread, reused for each line.
struct Workspace {
  bench::Line line;
  bench::Line smooth;
};

/// Finds the corners of a raw line.
void findCorners(const bench::Line& raw,
                 int lineIdx,
                 const SQO_planeCalibPara& plane,
                 Workspace& work,
                 SQO_lineFeature& found) {
  work.line = raw;
  STesk3DLaserLine view = {work.line.data(), static_cast<int>(work.line.size()), 0};
  lineDataRT(&view, plane.levelMatrix, kCutNothing);
  qo_lineDataRemoveOutlier_changeOriginData(view.p3DPosition, view.nPositionCnt, kOutlier);
  qo_lineDataSmoothing(work.line, kSmoothWindow, work.smooth);
  qo_getLineCornerFeature(work.smooth.data(), view.nPositionCnt, lineIdx, kCorner, &found);
}

double quantile(std::vector<double>& times, double share) {
  const auto at =
      times.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(times.size() - 1));
  std::nth_element(times.begin(), at, times.end());
  return *at;
}

/// From a raw line to trees with its corners, on one core. An iteration is one line; the counters
/// are the median and the 99th percentile of the times.
void BM_Road_Profile(benchmark::State& state) {
  const int samples = static_cast<int>(state.range(0));
  const bench::Scan scan = scanOf(samples);
  const SQO_planeCalibPara plane = calibrationOf(scan);
  Workspace work;
  std::vector<SQO_featureTree> trees;
  std::vector<double> times;
  int lineIdx = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    SQO_lineFeature found = {};
    findCorners(scan[lineIdx], lineIdx, plane, work, found);
    const bool isLast = lineIdx + 1 == bench::kLines;
    qo_lineFeaturesGrowing(lineIdx, isLast, found.features, trees, kGrow);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(time.count());
    times.push_back(time.count());
    if (isLast) {
      trees.clear();
    }
    lineIdx = isLast ? 0 : lineIdx + 1;
  }
  state.counters["p50_us"] = 1e6 * quantile(times, 0.5);
  state.counters["p99_us"] = 1e6 * quantile(times, 0.99);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Road_Profile)
    ->ArgName("samples")
    ->Arg(1024)
    ->Arg(2048)
    ->Arg(4096)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

/// A scan of 1000 lines of 2048 samples: the lines in parallel, then the trees.
void BM_Road_Scan(benchmark::State& state) {
  const bench::Scan scan = scanOf(bench::kSamples);
  const SQO_planeCalibPara plane = calibrationOf(scan);
  const int threadsBefore = cv::getNumThreads();
  cv::setNumThreads(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    std::vector<SQO_lineFeature> found(scan.size());
    cv::parallel_for_({0, bench::kLines}, [&](const cv::Range& lines) {
      Workspace work;
      for (int l = lines.start; l < lines.end; ++l) {
        findCorners(scan[l], l, plane, work, found[l]);
      }
    });
    std::vector<SQO_featureTree> trees;
    qo_getFeatureGrowingTrees(found, trees, kGrow);
    benchmark::DoNotOptimize(trees.data());
  }
  cv::setNumThreads(threadsBefore);
  state.SetItemsProcessed(state.iterations() * bench::kLines);
}
BENCHMARK(BM_Road_Scan)
    ->ArgName("threads")
    ->Apply([](benchmark::internal::Benchmark* benchmark) {
      for (int threads = 1; threads < cv::getNumberOfCPUs(); threads *= 2) {
        benchmark->Arg(threads);
      }
      benchmark->Arg(cv::getNumberOfCPUs());
    })
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
