#include <scanline/calibration.h>
#include "bench_scan.h"
#include "plain_calibration.h"

namespace {

/// A height between the table of the scene and the blocks on it, whose tops the calibration takes
/// for the plane.
constexpr double kBetweenSurfaces = 483.0;

/// Cuts nothing off the scene, but is compared with every sample.
constexpr double kCutHeight = 1000.0;

/// A rotation and its inverse in turn, so that the scan does not drift.
class AlternatingRotation {
 public:
  const double* next() {
    forth_ = !forth_;
    return forth_ ? record_.levelMatrix : record_.invLevelMatrix;
  }

 private:
  SQO_planeCalibPara record_ = adjustPlaneToXYPlane(0.02, -0.01, -1.0);
  bool forth_ = false;
};

void BM_LineDataRT(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<STesk3DLaserLine> lines = bench::pointerForm(scan);
  AlternatingRotation rotation;
  for (auto _ : state) {
    const double* matrix = rotation.next();
    for (STesk3DLaserLine& line : lines) {
      lineDataRT(&line, matrix, kCutHeight);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_LineDataRT)->Unit(benchmark::kMillisecond);

void BM_LineDataRT_Vector(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  AlternatingRotation rotation;
  for (auto _ : state) {
    const double* matrix = rotation.next();
    for (bench::Line& line : scan) {
      lineDataRT_vector(line, matrix, kCutHeight);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_LineDataRT_Vector)->Unit(benchmark::kMillisecond);

/// The same by the plain rule, for comparison.
void BM_LineDataRT_Plain(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  AlternatingRotation rotation;
  for (auto _ : state) {
    const double* matrix = rotation.next();
    for (bench::Line& line : scan) {
      plain::level(line, matrix, kCutHeight, false);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_LineDataRT_Plain)->Unit(benchmark::kMillisecond);

void BM_LineDataRT_RGBD(benchmark::State& state) {
  std::vector<STeskXYZRGBDPoint> points;
  points.reserve(bench::kScanSamples);
  for (const bench::Line& line : bench::sharedScan()) {
    for (const STesk3DPosition& sample : line) {
      points.push_back({static_cast<float>(sample.pt3D.x), static_cast<float>(sample.pt3D.y),
                        static_cast<float>(sample.pt3D.z), 0U});
    }
  }
  AlternatingRotation rotation;
  for (auto _ : state) {
    const double* matrix = rotation.next();
    for (int l = 0; l < bench::kLines; ++l) {
      STeskXYZRGBDLaserLine line = {&points[std::size_t{bench::kSamples} * l], bench::kSamples};
      lineDataRT_RGBD(&line, matrix, kCutHeight);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state);
}
BENCHMARK(BM_LineDataRT_RGBD)->Unit(benchmark::kMillisecond);

void BM_GetPlaneCalibPara(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  std::vector<STesk3DLaserLine> lines = bench::pointerForm(scan);
  for (auto _ : state) {
    benchmark::DoNotOptimize(qo_getPlaneCalibPara(lines.data(), bench::kLines));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_GetPlaneCalibPara)->Unit(benchmark::kMillisecond);

/// The same by the plain search, for comparison.
void BM_GetPlaneCalibPara_Plain(benchmark::State& state) {
  bench::Line samples;
  for (const bench::Line& line : bench::sharedScan()) {
    samples.insert(samples.end(), line.begin(), line.end());
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(plain::planeCalib(samples, false));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_GetPlaneCalibPara_Plain)->Unit(benchmark::kMillisecond);

/// The calibrations by the vector form, including those that stamp its samples.
template <SQO_planeCalibPara (*calibrate)(bench::Scan&)>
void BM_CalibrateVector(benchmark::State& state) {
  bench::Scan scan = bench::sharedScan();
  for (auto _ : state) {
    benchmark::DoNotOptimize(calibrate(scan));
  }
  bench::countSamples(state);
}
BENCHMARK_TEMPLATE(BM_CalibrateVector, qo_getPlaneCalibPara2)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CalibrateVector, qo_getHolePlaneCalibPara)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_CalibrateVector, qo_HCameraVScan_getGroundCalibPara)
    ->Unit(benchmark::kMillisecond);

/// A table without blocks, with a hole that interrupts a fifth of its lines.
void BM_CalibrateAroundHole(benchmark::State& state) {
  bench::Scan scan = bench::makeScan(1);
  for (int l = 400; l < 600; ++l) {
    for (int i = 800; i < 1200; ++i) {
      scan[l][i].pt3D.z = 0.0;
    }
  }
  for (auto _ : state) {
    benchmark::DoNotOptimize(qo_getHolePlaneCalibPara(scan));
  }
  bench::countSamples(state);
}
BENCHMARK(BM_CalibrateAroundHole)->Unit(benchmark::kMillisecond);

/// The plane fit by itself, on a million of the points that the search selects.
void BM_CaculateLaserPlane(benchmark::State& state) {
  constexpr std::size_t kPoints = 1000000;
  std::vector<cv::Point3_<float>> points;
  for (const bench::Line& line : bench::sharedScan()) {
    for (const STesk3DPosition& sample : line) {
      if (sample.pt3D.z > 0.0 && sample.pt3D.z < kBetweenSurfaces) {
        points.emplace_back(static_cast<float>(sample.pt3D.x), static_cast<float>(sample.pt3D.y),
                            static_cast<float>(sample.pt3D.z));
      }
    }
  }
  points.resize(std::min(points.size(), kPoints));
  for (auto _ : state) {
    std::vector<double> res;
    teskCaculateLaserPlane(points, res);
    benchmark::DoNotOptimize(res.data());
  }
  bench::countSamples(state, static_cast<std::int64_t>(points.size()));
}
BENCHMARK(BM_CaculateLaserPlane)->Unit(benchmark::kMillisecond);

}  // namespace
