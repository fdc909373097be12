#pragma once

#include <cstdint>
#include <vector>

#include "objects.h"
#include "progress.h"
#include "scan_types.h"

namespace examples {

/// What a made belt shows.
struct SceneOptions {
  std::uint64_t seed = 1;
  int objects = 14;
  double noise = 0.6;  ///< Standard deviation of the heights.
};

/// A made scan of a belt, and what lies on it. Objects come in the order they were laid.
struct Scene {
  Scan scan;
  double tiltDegrees;  ///< Angle between the belt and the sensor's horizontal.
  std::vector<BeltObject> objects;
};

/**
 * Scans a belt of bags and boxes that exists only here.
 *
 * The belt is 1 m wide, longer the more objects it carries, and not level. Lines are 3 mm, samples
 * 2 mm apart. z is a height over the far end of the measuring range, so that the belt is the
 * surface of smallest z. The same for the same options, with any number of threads.
 *
 * @throws UserError if the belt does not take all objects.
 */
Scene makeScene(const SceneOptions& options);

}  // namespace examples
