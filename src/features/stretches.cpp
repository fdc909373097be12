#include "features/stretches.h"

#include <cmath>
#include <limits>
#include <utility>

namespace scanline::detail {
namespace {

constexpr double kNoMaxZ = std::numeric_limits<double>::infinity();

}  // namespace

Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ, double maxZ) {
  return findStretches(lineData, dataSize, maxZ,
                       [stepZ](const STesk3DPoint& before, const STesk3DPoint& point) {
                         return stepZ > std::abs(point.z - before.z);
                       });
}

Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ) {
  return findStretches(lineData, dataSize, kNoMaxZ,
                       [stepY, stepZ](const STesk3DPoint& before, const STesk3DPoint& point) {
                         return stepZ > std::abs(point.z - before.z) &&
                                stepY > std::abs(point.y - before.y);
                       });
}

void stampIndices(std::vector<STesk3DPosition>& lineData) {
  int index = 0;
  for (STesk3DPosition& sample : lineData) {
    sample.nPointIdx = index++;
  }
}

SlopedStretches slopedStretches(const std::vector<STesk3DPosition>& lineData,
                                double stepZ,
                                double scale) {
  Stretches stretches =
      stretchesByZ(lineData.data(), static_cast<int>(lineData.size()), stepZ, kNoMaxZ);
  for (std::size_t k = 0; k < stretches.points.size(); ++k) {
    stretches.points[k].nPointIdx = stretches.sampleOf[k];
  }
  Slopes slopes = slopePass(stretches.points, stretches.ranges, SlopeSearch::unlimited(scale));
  return {std::move(stretches), std::move(slopes)};
}

void markStretchEnds(const Stretches& stretches, STesk3DPosition* lineData) {
  for (const PointRange& range : stretches.ranges) {
    lineData[stretches.sampleOf[range.first]].nPointIdx |= kStretchStartMark;
    lineData[stretches.sampleOf[range.last]].nPointIdx |= kStretchEndMark;
  }
}

}  // namespace scanline::detail
