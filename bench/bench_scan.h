#pragma once

/// The scan that the benchmarks share, and the counters that they report.

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <vector>

#include <scanline/scan_records.h>

namespace bench {

using Line = std::vector<STesk3DPosition>;
using Scan = std::vector<Line>;

constexpr int kLines = 1000;
constexpr int kSamples = 2048;
constexpr std::int64_t kScanSamples = std::int64_t{kLines} * kSamples;

/// A small random generator that is the same on every platform.
class Noise {
 public:
  /// Uniform in -1.0 to 1.0.
  double next() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state_ >> 11U) / 4503599627370496.0 - 1.0;
  }

 private:
  std::uint64_t state_ = 1;
};

/// z of the scene: a tilted table with blocks, which are `pitch` wide and as far apart.
inline double sceneHeight(double x, double y, double pitch) {
  const bool onBlock = static_cast<int>(std::floor(y / pitch)) % 2 == 1;
  return 500.0 + 0.02 * x - 0.01 * y - (onBlock ? 40.0 : 0.0);
}

/// 1000 lines of samples 0.2 apart: blocks on a tilted table, noise and 3 % dropouts.
inline Scan makeScan(int edges = 40, int samples = kSamples) {
  const double pitch = 0.2 * samples / edges;
  Noise noise;
  Scan scan(kLines, Line(samples));
  for (int l = 0; l < kLines; ++l) {
    for (int i = 0; i < samples; ++i) {
      const double x = 0.5 * l;
      const double y = 0.2 * i;
      const bool dropout = noise.next() > 0.94;
      scan[l][i] = {i, {x, y, dropout ? 0.0 : sceneHeight(x, y, pitch) + 0.03 * noise.next()}};
    }
  }
  return scan;
}

/// The scan with 40 edges per line, made once.
inline const Scan& sharedScan() {
  static const Scan scan = makeScan();
  return scan;
}

inline std::vector<STesk3DLaserLine> pointerForm(Scan& scan) {
  std::vector<STesk3DLaserLine> lines;
  lines.reserve(scan.size());
  for (Line& line : scan) {
    lines.push_back({line.data(), static_cast<int>(line.size()), 0});
  }
  return lines;
}

/// Reports the time per sample in addition to that of an iteration.
inline void countSamples(benchmark::State& state, std::int64_t perIteration = kScanSamples) {
  state.counters["per_sample"] = benchmark::Counter(
      static_cast<double>(perIteration),
      benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace bench
