#pragma once

#include <cstdint>

namespace examples {

/// A small generator of its own (SplitMix64), so that a scene is the same on every platform.
class Noise {
 public:
  explicit Noise(std::uint64_t seed) : state_(seed) {}

  /// Uniform from 0.0 to below 1.0.
  double unit() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
    z ^= z >> 31U;
    return static_cast<double>(z >> 11U) / 9007199254740992.0;
  }

  bool chance(double probability) {
    return unit() < probability;
  }

  /// Bell-shaped around 0.0 with a standard deviation of 1.0, within plus and minus 3.5.
  double bell() {
    // Four uniform values have a variance of 4 / 12.
    constexpr double kToUnitDeviation = 1.7320508075688772;
    return (unit() + unit() + unit() + unit() - 2.0) * kToUnitDeviation;
  }

 private:
  std::uint64_t state_;
};

}  // namespace examples
