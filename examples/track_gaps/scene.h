#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "progress.h"
#include "scan_types.h"

namespace examples {

/// A gap that is known to be in a scan.
struct TrueGap {
  std::string name;
  double width;                            ///< Along the lines.
  std::function<double(double x)> centre;  ///< y of its centre line.
};

/// A made scan, and what the program should find in it.
struct Scene {
  Scan scan;
  double tiltDegrees;  ///< Angle between the part and the sensor's horizontal.
  std::vector<TrueGap> gaps;
};

/// How the part is scanned.
struct SceneParams {
  int lines;           ///< Over the length of the part.
  double noise;        ///< Standard deviation of z.
  std::uint64_t seed;  ///< Of noise and dropouts.
};

/**
 * Scans a part that exists only here: two plates, 100 x 80 mm together, before they are welded.
 *
 * The seam between them, a V groove with a flat root, follows an arc and is interrupted by two tack
 * welds. One plate has a straight slot and a scratch, and two clamps hold the part. It lies tilted
 * under the sensor. Lines have 800 samples, 0.1 mm apart; z is the distance from the sensor.
 */
Scene makeScene(const SceneParams& params, Progress& progress);

}  // namespace examples
