#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scenes.h"

namespace examples {

/// How well the plane's samples lie in one height once a calibration has levelled them.
struct Residual {
  double share;  ///< Part of all measured samples that were taken for the plane's.
  double mean;   ///< Mean distance from their mean height.
  double max;
};

/// What one way of calibrating makes of a scene.
struct Calibration {
  std::string method;
  std::string scene;
  SQO_planeCalibPara record;
  double turnDegrees;  ///< Angle that the levelling turns the scan by: the tilt of the plane.
  std::optional<double> trueTurnDegrees;
  std::optional<Residual> residual;  ///< Nothing if no plane was found.
  SQO_EulerAngles angles;            ///< Of the level matrix.
};

/// Regions at the four corners of a scan, where nothing lies on its plane.
std::vector<STesk3DRangeD> cornerRegions(const STesk3DRangeD& box);

/// A region of x and y that holds all heights.
STesk3DRangeD regionOf(STeskRangeD x, STeskRangeD y);

// The calibrations of the library, one each. `band` is how far from the plane a levelled sample
// may lie and still be its own.
Calibration byLowestHeight(const Scene& scene, double band);
Calibration byMeanHeight(const Scene& scene, double band);
Calibration byRegions(const Scene& scene, std::vector<STesk3DRangeD> regions, double band);
Calibration byUnbrokenLines(Scene scene, double band);
/// The ground's samples are known by their marks; no band is needed.
Calibration byGround(Scene scene);

}  // namespace examples
