#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "program.h"

namespace examples {
namespace {

constexpr double kLongest = 1e9;

void addCount(CLI::App& app,
              const std::string& name,
              int& value,
              int min,
              int max,
              const std::string& what,
              const std::string& group) {
  app.add_option(name, value, what)
      ->check(CLI::Range(min, max))
      ->capture_default_str()
      ->type_name("COUNT")
      ->group(group);
}

void addAngle(CLI::App& app, const std::string& name, double& value, const std::string& what) {
  app.add_option(name, value, what)
      ->check(numberIn(0.0, 180.0))
      ->capture_default_str()
      ->type_name("DEGREES")
      ->group("Corners");
}

void addGeneralOptions(CLI::App& app, Options& options) {
  addOutputOptions(app, options.output);
  app.add_option("--line", options.profileLine, "Line of the profile plot (default: the richest)")
      ->check(CLI::Range(0, 100'000'000))
      ->type_name("INDEX");
}

void addConditioningOptions(CLI::App& app, Options& options) {
  const std::string levelling = "Levelling";
  app.add_flag("--no-level", options.noLevel, "Take the scan as it is, without a reference plane")
      ->group(levelling);
  app.add_option("--cut-above", options.cutAbove,
                 "Cut what rises higher over the plane (default: 60 in the made scene, else none)")
      ->check(numberIn(0.0, kLongest))
      ->type_name("LENGTH")
      ->group(levelling);
  const std::string cleaning = "Cleaning";
  addLength(app, "--outlier-step", options.outlierStep,
            "Step in z that ends a stretch of samples (default: the scale)", cleaning);
  addCount(app, "--outlier-count", options.outlierCount, 0, 100'000,
           "Blank stretches of fewer samples", cleaning);
  addCount(app, "--smooth-window", options.smoothWindow, 1, 100'001,
           "Width of the moving mean in samples", cleaning);
}

void addCornerOptions(CLI::App& app, Options& options) {
  const std::string group = "Corners";
  addLength(app, "--scale", options.scale,
            "Length of the arms of a corner (default: 12 sample distances)", group);
  addAngle(app, "--corner-angle", options.cornerAngle, "Smallest bend that is a corner");
  addAngle(app, "--steep-angle", options.steepAngle, "An arm is steep from here on");
  addAngle(app, "--flat-angle", options.flatAngle, "The other arm of a rise or fall is flatter");
  addLength(app, "--gap-y", options.gapY,
            "Join segments across holes narrower than this (default: the scale)", group);
  addLength(app, "--gap-z", options.gapZ,
            "Step in z that ends a segment (default: 4 times the scale)", group);
}

void addGrowOptions(CLI::App& app, Options& options) {
  const std::string group = "Trees";
  addLength(app, "--y-deviation", options.yDeviation,
            "Limit in y from node to node (default: 8 line distances or the scale, the larger)",
            group);
  addLength(app, "--z-deviation", options.zDeviation,
            "Limit in z from node to node (default: the scale)", group);
  addCount(app, "--line-skip", options.lineSkip, 0, 1'000'000,
           "Lines that a tree may miss; 0: any number", group);
  addLength(app, "--skip-distance", options.skipDistance,
            "Limit in x once that many lines are missed (default: their distance)", group);
  addLength(app, "--min-length", options.minLength,
            "Drop trees that are not longer (default: 20 line distances)", group);
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  addScanFileOptions(app, options.file);
  addGeneralOptions(app, options);
  addConditioningOptions(app, options);
  addCornerOptions(app, options);
  addGrowOptions(app, options);
}

TraceParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud) {
  constexpr double kScaleInSamples = 12.0;
  constexpr double kDeviationInLines = 8.0;
  constexpr double kLengthInLines = 20.0;
  const double lineStep = cloud.scanLineStep;
  const double scale = options.scale.value_or(kScaleInSamples * cloud.ptStep);
  const double minLength = options.minLength.value_or(kLengthInLines * lineStep);

  TraceParams params{};
  params.level = !options.noLevel;
  params.cutAbove = options.cutAbove.value_or(0.0);
  params.outlier.continuityTh = options.outlierStep.value_or(scale);
  params.outlier.outlierTh = options.outlierCount;
  params.smoothWindow = options.smoothWindow;
  params.corner.minEndingGap = options.gapY.value_or(scale);
  params.corner.minEndingGap_z = options.gapZ.value_or(4.0 * scale);
  params.corner.scale = scale;
  params.corner.cornerTh = options.cornerAngle;
  params.corner.jumpCornerTh_1 = options.steepAngle;
  params.corner.jumpCornerTh_2 = options.flatAngle;
  params.grow.yDeviation_max =
      options.yDeviation.value_or(std::max(kDeviationInLines * lineStep, scale));
  params.grow.zDeviation_max = options.zDeviation.value_or(scale);
  params.grow.maxLineSkipNum = options.lineSkip;
  params.grow.maxSkipDistance = options.skipDistance.value_or((options.lineSkip + 1) * lineStep);
  params.grow.minLTypeTreeLen = minLength;
  params.grow.minVTypeTreeLen = minLength;
  return params;
}

}  // namespace examples
