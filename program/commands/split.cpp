#include "roads/split.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "draw/map_picture.h"
#include "output/ply_file.h"
#include "plane/plane_report.h"

namespace program {
namespace {

struct Split {
  explicit Split(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
};

/// A colour for an object by its number, so that neighbours in the table differ.
Colour colourOf(std::size_t number) {
  static const Colour colours[] = {{1.00, 0.42, 0.30}, {0.34, 0.80, 0.95}, {1.00, 0.80, 0.26},
                                   {0.73, 0.53, 0.99}, {0.47, 0.88, 0.47}, {1.00, 0.54, 0.78},
                                   {0.94, 0.94, 0.94}, {1.00, 0.65, 0.33}};
  return colours[number % std::size(colours)];
}

/// The belt, without which there is no height to split by.
const PlaneCandidate& beltOf(const Split& split, const PlaneChoice& plane) {
  if (!plane.chosen) {
    throw Failure(ExitCode::nothingFound,
                  split.input.path +
                      ": no belt or table found, so there is nothing that objects could rise over. "
                      "Choose one with --plane; scanline calibrate compares all methods");
  }
  if (plane.chosen->isGround) {
    throw Failure(ExitCode::usage,
                  "--plane ground: that plane is level in y, not z, and objects do not rise over "
                  "it. Choose another --plane");
  }
  return *plane.chosen;
}

/// Decimals that show a fiftieth of a pixel.
int decimalsFor(double pixel) {
  return std::clamp(static_cast<int>(std::ceil(-std::log10(0.02 * pixel))), 0, 9);
}

Table objectTable(const std::vector<SplitObject>& objects, const std::string& unit, double pixel) {
  const int decimals = decimalsFor(pixel);
  Table table = {"objects",
                 "Objects, in the order of x",
                 {{"id", ""},
                  {"x", unit, decimals},
                  {"y", unit, decimals},
                  {"length", unit, decimals},
                  {"width", unit, decimals},
                  {"angle", "deg", 1},
                  {"height", unit, decimals},
                  {"area", unit + "^2", decimalsFor(pixel * pixel)},
                  {"samples", ""}},
                 {}};
  for (const SplitObject& object : objects) {
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), object.x, object.y,
                          object.length, object.width, object.angle, object.height, object.area,
                          object.samples});
  }
  return table;
}

Table outlineTable(const std::vector<SplitObject>& objects, const PlaneChoice& plane) {
  Table table = {"outlines", "", {{"object", ""}, {"x", ""}, {"y", ""}, {"z", ""}}, {}};
  long long id = 0;
  for (const SplitObject& object : objects) {
    ++id;
    for (const STesk3DPoint& p : object.outline) {
      table.rows.push_back({id, p.x, p.y, plane.shown(p.z)});
    }
  }
  return table;
}

void warnOfPlane(const PlaneCandidate& belt, Messages& messages) {
  constexpr double kFew = 0.3;
  if (belt.onPlane < kFew) {
    messages.warn("few-on-plane",
                  "only " + fixed(100.0 * belt.onPlane, 1) +
                      " % of the samples lie near the plane. If it is not the belt or the table, "
                      "what lies over it is not an object; choose another with --plane");
  }
}

Picture pictureOf(const Split& split,
                  const PreparedScan& scan,
                  const std::vector<SplitObject>& objects,
                  double minHeight) {
  MapContent content;
  content.title = "Objects of " + split.input.path.substr(split.input.path.find_last_of('/') + 1);
  content.subtitle = counted(objects.size(), "object") + " at least " + significant(minHeight, 3) +
                     " " + split.input.unit + " over the plane";
  content.unit = split.input.unit;
  content.colours = split.common.colours;
  for (const SplitObject& object : objects) {
    MapPath path = {{}, colourOf(content.paths.size())};
    for (const STesk3DPoint& p : object.outline) {
      path.points.emplace_back(p.x, p.y);
    }
    path.points.push_back(path.points.front());
    content.paths.push_back(std::move(path));
    content.labels.push_back(
        {std::to_string(content.paths.size()), {object.labelX, object.labelY}});
  }
  return mapPicture(scan.loaded.scan, scan.extent, scan.plane, std::move(content));
}

