#pragma once

#include <string>

#include "output_options.h"
#include "pipeline.h"
#include "scan_input.h"
#include "scene.h"

namespace CLI {
class App;
}  // namespace CLI

namespace examples {

/// What the command line says.
struct Options {
  ScanFileOptions file;
  SceneOptions scene;
  OutputOptions output;
  double cut = 15.0;
  double step = 25.0;
  double minWidth = 80.0;
};

void addOptions(CLI::App& app, Options& options);

/// The parameters for a scan of a given spacing.
SplitParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud);

}  // namespace examples
