// Finds arcs: runs of points that all bend the same way.
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/slopes.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// The runs of points in a stretch whose corner measures are below 0. Points without slopes belong
/// to none, and the ends of a stretch have none.
std::vector<detail::PointRange> findArcs(const detail::PointRange& stretch,
                                         const detail::Slopes& slopes) {
  std::vector<detail::PointRange> arcs;
  bool isOpen = false;
  for (int i = stretch.first; i <= stretch.last; ++i) {
    if (!(slopes.cornerSign(i) < 0.0)) {
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

/// An arc without slopes on either side of it fills its stretch, and takes all points without
/// slopes at the ends of the stretch too. An arc always has a point on either side.
detail::PointRange extentOf(const detail::PointRange& arc,
                            const detail::PointRange& stretch,
                            const detail::Slopes& slopes) {
  const bool isInside = slopes.exist(arc.first - 1) || slopes.exist(arc.last + 1);
  return isInside ? arc : stretch;
}

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
  const detail::Slopes slopes(stretches.points, stretches.ranges,
                              detail::SlopeSearch::unlimited(cornerPara.scale));
  const auto sampleAt = [&](int point) -> const STesk3DPosition& {
    return lineData[stretches.points.index[point]];
  };
  std::vector<SJU_segFeature> arcs;
  for (const detail::PointRange& stretch : stretches.ranges) {
    for (const detail::PointRange& arc : findArcs(stretch, slopes)) {
      const double chord = chordBetween(sampleAt(arc.first).pt3D, sampleAt(arc.last).pt3D);
      if (!(chord >= ringArcWidth.min && ringArcWidth.max >= chord)) {
        continue;
      }
      const double turnAngle =
          std::abs(slopes.forwardAngle(arc.last) - slopes.backwardAngle(arc.first));
      if (!(turnAngle > cornerPara.cornerTh)) {
        continue;
      }
      const auto [first, last] = extentOf(arc, stretch, slopes);
      arcs.push_back({lineIdx, stretches.points.index[first], stretches.points.index[last], 0,
                      sampleAt(first).pt3D, sampleAt(last).pt3D, turnAngle});
    }
  }
  detail::append(arcs, line_ringArcs);
  detail::stampIndices(lineData);
}
