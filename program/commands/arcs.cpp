#include "roads/arcs.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <limits>
#include <map>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "commands/arc_pictures.h"
#include "commands/arc_tables.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "plane/plane_report.h"

namespace program {
namespace {

struct Arcs {
  explicit Arcs(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
  ArcKinds kinds = ArcKinds::ring;
  std::string profile;
};

/// z of the plane that tubes lie over.
double planeZ(const PlaneChoice& plane) {
  return plane.chosen && !plane.chosen->isGround ? plane.chosen->height
                                                 : std::numeric_limits<double>::infinity();
}

std::size_t countOf(const FoundArcs& found) {
  std::size_t count = 0;
  for (const std::vector<Arc>& line : found.lines) {
    count += line.size();
  }
  return count;
}

std::string countsOf(const FoundArcs& found, const std::vector<ArcTrack>& tracks) {
  std::size_t followed = 0;
  for (const ArcTrack& track : tracks) {
    followed += track.arcs.size();
  }
  return "Arcs on the lines: " + grouped(static_cast<long long>(countOf(found))) + ", of which " +
         grouped(static_cast<long long>(followed)) + " followed across the scan. " +
         counted(found.refused, "candidate") + " refused: no circle within the limits fits";
}

void failIfNone(const std::string& file,
                const FoundArcs& found,
                const std::vector<ArcTrack>& tracks) {
  if (!tracks.empty()) {
    return;
  }
  throw Failure(
      ExitCode::nothingFound,
      file + (countOf(found) > 0
                  ? ": no arc could be followed across the scan, though lines have some. Raise "
                    "--tree-lines and --tree-y, or lower --tree-length and --tree-seen"
              : found.refused > 0
                  ? ": no line has an arc that fits a circle within the limits. Raise "
                    "--arc-rms, widen --arc-width-min and --arc-width-max, or lower "
                    "--arc-span"
                  : ": no line has an arc. Try another --arc-scale, or --kind tube for "
                    "narrow objects with holes around them"));
}

void addPictures(const Arcs& arcs,
                 const PreparedScan& scan,
                 const FoundArcs& found,
                 Session& session) {
  if (arcs.profile.empty()) {
    return;
  }
  const Picture profile = arcProfile(arcs.input, scan, found);
  session.files.add(arcs.profile,
                    [&](const std::string& path) { return writePicture(profile, path); });
}

void run(Arcs& arcs) {
  Session session(arcs.command, arcs.common, arcs.parameters);
  session.files.check(arcs.profile, {arcs.input.path});
  const PreparedScan scan = session.prepare(arcs.input, arcs.plane);
  ArcParams params = arcParams(arcs.parameters, scan.extent, planeZ(scan.plane));
  params.kinds = arcs.kinds;
  if (session.printsConfig()) {
    return;
  }
  Progress progress("Finding arcs", static_cast<long long>(scan.loaded.scan.size()),
                    arcs.common.quiet);
  const FoundArcs found = findArcs(scan.loaded.scan, params, progress);
  const std::vector<ArcTrack> tracks = followArcs(scan.loaded.scan, found, params);
  Report report;
  report.command = "arcs";
  report.csvTable = "arcs";
  report.fields = {inputField(arcs.input, scan.loaded, scan.raw), axesField(arcs.input, scan.plane),
                   planeField(scan.plane)};
  report.lines = describe(arcs.input, scan);
  report.lines.push_back(countsOf(found, tracks));
  report.tables = {trackTable(tracks, scan.plane, arcs.input.unit),
                   arcTable(found, tracks, scan.plane)};
  if (!arcs.common.ply.empty()) {
    session.files.add(arcs.common.ply, [&](const std::string& path) {
      return writeArcsAsPly(path, scan.loaded.scan, tracks);
    });
  }
  addPictures(arcs, scan, found, session);
  session.finish(report, arcMap(arcs.input, scan, tracks, arcs.common.colours));
  failIfNone(arcs.input.path, found, tracks);
}

/// Accepts the name of a picture.
std::string checkPicture(const std::string& path) {
  const auto endsWith = [&](const std::string& end) {
    return path.size() >= end.size() &&
           path.compare(path.size() - end.size(), end.size(), end) == 0;
  };
  return endsWith(".png") || endsWith(".svg") ? "" : "'" + path + "' must end in .png or .svg";
}

void addMethodOptions(CLI::App& command, Arcs& arcs) {
  const std::map<std::string, ArcKinds> kinds = {
      {"ring", ArcKinds::ring}, {"tube", ArcKinds::tube}, {"both", ArcKinds::both}};
  command
      .add_option_function<std::string>(
          "--kind", [&arcs, kinds](const std::string& name) { arcs.kinds = kinds.at(name); },
          "Ring arcs, which are parts of a line that turn away from the sensor; tubes, which are "
          "narrow runs of samples of their own with a top; or both: ring, tube or both (default: "
          "ring)")
      ->check(CLI::IsMember(kinds).description(""))
      ->type_name("KIND")
      ->group("Method");
  addArcParameters(arcs.parameters);
}

}  // namespace

void addArcs(CLI::App& program, Body& body) {
  CLI::App* command = program.add_subcommand(
      "arcs", "Fit circles to rods, cables and beads, and follow them across a scan");
  command->footer(
      "A circle is fitted in the plane of y and z, where a rod that does not run along x is an "
      "ellipse:\n\"radius\" is too large then. \"radius across\" is measured at a right angle to "
      "the rod. On short arcs\nthe fit underestimates the radius.\n"
      "Example: scanline arcs cables.tiff --arc-radius-max 5 --picture arcs.png --csv arcs.csv");
  const auto arcs = std::make_shared<Arcs>(*command);
  addInputOptions(*command, arcs->input);
  addPlaneOptions(*command, arcs->plane);
  addMethodOptions(*command, *arcs);
  addColourOption(*command, arcs->common);
  addCommonOptions(*command, arcs->common,
                   {"arcs of the lines, with their circles,", "the scan with the centres over it",
                    "the map with the arcs"});
  command
      ->add_option("--profile", arcs->profile,
                   "Draw the line with the most arcs, with their circles")
      ->type_name("FILE")
      ->group("Output")
      ->check(CLI::Validator([](std::string& path) { return checkPicture(path); }, ""));
  command->final_callback([arcs, &body] { body = [arcs] { run(*arcs); }; });
}

}  // namespace program
