#include <opencv2/core.hpp>

#include "bench_scan.h"
#include "line_features.h"

namespace {

// The scale covers 7 samples; a block's edge spreads over none, so the walls are steep.
constexpr SQO_cornerParam kCorner = {2.0, 5.0, 1.5, 45.0, 60.0, 30.0};

void BM_Features_Corner(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  SQO_cornerParam param = kCorner;
  param.scale = 0.2 * static_cast<double>(state.range(0));
  SQO_lineFeature features = {};
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (int l = 0; l < bench::kLines; ++l) {
      features.features.clear();
      features.endings.clear();
      qo_getLineCornerFeature(scan[l].data(), bench::kSamples, l, param, &features);
      found += features.features.size();
    }
  }
  bench::countSamples(state);
  state.counters["corners"] = static_cast<double>(found);
}
BENCHMARK(BM_Features_Corner)
    ->ArgName("scale_in_samples")
    ->Arg(4)
    ->Arg(8)
    ->Arg(32)
    ->Unit(benchmark::kMillisecond);

/// Times `find(line, lineIdx, found)` on all lines; `find` may write the lines' working words.
template <typename Feature, typename Find>
void measure(benchmark::State& state, Find find) {
  bench::Scan scan = bench::sharedScan();
  std::vector<Feature> features;
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (int l = 0; l < bench::kLines; ++l) {
      features.clear();
      find(scan[l], l, features);
      found += features.size();
    }
  }
  bench::countSamples(state);
  state.counters["found"] = static_cast<double>(found);
}

void BM_Features_LocalPeaks(benchmark::State& state) {
  std::vector<SQO_basicFeature1D> valleys;
  measure<SQO_basicFeature1D>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& peaks) {
        valleys.clear();
        qo_getLineLocalPeaks(line.data(), bench::kSamples, lineIdx,
                             0.2 * static_cast<double>(state.range(0)), valleys, peaks);
      });
}
BENCHMARK(BM_Features_LocalPeaks)
    ->ArgName("scale_in_samples")
    ->Arg(8)
    ->Arg(64)
    ->Unit(benchmark::kMillisecond);

// Windows inside the line and one that spans it: the cost must not depend on them. The first
// round leaves marks in the line, which the later ones meet as jumps.
void BM_Features_FlatLinePeaks(benchmark::State& state) {
  measure<SQO_basicFeature1D>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& peaks) {
        qo_getFlatLineLocalPeaks_vector(line, lineIdx, 0.2 * static_cast<double>(state.range(0)),
                                        5.0, 4.0, peaks);
      });
}
BENCHMARK(BM_Features_FlatLinePeaks)
    ->ArgName("window_in_samples")
    ->Arg(8)
    ->Arg(256)
    ->Arg(4096)
    ->Unit(benchmark::kMillisecond);

void BM_Features_SemiCircles(benchmark::State& state) {
  cv::Mat noLabels(bench::kSamples + 1, bench::kLines, CV_32SC1, cv::Scalar(0));
  measure<SQO_featureSemiCircle>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_featureSemiCircle>& found) {
        qo_getLineUpperSemiCircleFeature(line.data(), bench::kSamples, lineIdx, 5.0,
                                         {1.6, 0.0, 0.0, 0.3}, found, noLabels);
      });
}
BENCHMARK(BM_Features_SemiCircles)->Unit(benchmark::kMillisecond);

void BM_Features_GloveArcs(benchmark::State& state) {
  measure<SQO_basicFeature1D>(
      state, [](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& arcs) {
        ju_getLineGloveArcs(line, lineIdx, {1.5, 6.0, 45.0}, arcs);
      });
}
BENCHMARK(BM_Features_GloveArcs)->Unit(benchmark::kMillisecond);

void BM_Features_Raised(benchmark::State& state) {
  measure<SJU_segFeature>(
      state, [](bench::Line& line, int lineIdx, std::vector<SJU_segFeature>& stretches) {
        ju_getLineRaisedFeature(line, lineIdx, {5.0, 1.0, 1.0, 20.0}, stretches);
      });
}
BENCHMARK(BM_Features_Raised)->Unit(benchmark::kMillisecond);

}  // namespace
