#include <cmath>
#include <optional>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/stretches.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// A run of points that all bend away from the sensor.
struct Arc {
  int first;
  int last;
  double firstAngle;
  double lastAngle;

  [[nodiscard]] double turn() const {
    return std::abs(lastAngle - firstAngle);
  }
};

/// An arc that leaves no slopes on either side of it fills its stretch and takes in the two points
/// at the stretch's ends. These cannot have any, so an arc always has a point on either side.
detail::PointRange extentOf(const Arc& arc,
                            const detail::PointRange& stretch,
                            const detail::Slopes& slopes) {
  const bool isInside = slopes[arc.first - 1].pntIdx >= 0 || slopes[arc.last + 1].pntIdx >= 0;
  return isInside ? detail::PointRange{arc.first, arc.last} : stretch;
}

double chordOf(const STesk3DPoint& a, const STesk3DPoint& b) {
  const double dy = a.y - b.y;
  const double dz = a.z - b.z;
  return std::sqrt(dy * dy + dz * dz);
}

/// The arcs of one stretch, in order, each handed to `report`.
template <typename Report>
void forEachArc(const detail::PointRange& stretch, const detail::Slopes& slopes, Report report) {
  std::optional<Arc> open;
  for (int i = stretch.first; i <= stretch.last; ++i) {
    const detail::SQO_pointSlope& slope = slopes[i];
    if (slope.corner < 0.0) {
      if (!open) {
        open = Arc{i, i, slope.backwardAngle, 0.0};
      }
      open->last = i;
      open->lastAngle = slope.forwardAngle;
    } else if (open) {
      report(*open);
      open.reset();
    }
  }
}

}  // namespace

void ju_getRingArcFeature(std::vector<STesk3DPosition>& lineData,
                          int lineIdx,
                          SQO_cornerParam cornerPara,
                          STeskRangeD ringArcWidth,
                          std::vector<SJU_segFeature>& line_ringArcs) {
  const detail::SlopedStretches line =
      detail::slopedStretches(lineData, cornerPara.minEndingGap_z, cornerPara.scale);
  const detail::Samples& points = line.stretches.points;
  std::vector<SJU_segFeature> arcs;
  for (const detail::PointRange& stretch : line.stretches.ranges) {
    forEachArc(stretch, line.slopes, [&](const Arc& arc) {
      const double chord = chordOf(points[arc.first].pt3D, points[arc.last].pt3D);
      if (!(arc.turn() > cornerPara.cornerTh && chord >= ringArcWidth.min &&
            ringArcWidth.max >= chord)) {
        return;
      }
      const detail::PointRange extent = extentOf(arc, stretch, line.slopes);
      const STesk3DPosition& first = points[extent.first];
      const STesk3DPosition& last = points[extent.last];
      arcs.push_back(
          {lineIdx, first.nPointIdx, last.nPointIdx, 0, first.pt3D, last.pt3D, arc.turn()});
    });
  }
  detail::append(arcs, line_ringArcs);
  detail::stampIndices(lineData);
}
