// Cuts the samples of a line that are not holes into stretches at steps.
#include "features/stretches.h"

#include <cmath>
#include <limits>
#include <utility>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// Cuts before each point `i` for which `continues(i)` is false.
template <typename Continues>
std::vector<PointRange> cutRanges(int count, Continues continues) {
  std::vector<PointRange> ranges;
  int first = 0;
  for (int i = 1; i <= count; ++i) {
    if (i == count || !continues(i)) {
      ranges.push_back({first, i - 1});
      first = i;
    }
  }
  return ranges;
}

Profile profileUpTo(const STesk3DPosition* lineData, int dataSize, double maxZ) {
  return collectProfile(lineData, dataSize, [maxZ](const STesk3DPosition& sample) {
    return !isHole(sample.pt3D.z) && !(sample.pt3D.z > maxZ);
  });
}

/// Whether a coordinate changes by less than `step` from point `i` - 1 to point `i`.
bool isClose(const PaddedColumn& column, int i, double step) {
  return step > std::abs(column[i] - column[i - 1]);
}

}  // namespace

Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ) {
  return stretchesByZ(lineData, dataSize, stepZ, std::numeric_limits<double>::infinity());
}

Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ, double maxZ) {
  Profile points = profileUpTo(lineData, dataSize, maxZ);
  auto ranges = cutRanges(points.count(), [&](int i) { return isClose(points.z, i, stepZ); });
  return {std::move(points), std::move(ranges)};
}

Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ) {
  Profile points = profileUpTo(lineData, dataSize, std::numeric_limits<double>::infinity());
  auto ranges = cutRanges(points.count(), [&](int i) {
    return isClose(points.z, i, stepZ) && isClose(points.y, i, stepY);
  });
  return {std::move(points), std::move(ranges)};
}

void markStretchEnds(const Stretches& stretches, STesk3DPosition* lineData) {
  for (const PointRange& range : stretches.ranges) {
    lineData[stretches.points.index[range.first]].nPointIdx |= kStretchStartMark;
    lineData[stretches.points.index[range.last]].nPointIdx |= kStretchEndMark;
  }
}

}  // namespace scanline::detail
