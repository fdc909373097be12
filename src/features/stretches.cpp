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

void stampIndices(STesk3DPosition* lineData, int dataSize) {
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx = i;
  }
}

void stampIndices(std::vector<STesk3DPosition>& lineData) {
  stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}

SlopedStretches slopedStretches(const std::vector<STesk3DPosition>& lineData,
                                double stepZ,
                                double scale) {
  Stretches stretches = stretchesByZ(lineData.data(), static_cast<int>(lineData.size()), stepZ);
  for (std::size_t k = 0; k < stretches.points.size(); ++k) {
    stretches.points[k].nPointIdx = stretches.sampleOf[k];
  }
  Slopes slopes = slopePass(stretches.points, stretches.ranges, SlopeSearch::unlimited(scale));
  return {std::move(stretches), std::move(slopes)};
}

void markStretchEnds(const Stretches& stretches, Samples& line) {
  for (const PointRange& range : stretches.ranges) {
    line[stretches.sampleOf[range.first]].nPointIdx |= kStretchStartMark;
    line[stretches.sampleOf[range.last]].nPointIdx |= kStretchEndMark;
  }
}

}  // namespace scanline::detail
