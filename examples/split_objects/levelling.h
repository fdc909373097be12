#pragma once

#include <opencv2/core/types.hpp>

#include <scanline/calibration.h>
#include "scan_types.h"

namespace examples {

/// How a scan of heights becomes one of distances from the scanner over a level belt.
struct BeltFrame {
  double scannerHeight;            ///< The height from which distances are measured, downwards.
  SQO_planeCalibPara calibration;  ///< Levels distances; `planeHeight` is the belt's distance.
  double tiltDegrees;              ///< What the levelling turns by.
};

/**
 * Finds the belt, the lowest surface of a scan of heights.
 *
 * @throws UserError if there is none.
 */
BeltFrame findBelt(Scan& heights);

/// Levels a scan of heights as distances from the scanner; the belt and what lies less than
/// `cutHeight` above it becomes holes. Holes get a place between their neighbours.
Scan levelAndCut(const Scan& heights, const BeltFrame& frame, double cutHeight);

/// Where on the belt, in the coordinates of the raw scan, a place of the level scan lies.
cv::Point2d placeOnBelt(const BeltFrame& frame, cv::Point2d levelled);

}  // namespace examples
