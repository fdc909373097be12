#include "roads/gaps.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/gap_tables.h"
#include "commands/session.h"
#include "draw/map_picture.h"
#include "output/ply_file.h"
#include "plane/plane_report.h"

namespace program {
namespace {

constexpr Colour kEdges = {1.00, 0.80, 0.16};
constexpr Colour kCentre = {1.00, 0.28, 0.19};

struct Gaps {
  explicit Gaps(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
  GapFloors floors = GapFloors::any;
};

/// The edges on one side of a gap, from line to line.
std::vector<STesk3DPoint> edgeLine(const GapTrack& track, std::size_t side) {
  std::vector<STesk3DPoint> points;
  for (const Gap& gap : track.gaps) {
    points.push_back(gap.edges[side].at);
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

Picture pictureOf(const Gaps& gaps, const PreparedScan& scan, const std::vector<GapTrack>& tracks) {
  constexpr std::size_t kMostLabels = 40;
  MapContent content;
  content.title = "Gaps of " + gaps.input.path.substr(gaps.input.path.find_last_of('/') + 1);
  content.subtitle =
      counted(tracks.size(), "gap") + " over " + counted(scan.loaded.scan.size(), "line");
  content.unit = gaps.input.unit;
  content.colours = gaps.common.colours;
  for (auto track = tracks.rbegin(); track != tracks.rend(); ++track) {
    content.paths.push_back(onMap(edgeLine(*track, 0), kEdges));
    content.paths.push_back(onMap(edgeLine(*track, 1), kEdges));
    content.paths.push_back(onMap(track->centres, kCentre));
  }
  for (std::size_t i = 0; i < std::min(tracks.size(), kMostLabels); ++i) {
    const STesk3DPoint& middle = tracks[i].centres[tracks[i].centres.size() / 2];
    content.labels.push_back({std::to_string(i + 1), {middle.x, middle.y}});
  }
  content.legend = {{Swatch::line, kEdges, "edges"}, {Swatch::line, kCentre, "middle of the gap"}};
  return mapPicture(scan.loaded.scan, scan.extent, scan.plane, std::move(content));
}

bool writeGapsAsPly(const std::string& path,
                    const Scan& scan,
                    const std::vector<GapTrack>& tracks) {
  std::vector<PlyPath> paths;
  for (const GapTrack& track : tracks) {
    paths.push_back({edgeLine(track, 0), kEdges});
    paths.push_back({edgeLine(track, 1), kEdges});
    paths.push_back({track.centres, kCentre});
  }
  return writePly(path, scan, paths);
}

/// What was found on the lines, in a sentence each.
std::vector<std::string> countsOf(const FoundGaps& found, const std::vector<GapTrack>& tracks) {
  std::size_t all = 0;
  for (const std::vector<Gap>& line : found.lines) {
    all += line.size();
  }
  std::size_t followed = 0;
  for (const GapTrack& track : tracks) {
    followed += track.gaps.size();
  }
  return {"Gaps on the lines: " + grouped(static_cast<long long>(all)) + ", of which " +
          grouped(static_cast<long long>(followed)) + " followed across the scan. " +
          counted(found.refused, "pair") +
          " of edges refused as ribs or steps: the floor is not deeper than both"};
}

void failIfNone(const std::string& file,
                const FoundGaps& found,
                const std::vector<GapTrack>& tracks) {
  if (!tracks.empty()) {
    return;
  }
  const bool anyOnLines = std::any_of(found.lines.begin(), found.lines.end(),
                                      [](const std::vector<Gap>& line) { return !line.empty(); });
  throw Failure(
      ExitCode::nothingFound,
      file + (anyOnLines
                  ? ": no gap could be followed across the scan, though lines have some. Raise "
                    "--tree-lines and --tree-y, or lower --tree-length and --tree-seen"
                  : ": no line has a gap. Try another --gap-scale, --gap-width-max or "
                    "--gap-depth-min, and --z-is-height if the file holds heights"));
}

void run(Gaps& gaps) {
  Session session(gaps.command, gaps.common, gaps.parameters);
  const PreparedScan scan = session.prepare(gaps.input, gaps.plane);
  GapParams params = gapParams(gaps.parameters, scan.extent);
  params.floors = gaps.floors;
  if (session.printsConfig()) {
    return;
  }
  Progress progress("Finding gaps", static_cast<long long>(scan.loaded.scan.size()),
                    gaps.common.quiet);
  const FoundGaps found = findGaps(scan.loaded.scan, params, progress);
  const std::vector<GapTrack> tracks = followGaps(found, params);
  Report report;
  report.command = "gaps";
  report.csvTable = "nodes";
  report.fields = {inputField(gaps.input, scan.loaded, scan.raw), axesField(gaps.input, scan.plane),
                   planeField(scan.plane)};
  report.lines = describe(gaps.input, scan);
  const std::vector<std::string> counts = countsOf(found, tracks);
  report.lines.insert(report.lines.end(), counts.begin(), counts.end());
  report.tables = {gapTable(tracks, gaps.input.unit),
                   centreLineTable(tracks, scan.plane, gaps.input.unit),
                   interruptionTable(tracks, gaps.input.unit), gapNodeTable(tracks, scan.plane)};
  if (!gaps.common.ply.empty()) {
    session.files.add(gaps.common.ply, [&](const std::string& path) {
      return writeGapsAsPly(path, scan.loaded.scan, tracks);
    });
  }
  session.finish(report, pictureOf(gaps, scan, tracks));
  failIfNone(gaps.input.path, found, tracks);
}

}  // namespace

void addGaps(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("gaps", "Follow gaps across a scan: seams, slots, joints");
  command->footer(
      "Finds gaps that cross the lines; --transpose finds those that run along them.\n"
      "Width is measured along the lines, \"width across\" at a right angle to the gap.\n"
      "Example: scanline gaps plates.tiff --gap-width-max 5 --picture gaps.png --csv gaps.csv");
  const auto gaps = std::make_shared<Gaps>(*command);
  addInputOptions(*command, gaps->input);
  addPlaneOptions(*command, gaps->plane);
  addGapParameters(gaps->parameters);
  const std::map<std::string, GapFloors> floors = {
      {"any", GapFloors::any}, {"measured", GapFloors::measured}, {"open", GapFloors::open}};
  command
      ->add_option_function<std::string>(
          "--floor", [gaps, floors](const std::string& name) { gaps->floors = floors.at(name); },
          "Gaps with a measured floor, open ones without any samples, or any: measured, open or "
          "any "
          "(default: any)")
      ->check(CLI::IsMember(floors).description(""))
      ->type_name("KIND")
      ->group("Method");
  addColourOption(*command, gaps->common);
  addCommonOptions(*command, gaps->common,
                   {"gaps of the lines, with both edges,", "the scan with the gaps over it",
                    "the map with the gaps"});
  command->final_callback([gaps, &body] { body = [gaps] { run(*gaps); }; });
}

}  // namespace program
