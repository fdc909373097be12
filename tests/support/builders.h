#pragma once

/// Builders of samples, lines and scans for the tests, and short forms of results.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

namespace build {

using Line = std::vector<STesk3DPosition>;
using Scan = std::vector<Line>;

inline STesk3DPosition sample(double x, double y, double z, int idx = 0) {
  return {idx, {x, y, z}};
}

/// A line at `x` with the given z, its samples `step` apart in y from 0.0.
inline Line lineOfZ(const std::vector<double>& z, double x = 0.0, double step = 1.0) {
  Line line;
  for (double value : z) {
    line.push_back(sample(x, step * static_cast<double>(line.size()), value));
  }
  return line;
}

/// A line of `count` samples, `step` apart in y from 0.0, with z = `profile(y)`.
inline Line profileLine(int count,
                        double step,
                        const std::function<double(double)>& profile,
                        double x = 0.0) {
  Line line;
  for (int i = 0; i < count; ++i) {
    const double y = step * i;
    line.push_back(sample(x, y, profile(y)));
  }
  return line;
}

/// A scan of `lines` x `samples` at unit spacing with z = `height(x, y)`.
inline Scan surfaceScan(int lines,
                        int samples,
                        const std::function<double(double, double)>& height) {
  Scan scan;
  for (int l = 0; l < lines; ++l) {
    scan.push_back(profileLine(
        samples, 1.0, [&](double y) { return height(l, y); }, l));
  }
  return scan;
}

/// The pointer form of a scan. The samples still belong to `scan`.
inline std::vector<STesk3DLaserLine> pointerForm(Scan& scan) {
  std::vector<STesk3DLaserLine> lines;
  for (Line& line : scan) {
    lines.push_back({line.data(), static_cast<int>(line.size()), 0});
  }
  return lines;
}

/// Random numbers that are the same on every platform.
class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}

  /// An integer from `low` to `high`, inclusive.
  int whole(int low, int high) {
    const unsigned count = static_cast<unsigned>(high) - static_cast<unsigned>(low) + 1;
    return static_cast<int>(static_cast<unsigned>(low) + engine_() % count);
  }
  bool chance(int percent) {
    return whole(1, 100) <= percent;
  }
  /// A multiple of `step` above `low`, up to `high`. One in eight lies off the grid.
  double grid(double low, double high, double step = 0.25) {
    const double value = low + step * whole(0, static_cast<int>((high - low) / step));
    return chance(12) ? value + 0.001 * whole(1, 99) : value;
  }
  template <typename T>
  T pick(std::initializer_list<T> choices) {
    return choices.begin()[whole(0, static_cast<int>(choices.size()) - 1)];
  }

 private:
  std::mt19937 engine_;
};

/// A line of flat, sloping, arched, noisy and missing stretches, with steps in z and gaps in y
/// between them. Most of its values lie on a grid of 0.25, so that ties are frequent.
inline Line randomLine(Random& random, int count, double x) {
  const double step = random.pick({0.5, 1.0, 1.0, 1.25});
  double y = random.grid(3.0, 9.0);
  double z = random.grid(30.0, 50.0);
  Line line;
  while (static_cast<int>(line.size()) < count) {
    const int kind = random.whole(0, 9);
    const int length = random.whole(1, 12);
    const double slope = random.pick({-4.0, -2.0, -1.0, -0.25, 0.25, 0.5, 1.0, 3.0});
    z = std::clamp(z + (random.chance(50) ? random.whole(-14, 14) : 0), 20.0, 80.0);
    y += random.chance(15) ? random.grid(1.0, 9.0) : 0.0;
    for (int i = 0; i < length && static_cast<int>(line.size()) < count; ++i) {
      const double arc = i * (length - 1 - i) * 0.25;
      const double hole = random.pick({0.0, 0.0, 0.0, 0.0001, 0.00005, -1.0});
      const double zs[] = {z, z, hole, z + 0.25 * random.whole(-4, 4), z + arc, z - arc};
      z += kind >= 6 ? (kind == 9 && i > length / 2 ? -slope : slope) : 0.0;
      line.push_back(sample(x, y, kind >= 6 ? z : zs[kind], static_cast<int>(line.size())));
      y += step;
    }
  }
  return line;
}

