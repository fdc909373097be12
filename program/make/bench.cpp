#include <algorithm>
#include <array>
#include <cmath>

#include "base/noise.h"
#include "make/bench_solid.h"

namespace program {
namespace {

constexpr int kSamples = 1200;
constexpr double kLineStep = 0.5;
constexpr double kSampleStep = 0.25;

/// Where the camera sits, as run per rise.
constexpr double kCameraLean = 0.3;

constexpr double kResolution = 0.001;
constexpr double kDropouts = 0.003;
constexpr double kFalseDistances = 0.0015;

using Distances = std::vector<std::vector<double>>;

std::size_t index(int i) {
  return static_cast<std::size_t>(i);
}

/// The true surface at every sample.
Distances surfaceOf(const BenchSolid& bench, Progress& progress) {
  Distances z(kBenchLines, std::vector<double>(kSamples));
  cv::parallel_for_({0, kBenchLines}, [&](const cv::Range& lines) {
    for (int l = lines.start; l < lines.end; ++l) {
      for (int i = 0; i < kSamples; ++i) {
        z[index(l)][index(i)] = bench.surfaceAt(kLineStep * l, kSampleStep * i);
      }
      progress.advance();
    }
  });
  return z;
}

/// Whether nothing stands between a sample and what lies `run` per unit of height away.
bool isClear(const Distances& surface, int line, int sample, double runX, double runY) {
  constexpr double kClearance = 0.3;
  const double z = surface[index(line)][index(sample)];
  for (double rise = 1.0; rise < BenchSolid::kTallest; rise += 1.0) {
    const int l = line + static_cast<int>(std::lround(rise * runX / kLineStep));
    const int i = sample + static_cast<int>(std::lround(rise * runY / kSampleStep));
    if (l < 0 || l >= kBenchLines || i < 0 || i >= kSamples) {
      return true;
    }
    if (surface[index(l)][index(i)] < z - rise - kClearance) {
      return false;
    }
  }
  return true;
}

/// Whether the laser, over the middle of the line, reaches a sample and the camera sees it there.
bool isSeen(const Distances& surface, int line, int sample) {
  const double lean = kSampleStep * (0.5 * kSamples - sample) / BenchSolid::kDistance;
  return isClear(surface, line, sample, 0.0, lean) &&
         isClear(surface, line, sample, -kCameraLean, lean);
}

/// Patches of false distance that a mirroring face throws into the view.
bool isGhost(double x, double y) {
  constexpr double kRadius = 3.5;
  constexpr std::array<Spot, 4> kGhosts = {Spot{165.0, 170.0}, Spot{262.0, 187.0},
                                           Spot{363.0, 78.0}, Spot{38.0, 96.0}};
  return std::any_of(kGhosts.begin(), kGhosts.end(),
                     [&](const Spot& g) { return std::hypot(x - g.u, 0.6 * (y - g.v)) < kRadius; });
}

/// Adds what a sensor does to the true distances of one line.
Line sensedLine(const Distances& surface, int line, const MakeParams& params) {
  constexpr double kGhostRise = 95.0;
  Noise noise(params.seed * 1'000'003U + static_cast<std::uint64_t>(line));
  Line samples(kSamples);
  int falseLeft = 0;
  double falseBy = 0.0;
  for (int i = 0; i < kSamples; ++i) {
    const double x = kLineStep * line;
    const double y = kSampleStep * i;
    const bool isDropout = noise.chance(kDropouts);
    if (noise.chance(kFalseDistances)) {
      falseLeft = 1 + static_cast<int>(3.0 * noise.unit());
      falseBy = (noise.chance(0.5) ? 1.0 : -1.0) * (4.0 + 26.0 * noise.unit());
    }
    double z = surface[index(line)][index(i)] + params.noise * noise.bell();
    z += falseLeft > 0 ? falseBy : 0.0;
    z -= isGhost(x, y) ? kGhostRise : 0.0;
    falseLeft = std::max(falseLeft - 1, 0);
    const bool isLost = isDropout || !isSeen(surface, line, i);
    samples[index(i)] = {i, {x, y, isLost ? 0.0 : kResolution * std::round(z / kResolution)}};
  }
  return samples;
}

}  // namespace

MadeScan makeBench(const MakeParams& params, Progress& progress) {
  const BenchSolid bench;
  const Distances surface = surfaceOf(bench, progress);
  MadeScan made;
  made.scan.resize(kBenchLines);
  forEachLine(made.scan, [&](std::size_t l) {
    made.scan[l] = sensedLine(surface, static_cast<int>(l), params);
  });
  made.plane = bench.plane();
  made.objects = bench.objects();
  return made;
}

}  // namespace program
