#include "commands/gap_tables.h"

#include <algorithm>

namespace program {
namespace {

std::string floorOf(const GapTrack& track) {
  return track.openShare == 0.0 ? "measured" : track.openShare == 1.0 ? "open" : "partly open";
}

double longestInterruption(const GapTrack& track) {
  double longest = 0.0;
  for (const Interruption& one : track.interruptions) {
    longest = std::max(longest, one.length);
  }
  return longest;
}

}  // namespace

Table gapTable(const std::vector<GapTrack>& tracks, const std::string& unit) {
  Table table = {"gaps",
                 "Gaps, the longest first",
                 {{"id", ""},
                  {"first line", ""},
                  {"last line", ""},
                  {"seen on", "%", 1},
                  {"length", unit, 2},
                  {"width", unit, 3, kOnlyInFiles},
                  {"narrowest", unit, 3, kOnlyInFiles},
                  {"widest", unit, 3, kOnlyInFiles},
                  {"width across", unit},
                  {"depth", unit},
                  {"floor", ""},
                  {"interruptions", "", 0, kOnlyInFiles},
                  {"longest interruption", unit, 2, kOnlyInFiles}},
                 {}};
  for (const GapTrack& track : tracks) {
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1),
                          static_cast<long long>(track.gaps.front().line),
                          static_cast<long long>(track.gaps.back().line), 100.0 * track.coverage,
                          track.length, track.meanWidth, track.width.min, track.width.max,
                          track.widthAcross, track.meanDepth, floorOf(track),
                          static_cast<long long>(track.interruptions.size()),
                          longestInterruption(track)});
  }
  return table;
}

Table centreLineTable(const std::vector<GapTrack>& tracks,
                      const PlaneChoice& plane,
                      const std::string& unit) {
  Table table = {"centre_lines",
                 "Centre lines of the gaps: the straight ones run through x, y, z along dx, dy, dz",
                 {{"gap", ""},
                  {"fit", ""},
                  {"rms", unit},
                  {"largest", unit},
                  {"x", unit, 2},
                  {"y", unit, 2},
                  {"z", unit, 2},
                  {"dx", "", 4},
                  {"dy", "", 4},
                  {"dz", "", 4},
                  {"x0", "", 2, kOnlyInFiles},
                  {"a", "", 8, kOnlyInFiles},
                  {"b", "", 6, kOnlyInFiles},
                  {"c", "", 3, kOnlyInFiles}},
                 {}};
  for (const GapTrack& track : tracks) {
    const CentreLine& line = track.centreLine;
    const Deviation& deviation = line.parabola ? line.parabola->deviation : line.deviation;
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1),
                          std::string(line.parabola ? "parabola" : "line"), deviation.rms,
                          deviation.max, line.centre.x, line.centre.y, plane.shown(line.centre.z),
                          line.direction.x, line.direction.y, plane.shownStep(line.direction.z)});
    std::vector<Cell>& row = table.rows.back();
    if (const auto& parabola = line.parabola) {
      row.insert(row.end(), {parabola->x0, parabola->a, parabola->b, parabola->c});
    }
    row.resize(table.columns.size());
  }
  return table;
}

Table interruptionTable(const std::vector<GapTrack>& tracks, const std::string& unit) {
  Table table = {"interruptions",
                 "",
                 {{"gap", ""}, {"first line", ""}, {"last line", ""}, {"length", unit, 2}},
                 {}};
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    for (const Interruption& one : tracks[i].interruptions) {
      table.rows.push_back({static_cast<long long>(i + 1), static_cast<long long>(one.firstLine),
                            static_cast<long long>(one.lastLine), one.length});
    }
  }
  return table;
}

Table gapNodeTable(const std::vector<GapTrack>& tracks, const PlaneChoice& plane) {
  Table table = {"nodes", "", {{"gap", ""}, {"line", ""}}, {}};
  for (const std::string edge : {"1", "2"}) {
    for (const std::string what : {"sample ", "x ", "y ", "z "}) {
      table.columns.push_back({what + edge, ""});
    }
  }
  table.columns.insert(table.columns.end(), {{"width", ""}, {"depth", ""}, {"floor", ""}});
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    for (const Gap& gap : tracks[i].gaps) {
      std::vector<Cell> row = {static_cast<long long>(i + 1), static_cast<long long>(gap.line)};
      for (const GapEdge& edge : gap.edges) {
        row.insert(row.end(), {static_cast<long long>(edge.sample), edge.at.x, edge.at.y,
                               plane.shown(edge.at.z)});
      }
      row.insert(row.end(), {gap.width, gap.depth, std::string(gap.isOpen ? "open" : "measured")});
      table.rows.push_back(std::move(row));
    }
  }
  return table;
}

}  // namespace program
