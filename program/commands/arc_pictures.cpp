#include "commands/arc_pictures.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"
#include "draw/map_picture.h"
#include "draw/profile_picture.h"
#include "output/ply_file.h"

namespace program {
namespace {

constexpr Colour kEnds = {1.00, 0.80, 0.16};
constexpr Colour kRing = {1.00, 0.28, 0.19};
constexpr Colour kTube = {0.40, 0.85, 0.95};
constexpr Colour kCircle = {0.85, 0.20, 0.15};

Colour colourOf(ArcKind kind) {
  return kind == ArcKind::ring ? kRing : kTube;
}

std::string fileNameOf(const InputOptions& input) {
  return input.path.substr(input.path.find_last_of('/') + 1);
}

/// The ends of the arcs on one side, from line to line.
std::vector<STesk3DPoint> endLine(const ArcTrack& track, STesk3DPoint Arc::*end) {
  std::vector<STesk3DPoint> points;
  for (const Arc& arc : track.arcs) {
    points.push_back(arc.*end);
  }
  return points;
}

MapPath onMap(const std::vector<STesk3DPoint>& points, Colour colour) {
  MapPath path = {{}, colour};
  for (const STesk3DPoint& p : points) {
    path.points.emplace_back(p.x, p.y);
  }
  return path;
}

/// The line with the most arcs, the middle one of all such.
std::size_t lineOfMost(const FoundArcs& found) {
  std::vector<std::size_t> best;
  std::size_t most = 0;
  for (std::size_t l = 0; l < found.lines.size(); ++l) {
    const std::size_t count = found.lines[l].size();
    if (count > most) {
      best.clear();
      most = count;
    }
    if (count == most) {
      best.push_back(l);
    }
  }
  return best[best.size() / 2];
}

/// A place on an arc's circle, from 0.0 at its start to 1.0 at its end.
STesk3DPoint onCircle(const Arc& arc, double share) {
  const Circle& circle = arc.circle;
  const double from = std::atan2(arc.start.y - circle.centre.x, circle.centre.y - arc.start.z);
  const double to = std::atan2(arc.end.y - circle.centre.x, circle.centre.y - arc.end.z);
  const double angle = from + share * (to - from);
  return {arc.start.x, circle.centre.x + circle.radius * std::sin(angle),
          circle.centre.y - circle.radius * std::cos(angle)};
}

/// A circle's part along the arc, and a little beyond, as samples; a missing one ends it.
void appendCircle(const Arc& arc, Line& samples) {
  constexpr int kSteps = 60;
  constexpr double kBeyond = 0.08;
  for (int i = 0; i <= kSteps; ++i) {
    const double share = (1.0 + 2.0 * kBeyond) * i / kSteps - kBeyond;
    samples.push_back({0, onCircle(arc, share)});
  }
  samples.push_back({0, {}});
}

}  // namespace

Picture arcMap(const InputOptions& input,
               const PreparedScan& scan,
               const std::vector<ArcTrack>& tracks,
               const std::optional<STeskRangeD>& colours) {
  constexpr std::size_t kMostLabels = 40;
  MapContent content;
  content.title = "Arcs of " + fileNameOf(input);
  content.subtitle =
      counted(tracks.size(), "arc") + " followed over " + counted(scan.loaded.scan.size(), "line");
  content.unit = input.unit;
  content.colours = colours;
  content.legend = {{Swatch::line, kEnds, "ends"}};
  for (auto track = tracks.rbegin(); track != tracks.rend(); ++track) {
    content.paths.push_back(onMap(endLine(*track, &Arc::start), kEnds));
    content.paths.push_back(onMap(endLine(*track, &Arc::end), kEnds));
    content.paths.push_back(onMap(track->centres, colourOf(track->kind)));
  }
  for (std::size_t i = 0; i < std::min(tracks.size(), kMostLabels); ++i) {
    const STesk3DPoint& middle = tracks[i].centres[tracks[i].centres.size() / 2];
    content.labels.push_back({std::to_string(i + 1), {middle.x, middle.y}});
  }
  const auto has = [&](ArcKind kind) {
    return std::any_of(tracks.begin(), tracks.end(),
                       [=](const ArcTrack& track) { return track.kind == kind; });
  };
  if (has(ArcKind::ring)) {
    content.legend.push_back({Swatch::line, kRing, "centre of a ring arc"});
  }
  if (has(ArcKind::tube)) {
    content.legend.push_back({Swatch::line, kTube, "centre of a tube"});
  }
  return mapPicture(scan.loaded.scan, scan.extent, scan.plane, std::move(content));
}

Picture arcProfile(const InputOptions& input, const PreparedScan& scan, const FoundArcs& found) {
  ProfileContent content;
  content.unit = input.unit;
  if (scan.loaded.scan.empty()) {
    return profilePicture(scan.plane, std::move(content));
  }
  const std::size_t l = lineOfMost(found);
  Line circles;
  for (const Arc& arc : found.lines[l]) {
    appendCircle(arc, circles);
    content.marks.push_back(
        {onCircle(arc, 0.5), colourOf(arc.kind), "r " + significant(arc.circle.radius, 4)});
  }
  content.title = "Arcs on line " + std::to_string(l) + " of " + fileNameOf(input);
  content.subtitle =
      counted(found.lines[l].size(), "arc") + ", each with its radius in " + input.unit;
  content.traces = {{scan.loaded.scan[l], ink::kTrace, true, "samples"}};
  if (!circles.empty()) {
    content.traces.push_back({std::move(circles), kCircle, false, "fitted circles"});
  }
  return profilePicture(scan.plane, std::move(content));
}

bool writeArcsAsPly(const std::string& path,
                    const Scan& scan,
                    const std::vector<ArcTrack>& tracks) {
  std::vector<PlyPath> paths;
  for (const ArcTrack& track : tracks) {
    paths.push_back({endLine(track, &Arc::start), kEnds});
    paths.push_back({endLine(track, &Arc::end), kEnds});
    paths.push_back({track.centres, colourOf(track.kind)});
  }
  return writePly(path, scan, paths);
}

}  // namespace program
