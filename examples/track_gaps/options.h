#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "output_options.h"
#include "pipeline.h"
#include "scan_input.h"
#include "scene.h"

namespace CLI {
class App;
}  // namespace CLI

namespace examples {

/// What the command line says. A length that is not given follows from the scan's spacing.
struct Options {
  ScanFileOptions file;
  SceneParams scene = {400, 0.015, 1};
  OutputOptions output;
  int profileLine = -1;
  bool noLevel = false;

  std::optional<double> scale;
  std::optional<double> stepZ;
  double rimAngle = 25.0;
  std::optional<double> widthMin;
  std::optional<double> widthMax;

  std::optional<double> yDeviation;
  std::optional<double> zDeviation;
  std::optional<double> bridge;
  std::optional<double> minLength;
};

void addOptions(CLI::App& app, Options& options);

/// The parameters for a scan of a given spacing; given options come first.
/// @throws UserError if no gap could have the width asked for
GapParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud);

}  // namespace examples
