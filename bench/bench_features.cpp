#include "bench_features.h"

#include <opencv2/core.hpp>
#include <vector>

#include <scanline/line_features.h>
#include "plain_corners.h"
#include "plain_flat_peaks.h"
#include "plain_glove_arcs.h"
#include "plain_local_peaks.h"
#include "plain_lv_shapes.h"
#include "plain_raised.h"
#include "plain_right_angles.h"

namespace {

using bench::runOnRecords;
using bench::runOnScan;

// The library and the same rules in their plainest form, as in other pairs below.
template <typename Extract>
void BM_Features_LocalPeaks(benchmark::State& state, Extract extract) {
  const double scale = 0.2 * static_cast<double>(state.range(0));
  std::vector<SQO_basicFeature1D> valleys;
  runOnScan<SQO_basicFeature1D>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& peaks) {
        valleys.clear();
        extract(line, lineIdx, scale, valleys, peaks);
      });
}
void scales(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("scale_in_samples")->Arg(8)->Arg(64)->Unit(benchmark::kMillisecond);
}
constexpr auto localPeaks = [](bench::Line& line, int lineIdx, double scale, auto&... found) {
  qo_getLineLocalPeaks(line.data(), bench::kSamples, lineIdx, scale, found...);
};
BENCHMARK_CAPTURE(BM_Features_LocalPeaks, library, localPeaks)->Apply(scales);
BENCHMARK_CAPTURE(BM_Features_LocalPeaks, plainRules, plain::localPeaks)->Apply(scales);

// Windows inside the line and one that spans it: the cost must not depend on them. The stamps of
// the first round count as jumps in later ones.
template <typename Extract>
void BM_Features_FlatLinePeaks(benchmark::State& state, Extract extract) {
  const double window = 0.2 * static_cast<double>(state.range(0));
  runOnScan<SQO_basicFeature1D>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& peaks) {
        extract(line, lineIdx, window, 5.0, 4.0, peaks);
      });
}
void slopeWindows(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("window_in_samples")->Arg(8)->Arg(256)->Arg(4096);
  benchmark->Unit(benchmark::kMillisecond);
}
BENCHMARK_CAPTURE(BM_Features_FlatLinePeaks, library, qo_getFlatLineLocalPeaks_vector)
    ->Apply(slopeWindows);
BENCHMARK_CAPTURE(BM_Features_FlatLinePeaks, plainRules, plain::flatLinePeaks)->Apply(slopeWindows);

// The lines that the search is meant for: level ones with noise, without blocks.
template <typename Extract>
void BM_Features_LevelLinePeaks(benchmark::State& state, Extract extract) {
  bench::Scan scan = bench::makeScan(1);
  std::vector<SQO_basicFeature1D> peaks;
  for (auto _ : state) {
    for (int l = 0; l < bench::kLines; ++l) {
      peaks.clear();
      extract(scan[l], l, 1.6, 5.0, 4.0, peaks);
    }
  }
  bench::countSamples(state);
}
BENCHMARK_CAPTURE(BM_Features_LevelLinePeaks, library, qo_getFlatLineLocalPeaks_vector)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Features_LevelLinePeaks, plainRules, plain::flatLinePeaks)
    ->Unit(benchmark::kMillisecond);

void BM_Features_SemiCircles(benchmark::State& state) {
  cv::Mat noLabels(bench::kSamples + 1, bench::kLines, CV_32SC1, cv::Scalar(0));
  runOnScan<SQO_featureSemiCircle>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SQO_featureSemiCircle>& found) {
        qo_getLineUpperSemiCircleFeature(line.data(), bench::kSamples, lineIdx, 5.0,
                                         {1.6, 0.0, 0.0, 0.3}, found, noLabels);
      });
}
BENCHMARK(BM_Features_SemiCircles)->Unit(benchmark::kMillisecond);

void BM_Features_GloveArcs(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(
      state, [](bench::Line& line, int lineIdx, std::vector<SQO_basicFeature1D>& arcs) {
        ju_getLineGloveArcs(line, lineIdx, {1.5, 6.0, 45.0}, arcs);
      });
}
BENCHMARK(BM_Features_GloveArcs)->Unit(benchmark::kMillisecond);

void BM_Features_PlainGloveArcs(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int lineIdx, auto& arcs) {
    arcs = plain::gloveArcs(plain::profileOf(line), lineIdx, {1.5, 6.0, 45.0});
  });
}
BENCHMARK(BM_Features_PlainGloveArcs)->Unit(benchmark::kMillisecond);

template <typename Extract>
void BM_Features_Raised(benchmark::State& state, Extract extract) {
  runOnScan<SJU_segFeature>(
      state, [&](bench::Line& line, int lineIdx, std::vector<SJU_segFeature>& runs) {
        extract(line, lineIdx, SQO_raisedFeatureParam{5.0, 1.0, 1.0, 20.0}, runs);
      });
}
BENCHMARK_CAPTURE(BM_Features_Raised, library, ju_getLineRaisedFeature)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Features_Raised, plainRules, plain::raisedRuns)->Unit(benchmark::kMillisecond);

// Blocks of height 40 make jumps. Noise makes short runs, which are dropped.
template <typename Extract>
void BM_Features_LV(benchmark::State& state, Extract extract) {
  runOnRecords(state, [&](bench::Line& line, int l, SQO_lineFeature& record) {
    extract(line, l, {1.5, 1.0, 5.0, 2.0}, {2.0, 30.0}, record);
  });
}
void lvShapes(bench::Line& line,
              int lineIdx,
              const SQO_slopeParam& slope,
              const SQO_VFeatureParam& v,
              SQO_lineFeature& found) {
  qo_getLineLVFeature(line.data(), bench::kSamples, lineIdx, slope, v, &found);
}
BENCHMARK_CAPTURE(BM_Features_LV, library, lvShapes)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Features_LV, plainRules, plain::lvShapes)->Unit(benchmark::kMillisecond);

template <typename Extract>
void BM_Features_RightAngle(benchmark::State& state, Extract extract) {
  const double armLen = 0.2 * static_cast<double>(state.range(0));
  const SQO_lineRightAngleParam kind = {armLen, armLen, 0.3};
  runOnRecords(state, [&](bench::Line& line, int l, SQO_lineFeature& record) {
    extract(line, l, {kind, kind, kind, kind}, record.features);
  });
}
void arms(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("arm_in_samples")->Arg(4)->Arg(8)->Arg(32)->Unit(benchmark::kMillisecond);
}
void rightAngles(bench::Line& line,
                 int lineIdx,
                 const plain::RightAngleKinds& kinds,
                 std::vector<SQO_basicFeature1D>& corners) {
  SQO_lineFeature record = {lineIdx, {}, {}};
  record.features.swap(corners);
  qo_getLineRigthAngleFeature(line.data(), bench::kSamples, lineIdx, kinds[0], kinds[1], kinds[2],
                              kinds[3], &record);
  record.features.swap(corners);
}
BENCHMARK_CAPTURE(BM_Features_RightAngle, library, rightAngles)->Apply(arms);
BENCHMARK_CAPTURE(BM_Features_RightAngle, plainRules, plain::rightAngles)->Apply(arms);

}  // namespace
