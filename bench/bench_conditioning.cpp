#include <benchmark/benchmark.h>

#include <vector>

#include <scanline/conditioning.h>
#include "bench_scan.h"
#include "plain_outliers.h"
#include "plain_smoothing.h"

namespace {

/// The library and, for comparison, a plain loop over each window.
template <typename Smooth>
void BM_Conditioning_Smoothing(benchmark::State& state, Smooth smooth) {
  bench::Scan scan = bench::sharedScan();
  const int window = static_cast<int>(state.range(0));
  bench::Line smoothed;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      smooth(line, window, smoothed);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
void windows(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("window")->Arg(5)->Arg(25)->Arg(51)->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(BM_Conditioning_Smoothing, library, qo_lineDataSmoothing)->Apply(windows);
BENCHMARK_CAPTURE(BM_Conditioning_Smoothing, plainLoop, plain::smooth)->Apply(windows);

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
BENCHMARK(BM_Conditioning_SegSmoothing)->Apply(windows);

// With a limit of 1.0 every block is one stretch and nothing is blanked. With 0.04 the noise of the
// scan separates stretches all along the line, and many are short enough to be blanked.
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

// The plain rules, including copies of the lines.
void BM_Conditioning_PlainOutliers(benchmark::State& state) {
  const bench::Scan scan = bench::sharedScan();
  bench::Line filtered;
  std::vector<int> noise;
  for (auto _ : state) {
    for (const bench::Line& line : scan) {
      noise.clear();
      filtered = plain::withoutOutliers(line, kKeepsAll, plain::heightDiff, noise);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_PlainOutliers)->Unit(benchmark::kMillisecond);

// If one line is a sample longer, the filter ends after its pass along the lines.
void BM_Conditioning_NoiseFilter(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  if (state.range(0) == 0) {
    scan.back().push_back({0, {0.0, 0.0, 0.0}});
  }
  int errCode = 0;
  for (auto _ : state) {
    ju_noiseFilter(scan, kKeepsAll, &errCode);
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_NoiseFilter)
    ->ArgName("across")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

void BM_Conditioning_PlainNoiseFilter(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    benchmark::DoNotOptimize(plain::noiseFilter(scan, kKeepsAll));
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_PlainNoiseFilter)->Unit(benchmark::kMillisecond);

// The runs are the table and the blocks between the edges, which are straight except for the noise.
constexpr SQO_lineSegParam kSegments = {1.0, 5.0, 0.1};

void BM_Conditioning_Intervals(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<SQO_RUN> runs;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      runs.clear();
      ju_getLineDataIntervals(line, kSegments, runs);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_Intervals)->Unit(benchmark::kMillisecond);

void BM_Conditioning_SurfaceSegments(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<SQO_featureSemiCircle> best;
  std::vector<SQO_featureSemiCircle> others;
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      best.clear();
      others.clear();
      ju_surfaceLineSegment(line, 0, {2.0, 50.0}, kSegments, best, others);
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Conditioning_SurfaceSegments)->Unit(benchmark::kMillisecond);

// A million samples on a staircase, which is cut tread by tread. The argument is the number of
// treads.
void BM_Conditioning_SplitStaircase(benchmark::State& state) {
  constexpr int kCount = 1000000;
  const int tread = kCount / static_cast<int>(state.range(0));
  bench::Line line(kCount);
  for (int i = 0; i < kCount; ++i) {
    const int steps = i / tread;
    line[i] = {i, {0.0, 1.0 * i, 10.0 + 4.0 * steps}};
  }
  std::vector<SQO_RUN> pieces;
  for (auto _ : state) {
    pieces.clear();
    split({0, kCount, 0}, line, 0.5, pieces);
    benchmark::DoNotOptimize(pieces.data());
  }
  bench::countSamples(state, kCount);
}
BENCHMARK(BM_Conditioning_SplitStaircase)
    ->ArgName("treads")
    ->Arg(10)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);

}  // namespace
