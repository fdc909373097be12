#include "roads/gap_floor.h"

#include <algorithm>
#include <cmath>

namespace program {
namespace {

const STesk3DPosition& at(const Line& line, int index) {
  return line[static_cast<std::size_t>(index)];
}

bool isInside(const Line& line, int index) {
  return index >= 0 && index < static_cast<int>(line.size());
}

/// The median z of the edge and the few samples outward of it, which noise moves less than one.
double rimLevel(const Line& line, int edge, int outward) {
  constexpr std::size_t kEnough = 5;
  std::vector<double> z;
  for (int i = edge; isInside(line, i) && z.size() < kEnough; i += outward) {
    if (isMeasured(at(line, i))) {
      z.push_back(at(line, i).pt3D.z);
    }
  }
  return quantile(z, 0.5);
}

/// A straight line z = slope * (y - y0) + level.
struct Rim {
  double y0;
  double slope;
  double level;

  /// How much deeper than the rim a sample lies.
  [[nodiscard]] double below(const STesk3DPosition& sample) const {
    return sample.pt3D.z - level - slope * (sample.pt3D.y - y0);
  }
};

/// Fits the samples outward of an edge; nothing if they are too few or not straight.
std::optional<Rim> fitRim(const Line& line, int edge, int outward, const GapParams& params) {
  constexpr double kReach = 1.5;
  constexpr std::size_t kFewest = 4;
  const double y0 = at(line, edge).pt3D.y;
  std::vector<STesk3DPoint> points;
  for (int i = edge; isInside(line, i); i += outward) {
    const STesk3DPoint& p = at(line, i).pt3D;
    if (std::abs(p.y - y0) > kReach * params.corner.scale) {
      break;
    }
    if (isMeasured(at(line, i))) {
      points.push_back({p.y - y0, p.z, 0.0});
    }
  }
  if (points.size() < kFewest) {
    return std::nullopt;
  }
  Rim rim = {y0, 0.0, 0.0};
  lineFitting(points, &rim.slope, &rim.level);
  const bool isStraight = std::all_of(points.begin(), points.end(), [&](const STesk3DPoint& p) {
    return std::abs(p.y - rim.level - rim.slope * p.x) <= params.rimBand;
  });
  return isStraight ? std::optional(rim) : std::nullopt;
}

/// Corners are only as exact as their arms are short: moves an edge inward, at most to `end`, as
/// long as the samples continue the rim.
int movedToRimEnd(const Line& line, int edge, int end, int outward, const GapParams& params) {
  const std::optional<Rim> rim = fitRim(line, edge, outward, params);
  if (!rim) {
    return edge;
  }
  int moved = edge;
  for (int i = edge; i != end; i -= outward) {
    if (!isMeasured(at(line, i))) {
      continue;
    }
    if (rim->below(at(line, i)) > params.rimBand) {
      break;
    }
    moved = i;
  }
  return moved;
}

std::vector<double> zBetween(const Line& line, int first, int last) {
  std::vector<double> z;
  for (int i = first + 1; i < last; ++i) {
    if (isMeasured(at(line, i))) {
      z.push_back(at(line, i).pt3D.z);
    }
  }
  return z;
}

/// The median z of the samples near the deepest place, flanks left out.
double floorLevel(std::vector<double> z, double rim) {
  constexpr double kNearDeepest = 0.8;
  const double deepest = quantile(z, 0.95);
  z.erase(std::remove_if(z.begin(), z.end(),
                         [&](double one) { return one < rim + kNearDeepest * (deepest - rim); }),
          z.end());
  return quantile(z, 0.5);
}

std::optional<Gap> withinLimits(const Gap& gap, const STeskRangeD& limits) {
  const bool fits = gap.width > limits.min && gap.width < limits.max;
  return fits ? std::optional(gap) : std::nullopt;
}

Gap gapBetween(const Line& line, int lineIdx, int first, int last) {
  const STesk3DPoint& a = at(line, first).pt3D;
  const STesk3DPoint& b = at(line, last).pt3D;
  return {lineIdx, {{{first, a}, {last, b}}}, compute2DLen(a, b), std::nan(""), std::nan(""), true};
}

/// Whether the rim ends at a wall: the next sample lies at half of the depth or deeper.
bool endsAtWall(const Line& line, const GapEdge& edge, int inward, double depth) {
  for (int i = edge.sample + inward; isInside(line, i); i += inward) {
    if (isMeasured(at(line, i))) {
      return at(line, i).pt3D.z - edge.at.z > 0.5 * depth;
    }
  }
  return false;
}

/// A wall stands anywhere between the last sample of its rim and the next one: in the mean half a
/// spacing farther inward than the edge.
double widthOfWalls(double width, int walls, double spacing) {
  return std::max(width - 0.5 * spacing * walls, 0.0);
}

}  // namespace

std::optional<Gap> gapWithFloor(
    const Line& line, int lineIdx, int first, int last, const GapParams& params) {
  std::vector<double> z = zBetween(line, first, last);
  const double rim = std::max(rimLevel(line, first, -1), rimLevel(line, last, 1));
  if (z.empty() || quantile(z, 0.5) <= rim + params.minDepth) {
    return std::nullopt;
  }
  const int middle = (first + last) / 2;
  const int start = movedToRimEnd(line, first, middle, -1, params);
  const int end = movedToRimEnd(line, last, middle, 1, params);
  Gap gap = gapBetween(line, lineIdx, start, end);
  gap.medianDepth = quantile(z, 0.5) - rim;
  gap.depth = floorLevel(std::move(z), rim) - rim;
  const int walls = static_cast<int>(endsAtWall(line, gap.edges[0], 1, gap.depth)) +
                    static_cast<int>(endsAtWall(line, gap.edges[1], -1, gap.depth));
  gap.width = widthOfWalls(gap.width, walls, params.sampleSpacing);
  gap.isOpen = false;
  return withinLimits(gap, params.width);
}

std::optional<Gap> openGap(
    const Line& line, int lineIdx, int first, int last, const GapParams& params) {
  const double step = rimLevel(line, first, -1) - rimLevel(line, last, 1);
  if (!(std::abs(step) <= params.rimLevel)) {
    return std::nullopt;
  }
  Gap gap = gapBetween(line, lineIdx, first, last);
  gap.width = widthOfWalls(gap.width, 2, params.sampleSpacing);
  return withinLimits(gap, params.width);
}

}  // namespace program
