#include "scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "bench.h"
#include "noise.h"

namespace examples {
namespace {

constexpr int kSamples = 1200;
constexpr double kLineStep = 0.5;
constexpr double kPtStep = 0.25;

// Where the light comes from and where the camera sits, as run per rise.
constexpr double kStandOff = 650.0;
constexpr double kCameraLean = 0.3;

constexpr double kNoise = 0.045;
constexpr double kResolution = 0.001;
constexpr double kDropouts = 0.003;
constexpr double kFalseHeights = 0.0015;

double xOf(int line) {
  return kLineStep * line;
}

double yOf(int sample) {
  return kPtStep * sample;
}

/// The true surface under every sample, without the sensor's weaknesses.
class Surface {
 public:
  Surface(const Bench& bench, Progress& progress) {
    z_.resize(kSceneLines, std::vector<double>(kSamples));
    cv::parallel_for_({0, kSceneLines}, [&](const cv::Range& lines) {
      for (int l = lines.start; l < lines.end; ++l) {
        for (int i = 0; i < kSamples; ++i) {
          row(l)[cell(i)] = bench.surfaceAt(xOf(l), yOf(i));
        }
        progress.advance();
      }
    });
  }

  [[nodiscard]] double at(int line, int sample) const {
    return z_[cell(line)][cell(sample)];
  }

  /// Whether nothing stands between a sample and what lies `run` per unit of height away.
  [[nodiscard]] bool isClear(int line, int sample, double runX, double runY) const {
    constexpr double kClearance = 0.3;
    const double z = at(line, sample);
    for (double rise = 1.0; rise < Bench::kTallest; rise += 1.0) {
      const int l = line + static_cast<int>(std::lround(rise * runX / kLineStep));
      const int i = sample + static_cast<int>(std::lround(rise * runY / kPtStep));
      if (l < 0 || l >= kSceneLines || i < 0 || i >= kSamples) {
        return true;
      }
      if (at(l, i) > z + rise + kClearance) {
        return false;
      }
    }
    return true;
  }

 private:
  static std::size_t cell(int index) {
    return static_cast<std::size_t>(index);
  }
  std::vector<double>& row(int line) {
    return z_[cell(line)];
  }

  std::vector<std::vector<double>> z_;
};

/// Whether the laser, over the middle of the line, reaches a sample and the camera sees it there.
bool isSeen(const Surface& surface, int line, int sample) {
  const double lean = (yOf(kSamples / 2) - yOf(sample)) / kStandOff;
  return surface.isClear(line, sample, 0.0, lean) &&
         surface.isClear(line, sample, -kCameraLean, lean);
}

/// Patches of false height that a mirroring face throws into the view.
bool isGhost(double x, double y) {
  constexpr double kRadius = 3.5;
  const std::array<Spot, 4> ghosts = {Spot{165.0, 170.0}, Spot{262.0, 187.0}, Spot{363.0, 78.0},
                                      Spot{38.0, 96.0}};
  return std::any_of(ghosts.begin(), ghosts.end(),
                     [&](const Spot& g) { return std::hypot(x - g.u, 0.6 * (y - g.v)) < kRadius; });
}

/// Adds what a sensor does to the true heights of one line.
Line senseLine(const Surface& surface, int line) {
  Noise noise(static_cast<std::uint64_t>(line));
  Line samples(kSamples);
  int falseLeft = 0;
  double falseBy = 0.0;
  for (int i = 0; i < kSamples; ++i) {
    const bool isDropout = noise.chance(kDropouts);
    if (noise.chance(kFalseHeights)) {
      falseLeft = 1 + static_cast<int>(3.0 * noise.unit());
      falseBy = (noise.chance(0.5) ? 1.0 : -1.0) * (4.0 + 26.0 * noise.unit());
    }
    double z = surface.at(line, i) + kNoise * noise.bell();
    z += falseLeft > 0 ? falseBy : 0.0;
    z += isGhost(xOf(line), yOf(i)) ? 95.0 : 0.0;
    falseLeft = std::max(falseLeft - 1, 0);
    const bool isLost = isDropout || !isSeen(surface, line, i);
    // A sensor tells heights in steps, in single precision.
    const auto told = static_cast<float>(kResolution * std::round(z / kResolution));
    samples[static_cast<std::size_t>(i)] = {
        i, {xOf(line), yOf(i), isLost ? 0.0 : static_cast<double>(told)}};
  }
  return samples;
}

}  // namespace

Scene makeScene(Progress& progress) {
  const Bench bench;
  const Surface surface(bench, progress);
  Scene scene = {Scan(kSceneLines), bench.tiltDegrees()};
  cv::parallel_for_({0, kSceneLines}, [&](const cv::Range& lines) {
    for (int l = lines.start; l < lines.end; ++l) {
      scene.scan[static_cast<std::size_t>(l)] = senseLine(surface, l);
    }
  });
  return scene;
}

}  // namespace examples
