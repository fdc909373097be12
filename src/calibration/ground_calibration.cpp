// Finds the ground on which the lines of a scan end, and the rotation to a constant y.
#include <cmath>
#include <optional>

#include <scanline/calibration.h>
#include <scanline/conditioning.h>
#include "calibration/plane_from_points.h"

namespace {

using scanline::detail::FitPoints;
using scanline::detail::isMeasured;
using scanline::detail::LaserPlane;
using scanline::detail::levelPlane;
using scanline::detail::LevelTarget;
using scanline::detail::meanLevelled;

using Line = std::vector<STesk3DPosition>;

constexpr SQO_lineSegParam kGroundSegments = {5.0, 10.0, 2.0};

/// z falls along the ground at more than 60 degrees to the y axis.
constexpr double kGroundAngle = 1.0471975511965976;

/// Keeps the slope of a piece without extent in y finite.
constexpr double kSlopeEpsilon = 1e-8;

/// The mark of a ground sample in `nPointIdx`.
constexpr int kGroundMark = 1;

constexpr LevelTarget kPositiveY = {{0.0, 1.0, 0.0}, 1};
constexpr LevelTarget kNegativeY = {{0.0, -1.0, 0.0}, 1};

/// Buffers for the runs and pieces of a line, reused for the next line.
struct Segments {
  std::vector<SQO_RUN> runs;
  std::vector<SQO_RUN> pieces;
};

/// The last straight piece of the last run of a line, if there is one. Clears `nPointIdx`.
std::optional<SQO_RUN> lastPiece(Line& line, Segments& segments) {
  segments.runs.clear();
  ju_getLineDataIntervals(line, kGroundSegments, segments.runs);
  if (segments.runs.empty()) {
    return std::nullopt;
  }
  segments.pieces.clear();
  split(segments.runs.back(), line, kGroundSegments.maxDist, segments.pieces);
  if (segments.pieces.empty()) {
    return std::nullopt;
  }
  return segments.pieces.back();
}

bool fallsSteeply(const STesk3DPoint& start, const STesk3DPoint& end) {
  const double dz = start.z - end.z;
  const double dy = std::fabs(end.y - start.y) + kSlopeEpsilon;
  return dz / dy > std::tan(kGroundAngle);
}

/// Marks the measured samples of a piece as ground and adds them to the points.
void takeGround(Line& line, const SQO_RUN& piece, FitPoints& points) {
  for (int i = piece.start; i < piece.start + piece.len; ++i) {
    STesk3DPosition& sample = line[i];
    if (isMeasured(sample.pt3D.z)) {
      sample.nPointIdx = kGroundMark;
      points.add(sample.pt3D);
    }
  }
  points.sumUp();
}

FitPoints selectGround(std::vector<Line>& scan) {
  FitPoints points;
  Segments segments;
  for (Line& line : scan) {
    const std::optional<SQO_RUN> piece = lastPiece(line, segments);
    if (piece && fallsSteeply(line[piece->start].pt3D, line[piece->start + piece->len - 1].pt3D)) {
      takeGround(line, *piece, points);
    }
  }
  return points;
}

}  // namespace

SQO_planeCalibPara qo_HCameraVScan_getGroundCalibPara(
    std::vector<std::vector<STesk3DPosition>>& scan) {
  const FitPoints points = selectGround(scan);
  const LaserPlane plane = points.plane();
  const SQO_planeCalibPara record = levelPlane(plane, points, kPositiveY, meanLevelled);
  if (0.0 > record.planeHeight) {
    return levelPlane(plane, points, kNegativeY, meanLevelled);
  }
  return record;
}
