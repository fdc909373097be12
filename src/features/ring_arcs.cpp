// Finds ring arcs: rows of points at each of which a line turns away from the sensor.
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/line_samples.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// The rows of points in a stretch whose turn angles are below 0. A point without arms ends a row.
std::vector<detail::PointRange> findArcs(const detail::PointRange& stretch,
                                         const detail::Arms& arms) {
  std::vector<detail::PointRange> arcs;
  bool isOpen = false;
  for (int i = stretch.first; i <= stretch.last; ++i) {
    if (!(arms.turnSign(i) < 0.0)) {
      isOpen = false;
    } else if (isOpen) {
      arcs.back().last = i;
    } else {
      arcs.push_back({i, i});
      isOpen = true;
    }
  }
  return arcs;
}

/// What is reported for an arc: the whole stretch if neither the point before the arc nor the one
/// after it has arms, with all other points of the stretch, arms or not. Both points exist, since
/// the ends of a stretch never have arms.
detail::PointRange reportedRange(const detail::PointRange& arc,
                                 const detail::PointRange& stretch,
                                 const detail::Arms& arms) {
  const bool hasArmsBeside = arms.exist(arc.first - 1) || arms.exist(arc.last + 1);
  return hasArmsBeside ? arc : stretch;
}

/// Distance in the y-z plane.
double chordBetween(const STesk3DPoint& a, const STesk3DPoint& b) {
  const double dy = a.y - b.y;
  const double dz = a.z - b.z;
  return std::sqrt(dy * dy + dz * dz);
}

}  // namespace

void ju_getRingArcFeature(std::vector<STesk3DPosition>& lineData,
                          int lineIdx,
                          SQO_cornerParam cornerPara,
                          STeskRangeD ringArcWidth,
                          std::vector<SJU_segFeature>& line_ringArcs) {
  const detail::Stretches stretches = detail::stretchesByZ(
      lineData.data(), static_cast<int>(lineData.size()), cornerPara.minEndingGap_z);
  const detail::Arms arms(stretches.points, stretches.ranges,
                          detail::ArmSearch::unlimited(cornerPara.scale));
  const auto sampleAt = [&](int point) -> const STesk3DPosition& {
    return lineData[stretches.points.index[point]];
  };
  std::vector<SJU_segFeature> arcs;
  for (const detail::PointRange& stretch : stretches.ranges) {
    for (const detail::PointRange& arc : findArcs(stretch, arms)) {
      const double chord = chordBetween(sampleAt(arc.first).pt3D, sampleAt(arc.last).pt3D);
      if (!(chord >= ringArcWidth.min && ringArcWidth.max >= chord)) {
        continue;
      }
      const double turnAngle =
          std::abs(arms.forwardAngle(arc.last) - arms.backwardAngle(arc.first));
      if (!(turnAngle > cornerPara.cornerTh)) {
        continue;
      }
      const auto [first, last] = reportedRange(arc, stretch, arms);
      arcs.push_back({lineIdx, stretches.points.index[first], stretches.points.index[last], 0,
                      sampleAt(first).pt3D, sampleAt(last).pt3D, turnAngle});
    }
  }
  detail::append(arcs, line_ringArcs);
  detail::stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}
