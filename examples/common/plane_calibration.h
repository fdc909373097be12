#pragma once

#include <scanline/calibration.h>

namespace examples {

/// What the library's search for a plane gives when there is none; its matrices change nothing.
SQO_planeCalibPara noCalibration();

/// Whether the search for a plane has found one.
bool isLevelling(const SQO_planeCalibPara& calibration);

/// The angle by which a rotation, row by row, tilts the z axis.
double tiltDegrees(const double* rotation);

}  // namespace examples
