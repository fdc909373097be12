#include <cmath>

#include <scanline/geometry.h>
#include "bench_scan.h"

namespace {

constexpr int kFitPoints = 1000;

/// Points of an arc with noise, so that no fit is exact.
std::vector<STesk3DPoint> arcPoints() {
  bench::Noise noise;
  std::vector<STesk3DPoint> points;
  for (int i = 0; i < kFitPoints; ++i) {
    const double angle = 0.001 * i;
    points.push_back({100.0 * std::cos(angle) + 0.01 * noise.next(),
                      100.0 * std::sin(angle) + 0.01 * noise.next(), 500.0 + 0.1 * i});
  }
  return points;
}

void BM_Fit_Line(benchmark::State& state) {
  std::vector<STesk3DPoint> points = arcPoints();
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  for (auto _ : state) {
    lineFitting_abc(points, &a, &b, &c);
    benchmark::DoNotOptimize(a + b + c);
  }
  bench::countSamples(state, kFitPoints);
}
BENCHMARK(BM_Fit_Line);

/// The same fit with plain sums, for comparison.
void BM_Fit_LinePlain(benchmark::State& state) {
  const std::vector<STesk3DPoint> points = arcPoints();
  for (auto _ : state) {
    double sumX = 0.0;
    double sumY = 0.0;
    double sumXX = 0.0;
    double sumXY = 0.0;
    for (const STesk3DPoint& point : points) {
      sumX += point.x;
      sumY += point.y;
      sumXX += point.x * point.x;
      sumXY += point.x * point.y;
    }
    const double d = kFitPoints * sumXX - sumX * sumX;
    benchmark::DoNotOptimize((kFitPoints * sumXY - sumX * sumY) / d);
    benchmark::DoNotOptimize((sumY * sumXX - sumXY * sumX) / d);
  }
  bench::countSamples(state, kFitPoints);
}
BENCHMARK(BM_Fit_LinePlain);

void BM_Fit_Circle(benchmark::State& state) {
  const std::vector<STesk3DPoint> points = arcPoints();
  STesk3DPoint center = {};
  double radius = 0.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(fitCircleByLeastSquare(points, center, radius));
  }
  bench::countSamples(state, kFitPoints);
}
BENCHMARK(BM_Fit_Circle);

void BM_Fit_Parabola(benchmark::State& state) {
  std::vector<cv::Point_<double>> points;
  for (const STesk3DPoint& point : arcPoints()) {
    points.emplace_back(point.x, point.y);
  }
  double a = 0.0;
  double b = 0.0;
  double c = 0.0;
  double mse = 0.0;
  double maxError = 0.0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(leastSquareParabolaFitEigen(points, a, b, c, mse, maxError));
  }
  bench::countSamples(state, kFitPoints);
}
BENCHMARK(BM_Fit_Parabola);

void BM_Fit_Line3D(benchmark::State& state) {
  const std::vector<STesk3DPoint> points = arcPoints();
  STesk3DPoint center = {};
  STesk3DPoint direction = {};
  for (auto _ : state) {
    benchmark::DoNotOptimize(fitLine3DLeastSquares(points, center, direction));
  }
  bench::countSamples(state, kFitPoints);
}
BENCHMARK(BM_Fit_Line3D);

void BM_DrawLine(benchmark::State& state) {
  constexpr int kPixels = 1000;
  std::vector<STesk2DPoint> pixels;
  for (auto _ : state) {
    pixels.clear();
    drawLine(0, 0, kPixels - 1, kPixels / 3, pixels);
    benchmark::DoNotOptimize(pixels.data());
  }
  bench::countSamples(state, kPixels);
}
BENCHMARK(BM_DrawLine);

}  // namespace
