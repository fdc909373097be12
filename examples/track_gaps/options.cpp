#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>

#include "program.h"

namespace examples {
namespace {

void addSceneOptions(CLI::App& app, SceneParams& scene) {
  const std::string group = "Made scene";
  app.add_option("--seed", scene.seed, "Seed of noise and dropouts")
      ->capture_default_str()
      ->type_name("NUMBER")
      ->group(group);
  app.add_option(
         "--noise", scene.noise,
         "Standard deviation of the noise of z; above 0.05 raise --scale and --rim-angle too")
      ->check(numberIn(0.0, 100.0))
      ->capture_default_str()
      ->type_name("LENGTH")
      ->group(group);
  app.add_option("--lines", scene.lines, "Lines over the length of the part")
      ->check(CLI::Range(20, 10'000))
      ->capture_default_str()
      ->type_name("COUNT")
      ->group(group);
}

void addGeneralOptions(CLI::App& app, Options& options) {
  addOutputOptions(app, options.output);
  app.add_option("--line", options.profileLine, "Line of the profile plot (default: one of most)")
      ->check(CLI::Range(0, 100'000'000))
      ->type_name("INDEX");
  app.add_flag("--no-level", options.noLevel, "Take the scan as it is, without a reference plane");
}

void addGapOptions(CLI::App& app, Options& options) {
  const std::string group = "Gaps";
  addLength(app, "--scale", options.scale,
            "Length over which slopes are measured (default: 8 sample distances)", group);
  addLength(app, "--step-z", options.stepZ,
            "Step in z that ends the search, more than the depth (default: 4 times the scale)",
            group);
  app.add_option("--rim-angle", options.rimAngle, "Smallest bend that is a rim")
      ->check(numberIn(0.0, 180.0))
      ->capture_default_str()
      ->type_name("DEGREES")
      ->group(group);
  addLength(app, "--width-min", options.widthMin,
            "A gap is wider (default: 1.2 times the scale, closer rims are not told apart)", group);
  addLength(app, "--width-max", options.widthMax, "A gap is narrower (default: 5 times the scale)",
            group);
}

void addGrowOptions(CLI::App& app, Options& options) {
  const std::string group = "Trees";
  addLength(app, "--y-deviation", options.yDeviation,
            "Limit in y from gap to gap (default: the scale)", group);
  addLength(app, "--z-deviation", options.zDeviation,
            "Limit in z from gap to gap (default: the scale)", group);
  addLength(app, "--bridge", options.bridge,
            "Longest interruption that is bridged (default: a tenth of the scan)", group);
  addLength(app, "--min-length", options.minLength,
            "Drop trees that are not longer (default: a fifth of the scan)", group);
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  addScanFileOptions(app, options.file);
  // Gaps are places of greater z, so distances are what is wanted.
  app.remove_option(app.get_option("--z-is-distance"));
  addSceneOptions(app, options.scene);
  addGeneralOptions(app, options);
  addGapOptions(app, options);
  addGrowOptions(app, options);
}

GapParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud) {
  constexpr double kScaleInSamples = 8.0;
  const double scale = options.scale.value_or(kScaleInSamples * cloud.ptStep);
  const double length = cloud.xRange.max - cloud.xRange.min;
  const double bridge = options.bridge.value_or(0.1 * length);

  GapParams params{};
  params.corner.minEndingGap_z = options.stepZ.value_or(4.0 * scale);
  params.corner.scale = scale;
  params.corner.cornerTh = options.rimAngle;
  params.width = {options.widthMin.value_or(1.2 * scale), options.widthMax.value_or(5.0 * scale)};
  if (params.width.min >= params.width.max) {
    throw UserError("--width-min: give less than --width-max, which defaults to 5 times --scale");
  }
  params.grow.yDeviation_max = options.yDeviation.value_or(scale);
  params.grow.zDeviation_max = options.zDeviation.value_or(scale);
  params.grow.maxLineSkipNum =
      std::max(1, static_cast<int>(std::min(std::ceil(bridge / cloud.scanLineStep), 1e9)));
  params.grow.maxSkipDistance = bridge;
  params.grow.minLTypeTreeLen = options.minLength.value_or(0.2 * length);
  return params;
}

}  // namespace examples
