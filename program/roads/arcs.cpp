#include "roads/arcs.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "roads/tubes.h"

namespace program {
namespace {

constexpr double kDegrees = 180.0 / 3.141592653589793;

std::vector<cv::Point2d> sectionOf(const Line& line, int first, int last) {
  std::vector<cv::Point2d> points;
  for (int i = first; i <= last; ++i) {
    const STesk3DPosition& sample = line[static_cast<std::size_t>(i)];
    if (isMeasured(sample)) {
      points.emplace_back(sample.pt3D.y, sample.pt3D.z);
    }
  }
  return points;
}

/// Angle of two points around a centre, on the side of the sensor.
double spanOf(const cv::Point2d& start, const cv::Point2d& end, const cv::Point2d& centre) {
  const cv::Point2d a = start - centre;
  const cv::Point2d b = end - centre;
  const double angle = std::abs(std::atan2(a.cross(b), a.dot(b))) * kDegrees;
  const bool isMoreThanHalf = 0.5 * (a.y + b.y) > 0.0;
  return isMoreThanHalf ? 360.0 - angle : angle;
}

/// Whether an arc is the near side of a circle that is wanted.
bool isWanted(const Arc& arc, const ArcParams& params) {
  const bool isNearSide = arc.circle.centre.y - arc.circle.radius < std::min(arc.start.z, arc.end.z);
  const double minWidth = arc.kind == ArcKind::ring ? params.width.min : params.minTubeWidth;
  return isNearSide && arc.width >= minWidth && arc.width <= params.width.max &&
         arc.circle.radius >= params.radius.min && arc.circle.radius <= params.radius.max &&
         arc.circle.rms <= params.maxRms && arc.span >= params.minSpan;
}

std::optional<Arc> arcOf(const Line& line, int lineIdx, ArcKind kind, int first, int last) {
  const std::optional<Circle> circle = fitCircle(sectionOf(line, first, last));
  if (!circle) {
    return std::nullopt;
  }
  const STesk3DPoint& a = line[static_cast<std::size_t>(first)].pt3D;
  const STesk3DPoint& b = line[static_cast<std::size_t>(last)].pt3D;
  const cv::Point2d start(a.y, a.z);
  const cv::Point2d end(b.y, b.z);
  return Arc{kind, lineIdx,  first, last, a, b, cv::norm(end - start),
             spanOf(start, end, circle->centre), *circle};
}

/// The extents of the arcs of one kind. Ring arcs are found on the smoothed line: noise must not turn
/// the profile towards the sensor anywhere on an arc.
std::vector<SQO_RUN> extentsOf(const Line& clean, ArcKind kind, const ArcParams& params) {
  if (kind == ArcKind::tube) {
    return tubesOf(clean, params);
  }
  Line smooth = smoothed(clean, params.cleaning);
  std::vector<SJU_segFeature> rings;
  ju_getRingArcFeature(smooth, 0, params.corner, params.width, rings);
  std::vector<SQO_RUN> extents;
  for (const SJU_segFeature& ring : rings) {
    extents.push_back({ring.startPtIdx, ring.endPtIdx - ring.startPtIdx + 1, 0});
  }
  return extents;
}

void addArcs(const Line& clean,
             int lineIdx,
             ArcKind kind,
             const ArcParams& params,
             std::vector<Arc>& arcs,
             long long& refused) {
  for (const SQO_RUN& extent : extentsOf(clean, kind, params)) {
    const auto arc = arcOf(clean, lineIdx, kind, extent.start, extent.start + extent.len - 1);
    if (arc && isWanted(*arc, params)) {
      arcs.push_back(*arc);
    } else {
      ++refused;
    }
  }
}

}  // namespace

std::vector<Arc> arcsOfLine(const Line& line, int lineIdx, const ArcParams& params, long long& refused) {
  const Line clean = withoutOutliers(line, params.cleaning);
  std::vector<Arc> arcs;
  if (params.kinds != ArcKinds::tube) {
    addArcs(clean, lineIdx, ArcKind::ring, params, arcs, refused);
  }
  if (params.kinds != ArcKinds::ring) {
    addArcs(clean, lineIdx, ArcKind::tube, params, arcs, refused);
  }
  return arcs;
}

FoundArcs findArcs(const Scan& scan, const ArcParams& params, Progress& progress) {
  FoundArcs found;
  found.lines.resize(scan.size());
  std::vector<long long> refused(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    found.lines[l] = arcsOfLine(scan[l], static_cast<int>(l), params, refused[l]);
    progress.advance();
  });
  for (const long long one : refused) {
    found.refused += one;
  }
  return found;
}

}  // namespace program
