#pragma once

#include "scan_types.h"

namespace examples {

/// How the reference plane lies in a scan.
struct PlaneView {
  bool isFound;
  double tiltDegrees;     ///< Angle between the plane and the horizontal.
  double rise;            ///< How much the plane rises over the whole of the scan.
  double heightAtMiddle;  ///< z of the plane in the middle of the scan.
  double levelledHeight;  ///< Height of the plane once the scan is levelled.
};

/// Describes the plane that a calibration found in a scan, from the scan's own samples.
PlaneView viewPlane(Scan& scan, const SQO_planeCalibPara& calibration);

}  // namespace examples
