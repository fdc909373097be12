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

}  // namespace
