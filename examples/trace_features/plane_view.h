#pragma once

#include "scan_types.h"

namespace examples {

/// How the reference plane lies in a scan, told from the samples that make it up.
struct PlaneView {
  double tiltDegrees;  ///< Angle between the plane and the horizontal.
  double rise;         ///< How much the plane rises over the whole of the scan.
  double height;       ///< z of the plane in the middle of the scan.
  double share;        ///< Part of all measured samples that lie on it.
};

/// Looks at the plane in a raw scan that a calibration belongs to.
PlaneView viewPlane(Scan& scan, const SQO_planeCalibPara& calibration);

/**
 * Height of the plane in the levelled frame of a raw scan: where most of the samples are.
 *
 * The calibration's own height is the lowest of the plane's samples, which a groove or a stray
 * sample pulls down.
 */
double levelledHeight(const Scan& scan, const SQO_planeCalibPara& calibration);

}  // namespace examples
