// Finds the reference plane of a scan from the lines that no hole interrupts.
#include <scanline/calibration.h>
#include <scanline/conditioning.h>
#include "calibration/plane_from_points.h"

namespace {

using scanline::detail::FitPoints;
using scanline::detail::isMissing;
using scanline::detail::meanLevelled;
using scanline::detail::planeFromPoints;
using scanline::detail::sampleCount;
using scanline::detail::viewOf;

using Line = std::vector<STesk3DPosition>;

/// A line is in one piece if its steps in y and z are smaller than these.
constexpr SQO_lineSegParam kUnbroken = {1.0, 1.0, 0.0};

void addValid(const Line& line, FitPoints& points) {
  for (const STesk3DPosition& sample : line) {
    if (!isMissing(sample.pt3D.z)) {
      points.add(sample.pt3D);
    }
  }
  points.sumUp();
}

/// The valid samples of all lines that are in one piece.
FitPoints pointsOfUnbrokenLines(std::vector<Line>& scan) {
  FitPoints points;
  points.reserve(sampleCount(viewOf(scan)));
  std::vector<SQO_RUN> runs;
  for (Line& line : scan) {
    runs.clear();
    ju_getLineDataIntervals(line, kUnbroken, runs);
    if (runs.size() == 1) {
      addValid(line, points);
    }
  }
  return points;
}

}  // namespace

SQO_planeCalibPara qo_getHolePlaneCalibPara(std::vector<std::vector<STesk3DPosition>>& scan) {
  return planeFromPoints(pointsOfUnbrokenLines(scan), meanLevelled);
}
