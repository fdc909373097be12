#include <benchmark/benchmark.h>

#include <vector>

#include "bench_scan.h"
#include "conditioning.h"

namespace {

void BM_Conditioning_Smoothing(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  const int window = static_cast<int>(state.range(0));
  bench::Line smoothed;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      qo_lineDataSmoothing(line, window, smoothed);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_Smoothing)
    ->ArgName("window")
    ->Arg(5)
    ->Arg(25)
    ->Unit(benchmark::kMillisecond);

void BM_Conditioning_SegSmoothing(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  const int window = static_cast<int>(state.range(0));
  bench::Line smoothed;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      smoothed.clear();
      qo_lineSegSmoothing(line, 1.0, 5.0, window, smoothed);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_SegSmoothing)
    ->ArgName("window")
    ->Arg(5)
    ->Arg(25)
    ->Unit(benchmark::kMillisecond);

// Against the limit of 1.0 every block is one stretch and nothing goes; against 0.04 the scan's
// noise alone breaks stretches all along the line, and short ones are blanked.
constexpr SQO_outlierFilterParam kKeepsAll = {1.0, 5.0};
constexpr SQO_outlierFilterParam kBlanksMany = {0.04, 5.0};

void BM_Conditioning_OutliersInPlace(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      qo_lineDataRemoveOutlier_changeOriginData(line.data(), bench::kSamples, kKeepsAll);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_OutliersInPlace)->Unit(benchmark::kMillisecond);

using CopyFilter = decltype(&qo_lineDataRemoveOutlier);

void BM_Conditioning_Outliers(benchmark::State& state,
                              CopyFilter filter,
                              SQO_outlierFilterParam para) {
  bench::Scan scan = bench::sharedScan();
  bench::Line filtered;
  std::vector<int> noise;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      noise.clear();
      filter(line.data(), bench::kSamples, para, filtered, noise);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK_CAPTURE(BM_Conditioning_Outliers, Copy, qo_lineDataRemoveOutlier, kKeepsAll)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Conditioning_Outliers, CopyBlanking, qo_lineDataRemoveOutlier, kBlanksMany)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Conditioning_Outliers,
                  PointDistance,
                  qo_lineDataRemoveOutlier_ptDistMethod,
                  kKeepsAll)
    ->Unit(benchmark::kMillisecond);

}  // namespace
