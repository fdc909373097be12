/**
 * @file
 * Calibrates scans in every way that the library has, side by side, and registers two scans.
 *
 * The calls of the library are in methods.cpp and registration.cpp; the rest of the program makes
 * or reads scans and shows what came out.
 */

#include <CLI/CLI.hpp>
#include <tuple>
#include <utility>

#include "methods.h"
#include "program.h"
#include "progress.h"
#include "registration.h"
#include "report.h"
#include "scan_input.h"
#include "scenes.h"

namespace examples {
namespace {

struct Options {
  ScanFileOptions file;
  std::string unit;
  double band = 1.0;
  double noise = 0.05;
  std::vector<std::tuple<double, double, double, double>> regions;
};

void addOptions(CLI::App& app, Options& options) {
  constexpr double kLargest = 1e9;
  addScanFileOptions(app, options.file);
  app.add_option("--unit", options.unit, "Name of the scan's unit of length, for the labels")
      ->type_name("NAME");
  app.add_option("--band", options.band, "A levelled sample this close to the plane is on it")
      ->check(numberIn(1e-9, kLargest))
      ->capture_default_str()
      ->type_name("LENGTH");
  app.add_option("--noise", options.noise, "Noise of the moved points of the registration")
      ->check(numberIn(0.0, kLargest))
      ->capture_default_str()
      ->type_name("LENGTH");
  app.add_option("--region", options.regions,
                 "Where the plane is seen, repeatable (default: the corners of the scan)")
      ->check(numberIn(-kLargest, kLargest).description(""))
      ->type_name("XMIN XMAX YMIN YMAX");
}

/// One scan for each family of methods: of the file, or made to suit it.
struct Scenes {
  Scene heights;
  Scene hole;
  Scene ground;
};

Scenes loadScenes(const Options& options) {
  if (options.file.path.empty()) {
    return {makePlateScene(), makeHoleScene(), makeGroundScene()};
  }
  const Scene scene = {"file", readScan(options.file), std::nullopt};
  return {scene, scene, scene};
}

std::vector<STesk3DRangeD> regionsFor(const Options& options, const SJU_pointCloudPara& cloud) {
  std::vector<STesk3DRangeD> regions;
  for (const auto& [xMin, xMax, yMin, yMax] : options.regions) {
    if (xMin > xMax || yMin > yMax) {
      throw UserError("--region: give the lower end of x and of y before the upper one");
    }
    regions.push_back(regionOf({xMin, xMax}, {yMin, yMax}));
  }
  return regions.empty() ? cornerRegions({cloud.xRange, cloud.yRange, cloud.zRange}) : regions;
}

std::vector<Calibration> calibrateAll(Scenes scenes, const Options& options) {
  const SJU_pointCloudPara cloud = measureScan(scenes.heights.scan);
  const std::vector<STesk3DRangeD> regions = regionsFor(options, cloud);
  std::vector<Calibration> calibrations;
  Progress progress("Calibrating", 5);
  const auto take = [&](Calibration calibration) {
    calibrations.push_back(std::move(calibration));
    progress.advance();
  };
  take(byLowestHeight(scenes.heights, options.band));
  take(byMeanHeight(scenes.heights, options.band));
  take(byRegions(scenes.heights, regions, options.band));
  take(byUnbrokenLines(std::move(scenes.hole), options.band));
  take(byGround(std::move(scenes.ground)));
  return calibrations;
}

void calibrate(const Options& options) {
  const Scenes scenes = loadScenes(options);
  const std::string madeUnit = options.file.path.empty() ? "mm" : "units";
  const std::string unit = options.unit.empty() ? madeUnit : options.unit;
  printCalibrations(calibrateAll(scenes, options), unit);
  printRegistration(registerMoved(scenes.heights.scan, options.noise), unit);
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  examples::Options options;
  const examples::ProgramHead head = {
      "calibrate", "Calibrates a laser-line scan in every way: of a file, or scans that it makes.",
      [&](CLI::App& app) { examples::addOptions(app, options); }};
  return examples::runProgram(head, argc, argv, [&] { examples::calibrate(options); });
}