/// A scan whose lines mostly repeat the line before them, with noise, holes and a slope in x.
inline Scan randomScan(Random& random, int lines, int samples) {
  const double step = random.pick({0.5, 1.0, 2.0});
  const double x = random.grid(2.0, 7.0);
  const double slope = random.pick({-0.5, 0.0, 0.25});
  Scan scan;
  for (int l = 0; l < lines; ++l) {
    scan.push_back(randomLine(random, samples, x + l * step));
    for (int i = 0; l > 0 && i < samples && !random.chance(2); ++i) {
      STesk3DPoint& point = scan[l][i].pt3D;
      const STesk3DPoint& before = scan[l - 1][i].pt3D;
      const double z = before.z + slope + (random.chance(30) ? 0.25 * random.whole(-2, 2) : 0.0);
      point = {point.x, before.y, before.z > 1.0 && !random.chance(4) ? z : 0.0};
    }
  }
  return scan;
}

/// A scan of a plane near z = 55 with boxes, holes and stray samples.
inline Scan planeScan(Random& random, int lines, int samples) {
  const double a = random.pick({-0.25, 0.0, 0.125});
  const double b = random.pick({-0.125, 0.0, 0.25});
  Scan scan;
  for (int l = 0; l < lines; ++l) {
    const int box = random.chance(30) ? random.whole(0, samples) : samples;
    const double x = 4.5 + 2.0 * l;
    scan.push_back(profileLine(
        samples, 0.5,
        [&](double y) {
          const double lift = y * 2.0 >= box && y * 2.0 < box + 6.0 ? -12.5 : 0.0;
          const double stray = random.chance(3) ? -30.0 : 0.25 * random.whole(-1, 1);
          return random.chance(4) ? 0.0 : 55.0 + a * x + b * y + lift + stray;
        },
        x));
  }
  return scan;
}

/// A scan whose lines mostly end on ground that falls steeply towards greater y.
inline Scan groundScan(Random& random, int lines, int samples) {
  const double slope = random.pick({-3.0, -2.5, 2.0});
  Scan scan;
  for (int l = 0; l < lines; ++l) {
    const double top = random.pick({2.0, 3.0, 4.5});
    const double flat = random.chance(20) ? 0.0 : 1.0;
    scan.push_back(profileLine(
        samples, 0.5,
        [&](double y) {
          const double noise = 0.25 * random.whole(-1, 1);
          return random.chance(4) ? 0.0
                                  : 70.0 + 0.5 * l + flat * slope * std::max(0.0, y - top) + noise;
        },
        3.5 + l));
  }
  return scan;
}

inline std::vector<int> stampsOf(const Line& line) {
  std::vector<int> stamps;
  for (const STesk3DPosition& sample : line) {
    stamps.push_back(sample.nPointIdx);
  }
  return stamps;
}

/// All bits of a line, except for the bits of NaNs, to compare and to print.
inline std::string text(const Line& line) {
  const auto bits = [](double value) { return std::isnan(value) ? std::nan("") : value; };
  std::ostringstream out;
  for (const auto& [idx, pt] : line) {
    out << std::hexfloat << idx << ": " << bits(pt.x) << ' ' << bits(pt.y) << ' ' << bits(pt.z)
        << '\n';
  }
  return out.str();
}

/// A feature on a line at x = `line`.
inline SQO_basicFeature1D feature(
    int line, double y, int type = FEATURE_JUMP_RISE, double z = 10.0, double value = 1.0) {
  return {type, {line, 0}, {static_cast<double>(line), y, z}, value};
}

/// Each position as "x,y ".
inline std::string text(const std::vector<STesk2DPoint>& positions) {
  std::string out;
  for (const STesk2DPoint& at : positions) {
    out += std::to_string(at.x) + ',' + std::to_string(at.y) + ' ';
  }
  return out;
}

inline void expectNear(const std::vector<double>& values,
                       const std::vector<double>& expected,
                       double tolerance) {
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_NEAR(values[i], expected[i], tolerance) << i;
  }
}

/// Type and sample index of each feature.
using Found = std::vector<std::pair<int, int>>;

inline Found found(const std::vector<SQO_basicFeature1D>& features) {
  Found result;
  for (const SQO_basicFeature1D& f : features) {
    result.emplace_back(f.featureType, f.jumpPos2D.y);
  }
  return result;
}

}  // namespace build
