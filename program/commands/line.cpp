#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/line_picture.h"
#include "commands/session.h"
#include "plane/plane_report.h"
#include "roads/extractors.h"

namespace program {
namespace {

struct LineCommand {
  explicit LineCommand(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
  int line = -1;
  std::string extractor;
};

const Extractor& extractorOf(const std::string& name) {
  return *std::find_if(extractors().begin(), extractors().end(),
                       [&](const Extractor& extractor) { return name == extractor.name; });
}

/// A parameter that the extractor does not read would have no effect.
void refuseUseless(const Parameters& parameters, const Extractor& extractor) {
  for (const Parameters::Parameter& p : parameters.all()) {
    const bool isRead = std::find(extractor.parameters.begin(), extractor.parameters.end(),
                                  p.name) != extractor.parameters.end();
    if (p.origin == Origin::given && !isRead) {
      throw Failure(ExitCode::usage, p.option->get_name() + " has no effect on the extractor '" +
                                         extractor.name + "'");
    }
  }
}

void checkLine(const LineCommand& options, const Scan& scan) {
  if (options.line >= static_cast<int>(scan.size())) {
    throw Failure(ExitCode::usage, "--line " + std::to_string(options.line) +
                                       ": the scan has lines 0 to " +
                                       std::to_string(scan.size() - 1));
  }
}

Table featureTable(const std::vector<FoundFeature>& features,
                   const PlaneChoice& plane,
                   const std::string& unit) {
  Table table = {"features",
                 "Features",
                 {{"id", ""},
                  {"kind", ""},
                  {"first sample", ""},
                  {"last sample", ""},
                  {"x", unit},
                  {"y", unit},
                  {"z", unit},
                  {"last y", unit, 3, kOnlyInFiles},
                  {"last z", unit, 3, kOnlyInFiles},
                  {"value", ""}},
                 {}};
  for (const FoundFeature& f : features) {
    table.rows.push_back({static_cast<long long>(table.rows.size() + 1), f.kind,
                          static_cast<long long>(f.firstSample),
                          static_cast<long long>(f.lastSample), f.from.x, f.from.y,
                          plane.shown(f.from.z), f.to.y, plane.shown(f.to.z), f.value});
  }
  return table;
}

void run(LineCommand& options) {
  Session session(options.command, options.common, options.parameters);
  const Extractor& extractor = extractorOf(options.extractor);
  refuseUseless(options.parameters, extractor);
  const PreparedScan scan = session.prepare(options.input, options.plane);
  checkLine(options, scan.loaded.scan);
  deriveExtractorParameters(options.parameters, scan.extent, scan.plane);
  options.parameters.useOnly(extractor.parameters);
  if (session.printsConfig()) {
    return;
  }
  Line line = scan.loaded.scan[static_cast<std::size_t>(options.line)];
  const auto features = extractor.find(line, {options.line, options.parameters, scan.plane});
  Report report;
  report.command = "line";
  report.csvTable = "features";
  report.fields = {inputField(options.input, scan.loaded, scan.raw),
                   axesField(options.input, scan.plane),
                   planeField(scan.plane),
                   {"line", Cell{static_cast<long long>(options.line)}},
                   {"extractor", Cell{options.extractor}}};
  report.lines = describe(options.input, scan);
  report.tables = {featureTable(features, scan.plane, options.input.unit)};
  const Line& given = scan.loaded.scan[static_cast<std::size_t>(options.line)];
  session.finish(report, linePicture({options.line, options.input.unit, extractor,
                                      options.parameters, scan.plane, given, line, features}));
}

}  // namespace

void addLine(CLI::App& program, Body& body) {
  CLI::App* command = program.add_subcommand("line", "Run any extractor on one line");
  std::string list = "Extractors:";
  std::vector<std::string> names;
  for (const Extractor& extractor : extractors()) {
    names.emplace_back(extractor.name);
    list += std::string("\n  ") + extractor.name + ": " + extractor.finds + "; reads";
    for (const char* parameter : extractor.parameters) {
      list += std::string(" ") + parameter;
    }
  }
  command->footer(
      list +
      "\n\nExample: scanline line scan.tiff --line 100 --extractor corners --picture line.png");
  const auto options = std::make_shared<LineCommand>(*command);
  addInputOptions(*command, options->input);
  addPlaneOptions(*command, options->plane);
  command->add_option("--line", options->line, "Index of the line, from 0")
      ->required()
      ->check(countIn(0, 100'000'000))
      ->type_name("INDEX")
      ->group("Method");
  command->add_option("--extractor", options->extractor, "Which search to run, see below")
      ->required()
      ->check(CLI::IsMember(names).description(""))
      ->type_name("NAME")
      ->group("Method");
  addExtractorParameters(options->parameters);
  addCommonOptions(*command, options->common, {"features", nullptr, "the line with its features"});
  command->final_callback([options, &body] { body = [options] { run(*options); }; });
}

}  // namespace program
