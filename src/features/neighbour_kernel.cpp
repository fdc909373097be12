// Searches the neighbours of all points of a profile, a block of points at a time.
#include "features/neighbour_kernel.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "records/wide_kernel.h"

namespace scanline::detail {
namespace {

/// How many points a block has.
constexpr int kBlock = 8;
static_assert(kBlock <= PaddedColumn::kPadding);

/// How many points a walk visits before it is given up.
constexpr int kNearby = 16 * kBlock;

/// Upper bounds of the lengths of the steps from each point to the next. With a as the greater and
/// b as the smaller coordinate of a step, its length sqrt(a^2 + b^2) is at most a + b^2 / (2 a),
/// which needs no root. NaN if a coordinate is NaN.
SCANLINE_WIDE_KERNEL
void boundSteps(const double* y, const double* z, int steps, double* bounds) {
  constexpr double kTiny = 1e-300;  // Avoids 0 / 0 in a step without length.
  for (int i = 0; i < steps; ++i) {
    const double dy = std::abs(y[i + 1] - y[i]);
    const double dz = std::abs(z[i + 1] - z[i]);
    const bool isFlat = dy > dz;
    const double greater = isFlat ? dy : dz;
    const double smaller = isFlat ? dz : dy;
    bounds[i] = greater + 0.5 * smaller * (smaller / (greater + kTiny));
  }
}

/// Index of the lowest bit that is set; there must be one.
inline int lowestBit(std::uint64_t bits) {
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

/// The bits of those points of a block that are far enough from the point (`y`, `z`).
inline std::uint64_t hitsIn(const double* blockY,
                            const double* blockZ,
                            double y,
                            double z,
                            double squaredThreshold,
                            const std::uint64_t* bits) {
  std::uint64_t hits = 0;
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC unroll 1  // GCC does not vectorise the loop once it has unrolled it.
#endif
  for (int k = 0; k < kBlock; ++k) {
    const double dy = blockY[k] - y;
    const double dz = blockZ[k] - z;
    hits |= dy * dy + dz * dz >= squaredThreshold ? bits[k] : 0;
  }
  return hits;
}

/// The walks of `walkNearby`, in the order of their steps.
///
/// Points on too short an arc are skipped. They are on a shorter arc from the next point still, so
/// `start` never moves back. Each point of a block has a bit, the nearest one the lowest, so that
/// no branch depends on which of them is the first hit. Blocks may extend beyond the range: hits
/// there do not count, and the padding is never hit.
SCANLINE_WIDE_KERNEL
bool walkAll(const double* y,
             const double* z,
             const double* arcs,
             const NeighbourWalk& walk,
             int* neighbours) {
  const int step = walk.step;
  const int first = step > 0 ? walk.range.first : walk.range.last;
  const int end = step > 0 ? walk.range.last + 1 : walk.range.first - 1;
  const int blockStart = step > 0 ? 0 : 1 - kBlock;
  std::uint64_t bits[kBlock];
  for (int k = 0; k < kBlock; ++k) {
    bits[k] = std::uint64_t{1} << static_cast<unsigned>(step > 0 ? k : kBlock - 1 - k);
  }
  bool isFinished = true;
  int start = first;
  for (int i = first; i != end; i += step) {
    start = start == i ? i + step : start;
    while (start != end && std::abs(arcs[start] - arcs[i]) < walk.leastArc) {
      start += step;
    }
    int j = start;
    std::uint64_t hits = 0;
    while ((end - j) * step > 0 && (j - start) * step < kNearby) {
      hits =
          hitsIn(y + j + blockStart, z + j + blockStart, y[i], z[i], walk.squaredThreshold, bits);
      if (hits != 0) {
        j += step * lowestBit(hits);
        break;
      }
      j += step * kBlock;
    }
    const bool isInside = (end - j) * step > 0;
    neighbours[i] = !isInside ? kNoPoint : hits != 0 ? j : unfinishedAt(j);
    isFinished = isFinished && (!isInside || hits != 0);
  }
  return isFinished;
}

}  // namespace

ArcLengths::ArcLengths(const Profile& profile) : upTo_(profile.index.size()) {
  if (upTo_.empty()) {
    return;
  }
  boundSteps(profile.y.data(), profile.z.data(), profile.count() - 1, upTo_.data() + 1);
  double length = 0.0;
  for (double& upTo : upTo_) {
    length += upTo;
    upTo = length;
  }
}

// The distance of two points is at most the length of the arc between them. With u = 2^-53 and n
// points, rounding has these effects:
// - The bound of a step is too low by less than 6 u of itself, the two sums by less than n u of the
//   whole length each, and their difference by u of itself. Together that is less than (2 n + 7) u
//   of the whole length; the margin is 10 n u.
// - The square of a distance is too high by less than 4 u of itself, and the root of the threshold
//   by u; the factor allows for 1e-9. This covers `kTiny` and products that underflow as well,
//   since the threshold is far above them.
// - A square that overflows reaches any finite threshold, and so does its distance.
// - An arc that is infinite or NaN makes the margin infinite or NaN.
double ArcLengths::arcReaching(double squaredThreshold) const {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kRounding = 10.0 * 0x1p-53;
  if (upTo_.empty() || !(squaredThreshold > 1e-200 && squaredThreshold < kInfinity)) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  const double margin = kRounding * static_cast<double>(upTo_.size()) * upTo_.back();
  return std::sqrt(squaredThreshold) * (1.0 - 1e-9) - margin;
}

bool walkNearby(const Profile& profile,
                const ArcLengths& arcs,
                const NeighbourWalk& walk,
                int* neighbours) {
  return walkAll(profile.y.data(), profile.z.data(), arcs.data(), walk, neighbours);
}

}  // namespace scanline::detail
