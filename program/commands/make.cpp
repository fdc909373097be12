#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/make_tables.h"
#include "commands/session.h"
#include "make/made_scan.h"
#include "make/profile_shapes.h"
#include "output/scan_file.h"

namespace program {
namespace {

constexpr int kDefaultObjects = 14;
constexpr int kMostObjects = 100;

struct Make {
  explicit Make(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  std::string kind;
  std::string shape;  ///< Empty: not given.
  std::string output;
};

const SceneKind& kindOf(const std::string& name) {
  return *std::find_if(sceneKinds().begin(), sceneKinds().end(),
                       [&](const SceneKind& kind) { return kind.name == name; });
}

Report reportOf(const Make& make, const MadeScan& made) {
  Report report;
  report.command = "make";
  report.fields = {
      field("kind", make.kind),
      field("shape", make.shape.empty() ? Cell{} : Cell{make.shape}),
      field("unit", std::string("mm")),
      field("lines", static_cast<long long>(made.scan.size())),
      field("samples", static_cast<long long>(made.scan.front().size())),
      {"axes", std::vector<Field>{field("line_advances", std::string("x")),
                                  field("sample_follows", std::string("y")),
                                  field("z_is", std::string("distance"))}},
      {"plane", std::vector<Field>{field("levels", std::string(made.isGround ? "y" : "z")),
                                   field("tilt_deg", tiltDegrees(made)), field("a", made.plane.a),
                                   field("b", made.plane.b), field("c", made.plane.c)}}};
  const auto term = [](double slope, const char* axis) {
    return std::string(slope < 0.0 ? " - " : " + ") + significant(std::abs(slope), 4) + axis;
  };
  report.lines = {
      "Made: " + make.kind + (make.shape.empty() ? "" : " of shape " + make.shape) + ", " +
          counted(made.scan.size(), "line") + " of " + counted(made.scan.front().size(), "sample") +
          ", in mm; z is the distance from the sensor",
      "Plane: z = " + significant(made.plane.c, 5) + term(made.plane.a, " x") +
          term(made.plane.b, " y") + ", tilted by " + fixed(tiltDegrees(made), 2) + " deg"};
  report.tables = tablesOf(made);
  return report;
}

void checkShape(const Make& make) {
  const bool isProfile = make.kind == "profile";
  if (isProfile && make.shape.empty()) {
    throw Failure(ExitCode::usage,
                  "make profile: --shape is missing. Name one of the shapes that "
                  "'make --help' lists");
  }
  if (!isProfile && !make.shape.empty()) {
    throw Failure(ExitCode::usage, "--shape has no effect on '" + make.kind +
                                       "': only 'profile' has a shape to choose");
  }
}

/// Derives what the kind decides, and refuses what it does not use.
MakeParams paramsFor(Make& make, const SceneKind& kind) {
  const bool isBelt = make.kind == "belt";
  if (!isBelt && make.parameters.isGiven("objects")) {
    throw Failure(ExitCode::usage, "--objects has no effect on '" + make.kind +
                                       "': only 'belt' is made of a number of objects");
  }
  checkShape(make);
  make.parameters.derive("noise",
                         make.shape.empty() ? kind.defaultNoise : shapeNamed(make.shape).noise);
  if (isBelt) {
    make.parameters.derive("objects", kDefaultObjects);
  }
  const int objects = isBelt ? make.parameters.count("objects") : 0;
  if (isBelt && (objects < 1 || objects > kMostObjects)) {
    throw Failure(ExitCode::usage,
                  "--objects: give a number from 1 to " + std::to_string(kMostObjects));
  }
  return {static_cast<std::uint64_t>(make.parameters.count("seed")), make.parameters.get("noise"),
          objects, make.shape};
}

void run(Make& make) {
  Session session(make.command, make.common, make.parameters);
  const SceneKind& kind = kindOf(make.kind);
  const MakeParams params = paramsFor(make, kind);
  if (session.printsConfig()) {
    return;
  }
  session.files.check(make.output, {});
  session.files.check(make.common.json, {});
  Progress progress("Making the " + make.kind, kind.lines, make.common.quiet);
  const MadeScan made = kind.make(params, progress);
  addScanFile(session.files, make.output, made.scan, extentOf(made.scan), session.messages);
  Report report = reportOf(make, made);
  session.finish(report);
}

/// What can be made, and how noisy a kind is unless --noise is given.
std::string listOfKinds() {
  std::string list = "Kinds, with their noise:";
  for (const SceneKind& kind : sceneKinds()) {
    list += std::string("\n  ") + kind.name + ": " + kind.shows + "; " + exact(kind.defaultNoise) +
            " mm";
  }
  list +=
      "\n\nShapes of a profile; hills, beads, tubes and bowls have no noise unless it is given:";
  for (const ProfileShape& shape : profileShapes()) {
    list += std::string("\n  ") + shape.name + ": " + shape.shows;
  }
  return list;
}

CLI::Validator scanFile() {
  return {[](std::string& path) {
            const std::string own = std::filesystem::path(path).extension().string();
            return own == ".tiff" || own == ".tif" || own == ".npy"
                       ? std::string{}
                       : "'" + path + "' must end in .tiff or .tif or .npy";
          },
          ""};
}

}  // namespace

void addMake(CLI::App& program, Body& body) {
  CLI::App* command = program.add_subcommand("make", "Make a scan whose contents are known");
  command->footer(listOfKinds() +
                  "\n\nExample: scanline make bench --output bench.tiff --json truth.json");
  const auto make = std::make_shared<Make>(*command);
  std::vector<std::string> names;
  for (const SceneKind& kind : sceneKinds()) {
    names.emplace_back(kind.name);
  }
  command->add_option("KIND", make->kind, "What the scan shows, see below")
      ->required()
      ->check(CLI::IsMember(names).description(""))
      ->type_name("NAME");
  std::vector<std::string> shapes;
  for (const ProfileShape& shape : profileShapes()) {
    shapes.emplace_back(shape.name);
  }
  command->add_option("--shape", make->shape, "Shape of the profile, see below; of no other kind")
      ->check(CLI::IsMember(shapes).description(""))
      ->type_name("NAME")
      ->group("Method");
  command->add_option("-o,--output", make->output, "The scan: TIFF or, in double precision, NPY")
      ->required()
      ->check(scanFile())
      ->type_name("FILE")
      ->group("Output");
  make->parameters.add("seed", Kind::count, 1,
                       "Number that noise, dropouts and the belt's objects are made from");
  make->parameters.addDerived("noise", Kind::length, "by the kind, see below",
                              "Standard deviation of z in mm");
  make->parameters.addDerived("objects", Kind::count, std::to_string(kDefaultObjects),
                              "Bags and boxes on the belt; of no other kind");
  addCommonOptions(*command, make->common, {});
  command->final_callback([make, &body] { body = [make] { run(*make); }; });
}

}  // namespace program
