#include <CLI/CLI.hpp>
#include <memory>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/session.h"
#include "draw/map_picture.h"
#include "plane/plane_file.h"
#include "plane/plane_report.h"

namespace program {
namespace {

struct Calibrate {
  explicit Calibrate(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;
  PlaneOptions plane;
  std::string save;
};

std::string sentence(const PlaneChoice& choice) {
  if (!choice.chosen) {
    return "Chosen: none";
  }
  return "Chosen: " + choice.chosen->method + ", tilted by " +
         fixed(choice.chosen->tiltDegrees, 2) + " deg. --plane FILE applies what --save writes";
}

Picture pictureOf(const Calibrate& calibrate, const Scan& scan, const PlaneChoice& choice) {
  MapContent content;
  content.title = choice.chosen ? "Levelled by " + choice.chosen->method : "As it was read";
  content.subtitle = sentence(choice);
  content.unit = calibrate.input.unit;
  content.colours = calibrate.common.colours;
  return mapPicture(scan, extentOf(scan), choice, std::move(content));
}

void run(Calibrate& calibrate) {
  Session session(calibrate.command, calibrate.common, calibrate.parameters);
  if (calibrate.plane.method == "none" && !calibrate.save.empty()) {
    throw Failure(ExitCode::usage, "--save has no effect with --plane none");
  }
  session.files.check(calibrate.save, {calibrate.input.path});
  LoadedScan loaded = session.load(calibrate.input);
  if (session.printsConfig()) {
    return;
  }
  const Extent extent = extentOf(loaded.scan);
  PlaneOptions all = calibrate.plane;
  const std::vector<PlaneCandidate> planes = tryAllPlanes(loaded.scan, extent, all);
  PlaneChoice choice = choosePlane(loaded.scan, extent, calibrate.plane, session.messages);
  Report report;
  report.command = "calibrate";
  report.csvTable = "planes";
  report.fields = {inputField(calibrate.input, loaded, extent), axesField(calibrate.input, {}),
                   planeField(choice)};
  report.tables = {planeTable(planes, calibrate.input.unit)};
  report.lines = {sentence(choice)};
  if (choice.chosen && !calibrate.save.empty()) {
    const std::string plane = planeAsJson(*choice.chosen, calibrate.input.unit);
    session.files.add(calibrate.save, plane);
  }
  if (choice.chosen) {
    level(loaded.scan, choice);
  }
  session.saveScan(loaded.scan, extent);
  session.finish(report, pictureOf(calibrate, loaded.scan, choice));
  if (!choice.chosen && calibrate.plane.method != "none") {
    throw Failure(ExitCode::nothingFound, calibrate.input.path + ": no calibration finds a plane");
  }
}

}  // namespace

void addCalibrate(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("calibrate", "Compare all calibrations, and save the chosen plane");
  command->footer("Example: scanline calibrate table.tiff --plane farthest --save plane.json");
  const auto calibrate = std::make_shared<Calibrate>(*command);
  addInputOptions(*command, calibrate->input);
  addPlaneOptions(*command, calibrate->plane);
  command
      ->add_option("--save", calibrate->save, "Write the chosen plane, for --plane of any command")
      ->type_name("FILE")
      ->group("Output");
  addColourOption(*command, calibrate->common);
  addCommonOptions(*command, calibrate->common,
                   {"planes", nullptr, "the levelled scan", "the levelled scan"});
  command->final_callback([calibrate, &body] { body = [calibrate] { run(*calibrate); }; });
}

}  // namespace program
