#pragma once

/// The calls whose cost scripts/cost.py counts, each on the worst input known for it.

#include <cstddef>
#include <functional>
#include <vector>

#include <scanline/scan_records.h>

namespace cost {

/// How the cost may grow when the size doubles: not at all, or about by a factor of 2 or of 4.
enum class Growth { kNone, kLinear, kQuadratic };

struct Case {
  const char* name;  ///< room/function/input
  Growth growth;
  int size;  ///< The smallest of the three sizes.
  /// Makes the input of a size and returns the call that is measured.
  std::function<std::function<void()>(int size)> prepare;
};

/// A limit or a length that is greater than any line of the cases.
constexpr double kBeyond = 1e9;

using Line = std::vector<STesk3DPosition>;
using Scan = std::vector<Line>;

/// A line whose sample i is `point(i)`.
template <typename Point>
Line makeLine(int count, Point point) {
  Line line;
  for (int i = 0; i < count; ++i) {
    line.push_back({i, point(i)});
  }
  return line;
}

/// A line at unit spacing whose sample i has the height `z(i)`.
template <typename Height>
Line profile(int count, Height z) {
  return makeLine(count, [z](int i) { return STesk3DPoint{0.0, 1.0 * i, 1.0 * z(i)}; });
}

inline std::vector<STesk3DLaserLine> pointerForm(Scan& scan) {
  std::vector<STesk3DLaserLine> lines;
  for (Line& line : scan) {
    lines.push_back({line.data(), static_cast<int>(line.size()), 0});
  }
  return lines;
}

std::vector<Case> lineCases();
std::vector<Case> cornerCases();
std::vector<Case> shapeCases();
std::vector<Case> treeCases();
std::vector<Case> mapCases();

}  // namespace cost
