#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include "base/scan.h"

namespace program::test {

/// Numbers that look random and are the same in every run.
class Noise {
 public:
  /// About a normal distribution with a deviation of 1.
  double bell() {
    double sum = 0.0;
    for (int i = 0; i < 12; ++i) {
      sum += uniform();
    }
    return sum - 6.0;
  }
  /// From 0.0 to below 1.0.
  double uniform() {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<double>(state_ >> 11) / 9007199254740992.0;
  }

 private:
  std::uint64_t state_ = 1;
};

/// How a made scan is sampled.
struct Sampling {
  int lines = 60;
  int samples = 400;
  double lineSpacing = 0.5;
  double sampleSpacing = 0.1;
  double noise = 0.02;
  double dropouts = 0.004;
};

/// Scans heights from a sensor 250 above; `heightAt(x, y)` returns an std::optional<double> or a
/// double, nothing where there is a hole.
template <typename Height>
Scan makeScan(const Sampling& sampling, Height heightAt) {
  constexpr double kSensor = 250.0;
  Noise noise;
  Scan scan(static_cast<std::size_t>(sampling.lines));
  for (int l = 0; l < sampling.lines; ++l) {
    for (int i = 0; i < sampling.samples; ++i) {
      const double x = sampling.lineSpacing * l;
      const double y = sampling.sampleSpacing * i;
      const std::optional<double> height = heightAt(x, y);
      const double z = height ? kSensor - *height + sampling.noise * noise.bell() : 0.0;
      const bool isLost = noise.uniform() < sampling.dropouts;
      scan[static_cast<std::size_t>(l)].push_back({0, {x, y, isLost ? 0.0 : z}});
    }
  }
  return scan;
}

}  // namespace program::test
