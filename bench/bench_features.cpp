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

// Blocks of 40 in z make jumps; noise makes short runs, which the smallest slope drops.
void BM_Features_LV(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  constexpr SQO_slopeParam kSlope = {1.5, 1.0, 5.0, 2.0};
  constexpr SQO_VFeatureParam kV = {2.0, 30.0};
  SQO_lineFeature features = {};
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (int l = 0; l < bench::kLines; ++l) {
      features.features.clear();
      features.endings.clear();
      qo_getLineLVFeature(scan[l].data(), bench::kSamples, l, kSlope, kV, &features);
      found += features.features.size();
    }
  }
  bench::countSamples(state);
  state.counters["shapes"] = static_cast<double>(found);
}
BENCHMARK(BM_Features_LV)->Unit(benchmark::kMillisecond);

void BM_Features_RightAngle(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  const double armLen = 0.2 * static_cast<double>(state.range(0));
  const SQO_lineRightAngleParam kind = {armLen, armLen, 0.3};
  SQO_lineFeature features = {};
  std::size_t found = 0;
  for (auto _ : state) {
    found = 0;
    for (int l = 0; l < bench::kLines; ++l) {
      features.features.clear();
      qo_getLineRigthAngleFeature(scan[l].data(), bench::kSamples, l, kind, kind, kind, kind,
                                  &features);
      found += features.features.size();
    }
  }
  bench::countSamples(state);
  state.counters["angles"] = static_cast<double>(found);
}
BENCHMARK(BM_Features_RightAngle)
    ->ArgName("arm_in_samples")
    ->Arg(4)
    ->Arg(8)
    ->Arg(32)
    ->Unit(benchmark::kMillisecond);

}  // namespace
