#pragma once

#include <optional>
#include <string>

#include "output_options.h"
#include "pipeline.h"
#include "scan_input.h"

namespace CLI {
class App;
}  // namespace CLI

namespace examples {

/// What the command line says. A length that is not given follows from the scan's spacing.
struct Options {
  ScanFileOptions file;
  OutputOptions output;
  int profileLine = -1;

  bool noLevel = false;
  std::optional<double> cutAbove;

  std::optional<double> outlierStep;
  int outlierCount = 4;
  int smoothWindow = 5;

  std::optional<double> scale;
  double cornerAngle = 28.0;
  double steepAngle = 55.0;
  double flatAngle = 40.0;
  std::optional<double> gapY;
  std::optional<double> gapZ;

  std::optional<double> yDeviation;
  std::optional<double> zDeviation;
  int lineSkip = 8;
  std::optional<double> skipDistance;
  std::optional<double> minLength;
};

void addOptions(CLI::App& app, Options& options);

/// The parameters for a scan of a given spacing; given options come first.
TraceParams paramsFor(const Options& options, const SJU_pointCloudPara& cloud);

}  // namespace examples