bool writeOutlinesAsPly(const std::string& path,
                        const Scan& scan,
                        const std::vector<SplitObject>& objects) {
  std::vector<PlyPath> paths;
  for (const SplitObject& object : objects) {
    PlyPath outline = {object.outline, colourOf(paths.size())};
    outline.points.push_back(object.outline.front());
    paths.push_back(std::move(outline));
  }
  return writePly(path, scan, paths);
}

SplitResult findObjects(const Split& split,
                        const PreparedScan& scan,
                        double beltZ,
                        const SplitParams& params,
                        Messages& messages) {
  Progress progress("Splitting", kSplitSteps, split.common.quiet);
  SplitResult result = splitObjects(scan.loaded.scan, beltZ, scan.extent, params, progress);
  if (result.outside > 0) {
    messages.warn("outside-map", "left out " + counted(result.outside, "sample") +
                                     " over the belt, far outside of all others. Limit the scan "
                                     "with --roi to look there");
  }
  return result;
}

std::vector<std::string> sentences(const Split& split,
                                   const PreparedScan& scan,
                                   const SplitParams& params,
                                   const SplitResult& result) {
  std::vector<std::string> lines = describe(split.input, scan);
  const std::string& unit = split.input.unit;
  std::string line = counted(result.objects.size(), "object") + ", at least " +
                     significant(params.minHeight, 4) + " " + unit + " high and " +
                     significant(params.minWidth, 4) + " " + unit + " wide";
  if (result.tooNarrow > 0) {
    line += "; left out as narrower: " + grouped(result.tooNarrow);
  }
  lines.push_back(std::move(line));
  return lines;
}

void run(Split& split) {
  Session session(split.command, split.common, split.parameters);
  if (split.plane.method == "none") {
    throw Failure(ExitCode::usage,
                  "--plane none: split needs the belt or table as the reference plane, since "
                  "objects are what rises over it. Choose another --plane");
  }
  const PreparedScan scan = session.prepare(split.input, split.plane);
  const PlaneCandidate& belt = beltOf(split, scan.plane);
  warnOfPlane(belt, session.messages);
  const SplitParams params =
      splitParams(split.parameters, scan.loaded.scan, scan.extent, belt.residual);
  if (session.printsConfig()) {
    return;
  }
  const SplitResult result = findObjects(split, scan, belt.height, params, session.messages);
  Report report;
  report.command = "split";
  report.csvTable = "objects";
  report.fields = {inputField(split.input, scan.loaded, scan.raw),
                   axesField(split.input, scan.plane), planeField(scan.plane)};
  report.lines = sentences(split, scan, params, result);
  report.tables = {objectTable(result.objects, split.input.unit, params.pixel),
                   outlineTable(result.objects, scan.plane)};
  if (!split.common.ply.empty()) {
    session.files.add(split.common.ply, [&](const std::string& path) {
      return writeOutlinesAsPly(path, scan.loaded.scan, result.objects);
    });
  }
  session.finish(report, pictureOf(split, scan, result.objects, params.minHeight));
  if (result.objects.empty()) {
    throw Failure(ExitCode::nothingFound,
                  split.input.path + ": no object found. Nothing as wide as " +
                      significant(params.minWidth, 4) + " " + split.input.unit + " rises " +
                      significant(params.minHeight, 4) + " " + split.input.unit +
                      " over the plane. Try a smaller --split-min-height or --split-min-width, or "
                      "another --plane; if z is a height, give --z-is-height, else leave it out");
  }
}

}  // namespace

void addSplit(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("split", "Find, divide and outline the objects on a belt or a table");
  command->footer("Example: scanline split belt.tiff --picture objects.png --csv objects.csv");
  const auto split = std::make_shared<Split>(*command);
  addInputOptions(*command, split->input);
  addPlaneOptions(*command, split->plane);
  addSplitParameters(split->parameters);
  addColourOption(*command, split->common);
  addCommonOptions(*command, split->common,
                   {"objects", "the scan with the outlines over it",
                    "the map with the outlines, numbered as in the table"});
  command->final_callback([split, &body] { body = [split] { run(*split); }; });
}

}  // namespace program
