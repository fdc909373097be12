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

/// Angle of two points around a centre.
double spanOf(const cv::Point2d& start, const cv::Point2d& end, const cv::Point2d& centre) {
  const cv::Point2d a = start - centre;
  const cv::Point2d b = end - centre;
  return std::abs(std::atan2(a.cross(b), a.dot(b))) * kDegrees;
}

/// Whether an arc is the near side of a circle that is wanted.
bool isWanted(const Arc& arc, const ArcParams& params) {
  const bool isNearSide = arc.meanZ < arc.circle.centre.y;
  const double minWidth = arc.kind == ArcKind::ring ? params.width.min : params.minTubeWidth;
  return isNearSide && arc.width >= minWidth && arc.width <= params.width.max &&
         arc.circle.radius >= params.radius.min && arc.circle.radius <= params.radius.max &&
         arc.circle.rms <= params.maxRms && arc.span >= params.minSpan;
}

std::optional<Arc> arcOf(const Line& line, int lineIdx, ArcKind kind, int first, int last) {
  const std::vector<cv::Point2d> section = sectionOf(line, first, last);
  const std::optional<Circle> circle = fitCircle(section);
  if (!circle) {
    return std::nullopt;
  }
  double meanZ = 0.0;
  for (const cv::Point2d& p : section) {
    meanZ += p.y / static_cast<double>(section.size());
  }
  const STesk3DPoint& a = line[static_cast<std::size_t>(first)].pt3D;
  const STesk3DPoint& b = line[static_cast<std::size_t>(last)].pt3D;
  const cv::Point2d start(a.y, a.z);
  const cv::Point2d end(b.y, b.z);
  return Arc{
      kind,  lineIdx, first, last, a, b, cv::norm(end - start), spanOf(start, end, circle->centre),
      meanZ, *circle};
}

/// Adds the extents of the ring arcs at one scale. The line is smooth: noise must not turn it
/// towards the sensor anywhere on an arc.
void addRings(Line& smooth, double scale, const ArcParams& params, std::vector<SQO_RUN>& extents) {
  // What is not much wider than the arms is a corner.
  constexpr double kWiderThanCorner = 3.0;
  SQO_cornerParam corner = params.corner;
  corner.scale = scale;
  const bool isFirst = scale == params.corner.scale;
  const double narrowest =
      isFirst ? params.width.min : std::max(params.width.min, kWiderThanCorner * scale);
  std::vector<SJU_segFeature> rings;
  ju_getRingArcFeature(smooth, 0, corner, {narrowest, params.width.max}, rings);
  for (const SJU_segFeature& ring : rings) {
    extents.push_back({ring.startPtIdx, ring.endPtIdx - ring.startPtIdx + 1, 0});
  }
}

/// The extents of the arcs of one kind, which may overlap. The larger a radius, the longer the arms
/// have to be to turn by more than the noise.
std::vector<SQO_RUN> extentsOf(const Line& clean, ArcKind kind, const ArcParams& params) {
  if (kind == ArcKind::tube) {
    return tubesOf(clean, params);
  }
  Line smooth = smoothed(withoutNarrowHoles(clean, params.cleaning), params.cleaning);
  std::vector<SQO_RUN> extents;
  double scale = params.corner.scale;
  for (int i = 0; i < params.scales; ++i, scale *= 2.0) {
    addRings(smooth, scale, params, extents);
  }
  return extents;
}

/// Of arcs that overlap, keeps the one with the most samples, unless it fits much worse.
std::vector<Arc> withoutOverlaps(std::vector<Arc> arcs, const ArcParams& params) {
  const double small = 0.1 * params.maxRms;
  const auto worth = [&](const Arc& arc) {
    return arc.circle.count / (arc.circle.rms * arc.circle.rms + small * small);
  };
  std::stable_sort(arcs.begin(), arcs.end(),
                   [&](const Arc& a, const Arc& b) { return worth(a) > worth(b); });
  std::vector<Arc> kept;
  for (const Arc& arc : arcs) {
    const bool isFree = std::none_of(kept.begin(), kept.end(), [&](const Arc& other) {
      return arc.firstSample <= other.lastSample && other.firstSample <= arc.lastSample;
    });
    if (isFree) {
      kept.push_back(arc);
    }
  }
  std::sort(kept.begin(), kept.end(),
            [](const Arc& a, const Arc& b) { return a.firstSample < b.firstSample; });
  return kept;
}

void addArcs(const Line& clean,
             int lineIdx,
             ArcKind kind,
             const ArcParams& params,
             std::vector<Arc>& arcs,
             long long& refused) {
  std::vector<Arc> wanted;
  for (const SQO_RUN& extent : extentsOf(clean, kind, params)) {
    const auto arc = arcOf(clean, lineIdx, kind, extent.start, extent.start + extent.len - 1);
    if (arc && isWanted(*arc, params)) {
      wanted.push_back(*arc);
    } else {
      ++refused;
    }
  }
  for (const Arc& arc : withoutOverlaps(std::move(wanted), params)) {
    arcs.push_back(arc);
  }
}

}  // namespace

std::vector<Arc> arcsOfLine(const Line& line,
                            int lineIdx,
                            const ArcParams& params,
                            long long& refused) {
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
