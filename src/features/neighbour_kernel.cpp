// Searches the neighbours of all points of a line, eight candidates at a time.
#include "features/neighbour_kernel.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "records/wide_kernel.h"

namespace scanline::detail {
namespace {

constexpr int kLanes = 16;
static_assert(kLanes <= PaddedColumn::kPadding);

/// How many points a walk looks at before it is given up.
constexpr int kNearby = 8 * kLanes;

/// Upper bounds of the lengths of the steps from each point to the next. With a as the greater and
/// b as the smaller coordinate of a step, its length sqrt(a^2 + b^2) is at most a + b^2 / (2 a);
/// the bound needs no root. NaN where a coordinate is not a number.
SCANLINE_WIDE_KERNEL
void boundSteps(const double* y, const double* z, int steps, double* bounds) {
  constexpr double kTiny = 1e-300;  // Keeps steps of no length from dividing 0 by 0.
  for (int i = 0; i < steps; ++i) {
    const double dy = std::abs(y[i + 1] - y[i]);
    const double dz = std::abs(z[i + 1] - z[i]);
    const bool isFlat = dy > dz;
    const double greater = isFlat ? dy : dz;
    const double smaller = isFlat ? dz : dy;
    bounds[i] = greater + 0.5 * smaller * (smaller / (greater + kTiny));
  }
}

/// Index of the lowest bit that is set.
int lowestBit(std::uint64_t bits) {
#if defined(__GNUC__)
  return __builtin_ctzll(bits);
#else
  int index = 0;
  for (; (bits & 1U) == 0; bits >>= 1U) {
    ++index;
  }
  return index;
#endif
}

/// The points from `from` on are skipped while the arc to them is too short. A point that is
/// skipped for one origin is skipped for all later ones, as their arcs to it are shorter still; so
/// `start` never moves back. The comparison of eight points leaves one bit for each, the nearest
/// one lowest: no branch depends on which of them is the first hit. What is read beyond the range
/// is dropped, and the padding is never a hit.
SCANLINE_WIDE_KERNEL
bool walkAll(const double* y,
             const double* z,
             const double* arcs,
             const NeighbourWalk& walk,
             int* neighbours) {
  const int step = walk.step;
  const double squaredThreshold = walk.squaredThreshold;
  const double leastArc = walk.leastArc;
  const int first = step > 0 ? walk.range.first : walk.range.last;
  const int end = step > 0 ? walk.range.last + 1 : walk.range.first - 1;
  const int blockStart = step > 0 ? 0 : 1 - kLanes;
  std::uint64_t bits[kLanes];
  for (int k = 0; k < kLanes; ++k) {
    bits[k] = std::uint64_t{1} << static_cast<unsigned>(step > 0 ? k : kLanes - 1 - k);
  }
  bool finished = true;
  int start = first;
  for (int i = first; i != end; i += step) {
    start = start == i ? i + step : start;
    while (start != end && std::abs(arcs[start] - arcs[i]) < leastArc) {
      start += step;
    }
    int found = kNoPoint;
    const int giveUp = start + step * kNearby;
    for (int j = start; (end - j) * step > 0; j += step * kLanes) {
      if (j == giveUp) {
        found = unfinishedAt(j);
        finished = false;
        break;
      }
      const double* const blockY = y + j + blockStart;
      const double* const blockZ = z + j + blockStart;
      std::uint64_t hits = 0;
      for (int k = 0; k < kLanes; ++k) {
        const double dy = blockY[k] - y[i];
        const double dz = blockZ[k] - z[i];
        hits |= dy * dy + dz * dz >= squaredThreshold ? bits[k] : 0;
      }
      if (hits != 0) {
        const int hit = j + step * lowestBit(hits);
        found = (end - hit) * step > 0 ? hit : kNoPoint;
        break;
      }
    }
    neighbours[i] = found;
  }
  return finished;
}

}  // namespace

ArcLengths::ArcLengths(const Profile& profile) : upTo(static_cast<std::size_t>(profile.size())) {
  if (upTo.empty()) {
    return;
  }
  boundSteps(profile.y.data(), profile.z.data(), profile.size() - 1, upTo.data() + 1);
  double length = 0.0;
  for (double& arc : upTo) {
    length += arc;
    arc = length;
  }
}

// With u = 2^-53 and n points: the arc between two points is at least their distance. Each bound of
// a step is low by less than 6 u of itself, the two sums by less than n u of the whole length, and
// their difference by u: together by less than (2 n + 7) u of the whole length, for which 10 n u is
// taken. The square of a distance is high by less than 4 u of itself, and the root of the threshold
// by u, for which 1e-9 is taken. That also covers the `kTiny` of each step, and all products that
// underflow, if the threshold is far above such numbers. A square that overflows reaches any
// threshold that is finite, and so does its distance. An arc that is not a number, or infinite,
// makes the whole length so and the result NaN or -infinity.
double ArcLengths::arcReaching(double squaredThreshold) const {
  constexpr double kRounding = 10.0 * 0x1p-53;
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  if (upTo.empty() || !(squaredThreshold > 1e-200 && squaredThreshold < kInfinity)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double margin = kRounding * static_cast<double>(upTo.size()) * upTo.back();
  return std::sqrt(squaredThreshold) * (1.0 - 1e-9) - margin;
}

bool findNeighbours(const Profile& profile,
                    const ArcLengths& arcs,
                    const NeighbourWalk& walk,
                    int* neighbours) {
  return walkAll(profile.y.data(), profile.z.data(), arcs.upTo.data(), walk, neighbours);
}

}  // namespace scanline::detail
