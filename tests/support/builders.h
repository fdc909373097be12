#pragma once

/// Small builders of samples, lines and scans for the tests, and a short form of what is found.

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
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

/// A line at `x` whose samples stand 1.0 apart in y (from 0.0), with the given z; 0.0 is a hole.
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

/// The pointer form of a scan that stays owned by `scan`.
inline std::vector<STesk3DLaserLine> pointerForm(Scan& scan) {
  std::vector<STesk3DLaserLine> lines;
  for (Line& line : scan) {
    lines.push_back({line.data(), static_cast<int>(line.size()), 0});
  }
  return lines;
}

inline std::vector<int> stampsOf(const Line& line) {
  std::vector<int> stamps;
  for (const STesk3DPosition& sample : line) {
    stamps.push_back(sample.nPointIdx);
  }
  return stamps;
}

/// Every bit of a line but the sign of its NaN, to compare and to read.
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

/// The positions as "x,y ".
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

/// Type and sample of each feature.
using Found = std::vector<std::pair<int, int>>;

inline Found found(const std::vector<SQO_basicFeature1D>& features) {
  Found result;
  for (const SQO_basicFeature1D& f : features) {
    result.emplace_back(f.featureType, f.jumpPos2D.y);
  }
  return result;
}

}  // namespace build
