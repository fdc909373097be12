#include <algorithm>
#include <cmath>
#include <optional>
#include <tuple>
#include <utility>

#include "roads/arcs.h"

namespace program {
namespace {

double dot(const STesk3DPoint& a, const STesk3DPoint& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

STesk3DPoint cross(const STesk3DPoint& a, const STesk3DPoint& b) {
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// The arc that a node of a tree was made of.
const Arc& arcOf(const FoundArcs& found, ArcKind kind, int line, int firstSample) {
  const std::vector<Arc>& arcs = found.lines[static_cast<std::size_t>(line)];
  return *std::find_if(arcs.begin(), arcs.end(), [&](const Arc& arc) {
    return arc.kind == kind && arc.firstSample == firstSample;
  });
}

using Chain = std::vector<Arc>;

/// The place of a circle that is nearest to the sensor. Noise moves it less than the ends of the
/// arc, which lie on steep flanks.
STesk3DPoint topOf(const Arc& arc) {
  return {0.5 * (arc.start.x + arc.end.x), arc.circle.centre.x,
          arc.circle.centre.y - arc.circle.radius};
}

std::vector<Chain> ringChains(const FoundArcs& found, const SQO_treeGrowParam& grow) {
  std::vector<std::vector<SJU_segFeature>> lines(found.lines.size());
  for (std::size_t l = 0; l < lines.size(); ++l) {
    for (const Arc& arc : found.lines[l]) {
      if (arc.kind == ArcKind::ring) {
        const STesk3DPoint top = topOf(arc);
        lines[l].push_back({arc.line, arc.firstSample, arc.lastSample, 0, top, top, arc.span});
      }
    }
  }
  std::vector<SJU_segFeatureTree> trees;
  ju_getSegFeatureGrowingTrees(lines, trees, grow);
  std::vector<Chain> chains;
  for (const SJU_segFeatureTree& tree : trees) {
    chains.emplace_back();
    for (const SJU_segFeature& node : tree.treeNodes) {
      chains.back().push_back(arcOf(found, ArcKind::ring, node.lineIdx, node.startPtIdx));
    }
  }
  return chains;
}

std::vector<Chain> tubeChains(const FoundArcs& found, SQO_treeGrowParam grow) {
  grow.minVTypeTreeLen = grow.minLTypeTreeLen;
  std::vector<SQO_semiCircleFeatureTree> open;
  std::vector<SQO_semiCircleFeatureTree> trees;
  std::vector<SQO_semiCircleFeatureTree> shortTrees;
  const auto count = static_cast<int>(found.lines.size());
  for (int l = 0; l < count; ++l) {
    std::vector<SQO_featureSemiCircle> line;
    for (const Arc& arc : found.lines[static_cast<std::size_t>(l)]) {
      if (arc.kind == ArcKind::tube) {
        const STesk3DPoint top = topOf(arc);
        line.push_back({0, l, arc.firstSample, arc.lastSample, arc.firstSample, top,
                        std::abs(arc.end.y - arc.start.y), top.z});
      }
    }
    qo_getFeatureGrowingTrees_semiCircle(line, l, count, open, trees, shortTrees, grow);
  }
  std::vector<Chain> chains;
  for (const SQO_semiCircleFeatureTree& tree : trees) {
    chains.emplace_back();
    for (const SQO_featureSemiCircle& node : tree.treeNodes) {
      chains.back().push_back(arcOf(found, ArcKind::tube, node.lineIdx, node.startPtIdx));
    }
  }
  return chains;
}

/// The direction of the centre line around a node; nothing where it is not straight.
std::optional<STesk3DPoint> directionAround(const ArcTrack& track, std::size_t node) {
  constexpr std::size_t kReach = 12;
  constexpr double kStraight = 0.1;
  const std::vector<STesk3DPoint>& centres = track.centres;
  const std::size_t first = node > kReach ? node - kReach : 0;
  const std::size_t last = std::min(node + kReach + 1, centres.size());
  const CentreLine line = fitCentreLine({centres.begin() + static_cast<std::ptrdiff_t>(first),
                                         centres.begin() + static_cast<std::ptrdiff_t>(last)});
  const bool isStraight = line.deviation.rms <= kStraight * track.arcs[node].circle.radius;
  return isStraight && line.direction.x > 0.0 ? std::optional(line.direction) : std::nullopt;
}

/// The circle of an arc's samples, seen along a direction.
std::optional<Circle> circleAcross(const Scan& scan,
                                   const Arc& arc,
                                   const STesk3DPoint& direction) {
  const STesk3DPoint aside = cross({0.0, 0.0, 1.0}, direction);
  const double length = std::sqrt(dot(aside, aside));
  if (!(length > 0.0)) {
    return std::nullopt;
  }
  const STesk3DPoint u = {aside.x / length, aside.y / length, aside.z / length};
  const STesk3DPoint v = cross(direction, u);
  std::vector<cv::Point2d> points;
  for (int i = arc.firstSample; i <= arc.lastSample; ++i) {
    const STesk3DPosition& sample =
        scan[static_cast<std::size_t>(arc.line)][static_cast<std::size_t>(i)];
    if (isMeasured(sample)) {
      points.emplace_back(dot(sample.pt3D, u), dot(sample.pt3D, v));
    }
  }
  return fitCircle(points);
}

/// Mean, and root mean square deviation from it.
std::pair<double, double> meanOf(const std::vector<double>& values) {
  const auto count = static_cast<double>(values.size());
  double mean = 0.0;
  for (const double value : values) {
    mean += value / count;
  }
  double squares = 0.0;
  for (const double value : values) {
    squares += (value - mean) * (value - mean) / count;
  }
  return {mean, std::sqrt(squares)};
}

void measureRadii(const Scan& scan, ArcTrack& track) {
  std::vector<double> radii;
  std::vector<double> residuals;
  std::vector<double> across;
  for (std::size_t i = 0; i < track.arcs.size(); ++i) {
    const Arc& arc = track.arcs[i];
    radii.push_back(arc.circle.radius);
    residuals.push_back(arc.circle.rms);
    const auto direction = directionAround(track, i);
    if (const auto circle = direction ? circleAcross(scan, arc, *direction) : std::nullopt) {
      across.push_back(circle->radius);
    }
  }
  std::tie(track.meanRadius, track.radiusDeviation) = meanOf(radii);
  track.meanRms = meanOf(residuals).first;
  const bool hasAxis = 2 * across.size() > radii.size();
  std::tie(track.radiusAcross, track.acrossDeviation) =
      hasAxis ? meanOf(across) : std::pair(std::nan(""), std::nan(""));
}

ArcTrack measured(const Scan& scan, Chain chain) {
  ArcTrack track{};
  track.kind = chain.front().kind;
  track.arcs = std::move(chain);
  for (const Arc& arc : track.arcs) {
    track.centres.push_back(
        {0.5 * (arc.start.x + arc.end.x), arc.circle.centre.x, arc.circle.centre.y});
  }
  const int lines = track.arcs.back().line - track.arcs.front().line + 1;
  track.coverage = static_cast<double>(track.arcs.size()) / static_cast<double>(lines);
  track.length = compute2DLen(track.centres.front(), track.centres.back());
  track.centreLine = fitCentreLine(track.centres);
  measureRadii(scan, track);
  return track;
}

}  // namespace

std::vector<ArcTrack> followArcs(const Scan& scan,
                                 const FoundArcs& found,
                                 const ArcParams& params) {
  std::vector<Chain> chains = ringChains(found, params.grow);
  for (Chain& chain : tubeChains(found, params.grow)) {
    chains.push_back(std::move(chain));
  }
  std::vector<ArcTrack> tracks;
  for (Chain& chain : chains) {
    ArcTrack track = measured(scan, std::move(chain));
    // The library keeps trees of the last line whatever their length.
    if (track.length > params.grow.minLTypeTreeLen && track.coverage >= params.minCoverage) {
      tracks.push_back(std::move(track));
    }
  }
  std::stable_sort(tracks.begin(), tracks.end(),
                   [](const ArcTrack& a, const ArcTrack& b) { return a.length > b.length; });
  return tracks;
}

}  // namespace program
