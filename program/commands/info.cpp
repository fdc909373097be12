#include <CLI/CLI.hpp>
#include <memory>

#include "base/number.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "plane/plane_report.h"

namespace program {
namespace {

struct Info {
  explicit Info(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
};

Table extentTable(const Extent& extent, const std::string& unit) {
  Table table = {
      "extents", "Extent", {{"axis", ""}, {"from", unit}, {"to", unit}, {"spacing", unit}}, {}};
  table.rows = {
      {std::string("x, from line to line"), extent.x.min, extent.x.max, extent.lineSpacing},
      {std::string("y, along the lines"), extent.y.min, extent.y.max, extent.sampleSpacing},
      {std::string("z, distance"), extent.z.min, extent.z.max, Cell{}}};
  return table;
}

Table sampleTable(const LoadedScan& loaded) {
  Table table = {
      "sample_counts", "Samples", {{"samples", ""}, {"count", ""}, {"share", "%", 2}}, {}};
  const auto row = [&](const char* name, long long count) {
    table.rows.push_back(
        {std::string(name), count,
         100.0 * static_cast<double>(count) / static_cast<double>(std::max(loaded.samples, 1LL))});
  };
  row("in the file", loaded.samples);
  row("holes", loaded.holes);
  row("at or below zero", loaded.notPositive);
  row("strays", loaded.strays);
  row("outside of --roi", loaded.outside);
  return table;
}

void run(Info& info) {
  Session session(info.command, info.common, info.parameters);
  LoadedScan loaded = session.load(info.input);
  if (session.printsConfig()) {
    return;
  }
  const Extent extent = extentOf(loaded.scan);
  Report report;
  report.command = "info";
  report.csvTable = "planes";
  report.fields = {inputField(info.input, loaded, extent), axesField(info.input, {})};
  report.lines = {"Scan: " + info.input.path + ", " + loaded.format + ", " +
                      counted(loaded.scan.size(), "line"),
                  "Noise along the lines: " + significant(extent.noise, 3) + " " + info.input.unit};
  report.tables = {sampleTable(loaded), extentTable(extent, info.input.unit),
                   planeTable(tryAllPlanes(loaded.scan, extent, info.plane), info.input.unit)};
  session.finish(report);
}

}  // namespace

void addInfo(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("info", "Describe a scan: size, holes, extent, planes");
  command->footer("Example: scanline info scan.tiff --unit mm");
  const auto info = std::make_shared<Info>(*command);
  addInputOptions(*command, info->input);
  refusePlane(*command, "all are compared, and the scan is described as it was read");
  addCommonOptions(*command, info->common, {"planes"});
  command->final_callback([info, &body] { body = [info] { run(*info); }; });
}

}  // namespace program
