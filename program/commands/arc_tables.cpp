#include "commands/arc_tables.h"

#include <map>
#include <tuple>

namespace program {
namespace {

std::string nameOf(ArcKind kind) {
  return kind == ArcKind::ring ? "ring" : "tube";
}

/// Identifies an arc in its scan.
using ArcKey = std::tuple<ArcKind, int, int>;

ArcKey keyOf(const Arc& arc) {
  return {arc.kind, arc.line, arc.firstSample};
}

std::map<ArcKey, long long> tracksOf(const std::vector<ArcTrack>& tracks) {
  std::map<ArcKey, long long> ids;
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    for (const Arc& arc : tracks[i].arcs) {
      ids[keyOf(arc)] = static_cast<long long>(i + 1);
    }
  }
  return ids;
}

}  // namespace

Table trackTable(const std::vector<ArcTrack>& tracks,
                 const PlaneChoice& plane,
                 const std::string& unit) {
  Table table = {"tracks",
                 "Arcs followed across the scan, the longest first",
                 {{"id", ""},
                  {"kind", ""},
                  {"first line", ""},
                  {"last line", ""},
                  {"seen on", "%", 1, kOnlyInFiles},
                  {"length", unit, 2},
                  {"radius", unit},
                  {"deviation", unit, 3, kOnlyInFiles},
                  {"residual", unit},
                  {"radius across", unit},
                  {"deviation across", unit, 3, kOnlyInFiles},
                  {"x", unit, 2},
                  {"y", unit, 2},
                  {"z", unit, 2, kOnlyInFiles},
                  {"dx", "", 4, kOnlyInFiles},
                  {"dy", "", 4, kOnlyInFiles},
                  {"dz", "", 4, kOnlyInFiles},
                  {"rms", unit, 3, kOnlyInFiles}},
                 {}};
  for (const ArcTrack& track : tracks) {
    const CentreLine& line = track.centreLine;
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), nameOf(track.kind),
                          static_cast<long long>(track.arcs.front().line),
                          static_cast<long long>(track.arcs.back().line), 100.0 * track.coverage,
                          track.length, track.meanRadius, track.radiusDeviation, track.meanRms,
                          track.radiusAcross, track.acrossDeviation, line.centre.x, line.centre.y,
                          plane.shown(line.centre.z), line.direction.x, line.direction.y,
                          plane.shownStep(line.direction.z), line.deviation.rms});
  }
  return table;
}

Table arcTable(const FoundArcs& found,
               const std::vector<ArcTrack>& tracks,
               const PlaneChoice& plane) {
  Table table = {"arcs",
                 "",
                 {{"track", ""},
                  {"kind", ""},
                  {"line", ""},
                  {"first sample", ""},
                  {"last sample", ""},
                  {"x", ""},
                  {"centre y", ""},
                  {"centre z", ""},
                  {"radius", ""},
                  {"residual", ""},
                  {"samples", ""},
                  {"span", ""},
                  {"width", ""}},
                 {}};
  const std::map<ArcKey, long long> ids = tracksOf(tracks);
  for (const std::vector<Arc>& line : found.lines) {
    for (const Arc& arc : line) {
      const auto id = ids.find(keyOf(arc));
      table.rows.push_back(
          {id == ids.end() ? Cell{} : Cell{id->second}, nameOf(arc.kind),
           static_cast<long long>(arc.line), static_cast<long long>(arc.firstSample),
           static_cast<long long>(arc.lastSample), 0.5 * (arc.start.x + arc.end.x),
           arc.circle.centre.x, plane.shown(arc.circle.centre.y), arc.circle.radius, arc.circle.rms,
           static_cast<long long>(arc.circle.count), arc.span, arc.width});
    }
  }
  return table;
}

}  // namespace program
