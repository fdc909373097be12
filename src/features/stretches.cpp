#include "features/stretches.h"

#include <cmath>
#include <utility>

namespace scanline::detail {

Stretches stretchesByZ(const STesk3DPosition* lineData, int dataSize, double stepZ) {
  return findStretches(lineData, dataSize,
                       [stepZ](const STesk3DPoint& before, const STesk3DPoint& point) {
                         return stepZ > std::abs(point.z - before.z);
                       });
}

Stretches stretchesByYZ(const STesk3DPosition* lineData, int dataSize, double stepY, double stepZ) {
  return findStretches(
      lineData, dataSize, [stepY, stepZ](const STesk3DPoint& before, const STesk3DPoint& point) {
        return stepZ > std::abs(point.z - before.z) && stepY > std::abs(point.y - before.y);
      });
}

void stampIndices(std::vector<STesk3DPosition>& lineData) {
  int index = 0;
  for (STesk3DPosition& sample : lineData) {
    sample.nPointIdx = index++;
  }
}

SlopedStretches stampAndSlope(std::vector<STesk3DPosition>& lineData, double stepZ, double scale) {
  stampIndices(lineData);
  Stretches stretches = stretchesByZ(lineData.data(), static_cast<int>(lineData.size()), stepZ);
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
