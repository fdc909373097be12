#pragma once

/// The calls whose cost scripts/cost.py counts, each on the worst input known for it.

#include <cstddef>
#include <functional>
#include <vector>

#include <scanline/scan_records.h>

namespace cost {

/// What doubling the size may do to the cost: nothing, or multiply it by all but 2 or by 4.
enum class Growth { kNone, kLinear, kQuadratic };

struct Case {
  const char* name;  ///< room/function/input
  Growth growth;
  int size;  ///< The smallest of the three sizes.
  /// Makes the input of a size; the call that it returns is what is measured.
  std::function<std::function<void()>(int size)> prepare;
};

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
