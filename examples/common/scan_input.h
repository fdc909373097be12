#pragma once

#include <string>

#include "scan_types.h"

namespace CLI {
class App;
}  // namespace CLI

namespace examples {

/// Whether a file's x and y change places.
enum class AxisOrder { automatic, keep, swap };

/// A scan file and how its pixels become samples.
struct ScanFileOptions {
  std::string path;
  AxisOrder axes = AxisOrder::automatic;
  double pitchX = 1.0;
  double pitchY = 1.0;
  double zScale = 1.0;
  double zOffset = 0.0;
  bool zIsDistance = false;
};

/// Adds the scan file and its options to a command line.
void addScanFileOptions(CLI::App& app, ScanFileOptions& options);

/**
 * Reads a scan from an image whose rows are lines and whose columns are samples.
 *
 * Three float channels hold x, y, z; a single channel, 16-bit or float, holds z, and x and y follow
 * from the pitches. A pixel without a measurement (z of 0, or anything that is not finite or beyond
 * 1e9) becomes a sample that keeps its place with a z of 0.
 *
 * @throws UserError if the file is missing, damaged or of another kind.
 */
Scan readScan(const ScanFileOptions& options);

/// Bounds and spacing of a scan. @throws UserError if no plane could be looked for in it.
SJU_pointCloudPara measureScan(Scan& scan);

/// Writes a scan of lines of equal length as a three-channel float TIFF, without loss beyond float.
/// @throws UserError if the file cannot be written.
void writeScan(const std::string& path, const Scan& scan);

}  // namespace examples
