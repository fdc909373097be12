#include "options.h"

#include <CLI/CLI.hpp>

#include "program.h"

namespace examples {
namespace {

void addLength(CLI::App& app, const std::string& name, double& value, const std::string& what) {
  constexpr double kShortest = 1e-6;
  constexpr double kLongest = 1e6;
  app.add_option(name, value, what)
      ->check(numberIn(kShortest, kLongest))
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group("Objects");
}

void addSceneOptions(CLI::App& app, SceneOptions& scene) {
  const std::string group = "Made belt";
  app.add_option("--seed", scene.seed, "Number that the belt is made from")
      ->check(CLI::Range(0, 1'000'000'000))
      ->capture_default_str()
      ->type_name("NUMBER")
      ->group(group);
  app.add_option("--objects", scene.objects, "Number of bags and boxes")
      ->check(CLI::Range(1, 100))
      ->capture_default_str()
      ->type_name("COUNT")
      ->group(group);
  app.add_option("--noise", scene.noise, "Standard deviation of the heights, in mm")
      ->check(numberIn(0.0, 100.0))
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group(group);
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  addScanFileOptions(app, options.file);
  addOutputOptions(app, options.output);
  addSceneOptions(app, options.scene);
  addLength(app, "--cut", options.cut, "What lies less than this above the belt belongs to it");
  addLength(app, "--step", options.step, "A step in height that parts two objects");
  addLength(app, "--min-width", options.minWidth, "Width of the narrowest object");
}

SplitParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud) {
  return {options.cut, options.step, options.minWidth, cloud.scanLineStep, cloud.ptStep};
}

}  // namespace examples
