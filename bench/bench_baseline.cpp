#include <cstring>

#include "bench_scan.h"

// The cost of reading, changing and copying the samples alone, to compare other figures with.

namespace {

void BM_Baseline_Read(benchmark::State& state) {
  const bench::Scan& scan = bench::sharedScan();
  for (auto _ : state) {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    for (const bench::Line& line : scan) {
      for (const STesk3DPosition& sample : line) {
        x += sample.pt3D.x;
        y += sample.pt3D.y;
        z += sample.pt3D.z;
      }
    }
    benchmark::DoNotOptimize(x + y + z);
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Baseline_Read)->Unit(benchmark::kMillisecond);

void BM_Baseline_InPlace(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    for (bench::Line& line : scan) {
      for (STesk3DPosition& sample : line) {
        sample.pt3D.x += 1.0;
        sample.pt3D.y += 1.0;
        sample.pt3D.z += 1.0;
      }
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Baseline_InPlace)->Unit(benchmark::kMillisecond);

void BM_Baseline_Copy(benchmark::State& state) {
  const bench::Scan& scan = bench::sharedScan();
  bench::Line out(bench::kSamples);
  for (auto _ : state) {
    for (const bench::Line& line : scan) {
      std::memcpy(out.data(), line.data(), line.size() * sizeof(STesk3DPosition));
      benchmark::ClobberMemory();
    }
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Baseline_Copy)->Unit(benchmark::kMillisecond);

}  // namespace
