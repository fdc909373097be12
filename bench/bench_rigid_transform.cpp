#include <benchmark/benchmark.h>

#include <Eigen/Core>
#include <Eigen/Geometry>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <scanline/geometry.h>
#include "bench_scan.h"

namespace {

using Points = std::vector<cv::Point3_<double>>;

constexpr std::int64_t kFew = 100;
constexpr std::int64_t kMany = 100000;

Points randomPoints(std::int64_t count) {
  bench::Noise noise;
  Points points(static_cast<std::size_t>(count));
  for (cv::Point3_<double>& p : points) {
    p = {100.0 * noise.next(), 100.0 * noise.next(), 20.0 * noise.next()};
  }
  return points;
}

/// The points, rotated by an angle of a 3-4-5 triangle and shifted.
Points moved(const Points& points) {
  Points out;
  for (const cv::Point3_<double>& p : points) {
    out.emplace_back(0.8 * p.x - 0.6 * p.y + 5.0, 0.6 * p.x + 0.8 * p.y - 7.0, p.z + 300.0);
  }
  return out;
}

void BM_RigidTransform_Estimate(benchmark::State& state) {
  const Points from = randomPoints(state.range(0));
  const Points to = moved(from);
  cv::Mat rotation;
  cv::Mat translation;
  cv::Point3_<double> center1;
  cv::Point3_<double> center2;
  for (auto _ : state) {
    caculateRT(from, to, rotation, translation, center1, center2);
    benchmark::DoNotOptimize(rotation.data);
  }
  bench::countSamples(state, state.range(0));
}
BENCHMARK(BM_RigidTransform_Estimate)->Arg(kFew)->Arg(kMany)->Unit(benchmark::kMicrosecond);

/// Eigen's own estimate from the same memory, for comparison.
void BM_RigidTransform_EigenUmeyama(benchmark::State& state) {
  using Map = Eigen::Map<const Eigen::Matrix3Xd>;
  const Points from = randomPoints(state.range(0));
  const Points to = moved(from);
  for (auto _ : state) {
    const Eigen::Matrix4d transform =
        Eigen::umeyama(Map(&from[0].x, 3, state.range(0)), Map(&to[0].x, 3, state.range(0)), false);
    benchmark::DoNotOptimize(transform.data());
  }
  bench::countSamples(state, state.range(0));
}
BENCHMARK(BM_RigidTransform_EigenUmeyama)->Arg(kFew)->Arg(kMany)->Unit(benchmark::kMicrosecond);

void BM_RigidTransform_Apply(benchmark::State& state) {
  const Points from = randomPoints(kMany);
  const Points to = moved(from);
  cv::Mat rotation;
  cv::Mat translation;
  cv::Point3_<double> center1;
  cv::Point3_<double> center2;
  caculateRT(from, to, rotation, translation, center1, center2);
  Points out(from.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < from.size(); ++i) {
      pointRT(rotation, translation, center1, center2, from[i], out[i]);
    }
    benchmark::ClobberMemory();
  }
  bench::countSamples(state, kMany);
}
BENCHMARK(BM_RigidTransform_Apply)->Unit(benchmark::kMicrosecond);

}  // namespace
