#pragma once

#include <array>
#include <optional>
#include <string>

#include "base/messages.h"
#include "base/scan.h"

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/// Whether a file's x and y are exchanged.
enum class AxisOrder { automatic, keep, swap };

/// A scan file and how its values become samples.
struct InputOptions {
  std::string path;
  std::string format = "auto";  ///< By the extension.
  double scale = 1.0;           ///< Multiplies x, y and z.
  std::string unit = "mm";      ///< Of the scaled values, for tables and pictures.
  bool zIsHeight = false;       ///< z grows towards the sensor.
  bool transpose = false;       ///< Lines and samples, x and y are exchanged.
  AxisOrder axes = AxisOrder::automatic;
  bool channelsZyx = false;                  ///< A colour image holds z, y, x in file order.
  std::optional<double> pitchX;              ///< Range images: distance of the rows before `scale`.
  std::optional<double> pitchY;              ///< Range images: distance of the columns.
  std::optional<std::array<double, 6>> roi;  ///< x0 x1 y0 y1 z0 z1 after `scale`, z as in the file.
};

/// A scan in the library's terms.
struct LoadedScan {
  Scan scan;  ///< z is a distance above 0; missing samples have z = 0.0.
  std::string format;
  long long samples = 0;      ///< All of them, holes included.
  long long holes = 0;        ///< Without a value in the file.
  long long notPositive = 0;  ///< Distances at or below zero, which the library takes for missing.
  long long strays = 0;       ///< Far outside of all others; now missing.
  long long outside = 0;      ///< Outside of the region of interest; now missing.
  double heightOrigin = 0.0;  ///< With `zIsHeight`, the file's z is this minus the sample's.
};

/// Adds the scan file, a positional argument of this name, and its options to a command.
void addInputOptions(CLI::App& command, InputOptions& options, const std::string& name = "SCAN");

/// Reads a scan. Options that do not apply to the kind of file are errors.
/// @throws Failure (usage, badInput)
LoadedScan loadScan(const InputOptions& options, Messages& messages);

}  // namespace program
