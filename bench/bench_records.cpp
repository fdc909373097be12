#include <scanline/scan_bounds.h>
#include "bench_scan.h"

namespace {

void BM_Bounds_Pointer(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<STesk3DLaserLine> lines = bench::pointerForm(scan);
  for (auto _ : state) {
    benchmark::DoNotOptimize(qo_getScanDataROI(lines.data(), static_cast<int>(lines.size())));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Bounds_Pointer)->Unit(benchmark::kMillisecond);

void BM_Bounds_Vector(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    benchmark::DoNotOptimize(qo_getScanDataROI_vector(scan));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Bounds_Vector)->Unit(benchmark::kMillisecond);

void BM_Bounds_Points(benchmark::State& state) {
  std::vector<STesk3DPoint> points;
  points.reserve(bench::kScanSamples);
  for (const bench::Line& line : bench::sharedScan()) {
    for (const STesk3DPosition& sample : line) {
      points.push_back(sample.pt3D);
    }
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(ju_getPointCloudROI(points));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_Bounds_Points)->Unit(benchmark::kMillisecond);

void BM_CloudPara(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    benchmark::DoNotOptimize(ju_getPointCloudPara(scan));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_CloudPara)->Unit(benchmark::kMillisecond);

}  // namespace
