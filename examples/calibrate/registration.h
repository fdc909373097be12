#pragma once

#include "scan_types.h"

namespace examples {

/// How one scan of an object is turned and shifted to lie on another.
struct Motion {
  SQO_EulerAngles angles;
  STesk3DPoint shift;
};

struct Registration {
  int points;
  Motion truth;
  Motion found;
  double meanResidual;  ///< Mean distance of corresponding points after the registration.
  double maxResidual;
};

/**
 * Takes samples of a scan for points of an object, moves them as a second scan would see them, with
 * noise of its own of standard deviation `noise`, and finds the motion from the pairs.
 */
Registration registerMoved(const Scan& scan, double noise);

}  // namespace examples
