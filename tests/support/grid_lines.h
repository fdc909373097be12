#pragma once

/// Random lines whose values come from a small grid, so that ties and values exactly at a limit are
/// frequent.

#include <algorithm>
#include <cmath>
#include <vector>

#include "builders.h"

namespace build {

struct GridLines : Random {
  using Random::Random;

  int below(int limit) {
    return whole(0, limit - 1);
  }

  double pick(const std::vector<double>& values) {
    return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
  }

  /// Up to `maxCount` samples. From each to the next z grows by one of `rises`. About one sample in
  /// ten has a z that is 0, negative, exactly 0.0001, infinite or NaN. Stamps are random.
  Line line(int maxCount, const std::vector<double>& rises) {
    Line line;
    STesk3DPoint at = {5.0, pick({-40.0, 60.0}), 60.0};
    for (int count = below(maxCount + 1); count > 0; --count) {
      at.x = 5.0 + 0.25 * below(3);
      at.y += below(9) > 0 ? 1.0 : pick({-1.0, 0.0, 0.5, 3.0, 6.0, NAN});
      at.z = std::max(1.0, at.z + pick(rises));
      const double z = below(11) > 0 ? at.z : pick({0.0, 0.0, 0.0001, -3.0, NAN, HUGE_VAL});
      line.push_back({below(20), {at.x, at.y, z}});
      at.y = std::isnan(at.y) ? 0.0 : at.y;
    }
    return line;
  }
};

/// All bits of the features of line 7, whose values must be 0.
inline std::string text(const std::vector<SQO_basicFeature1D>& features) {
  Line line;
  for (const SQO_basicFeature1D& f : features) {
    EXPECT_TRUE(f.jumpPos2D.x == 7 && f.featureValue == 0.0);
    line.push_back({100 * f.jumpPos2D.y + f.featureType, f.jumpPos});
  }
  return text(line);
}

}  // namespace build
