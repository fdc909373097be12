#pragma once

#include <array>
#include <opencv2/core/types.hpp>
#include <optional>
#include <string>
#include <vector>

#include <scanline/calibration.h>
#include "base/extent.h"
#include "base/messages.h"
#include "base/scan.h"

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/// How the reference plane is found.
struct PlaneOptions {
  /// "auto", the name of a method, "none", or the path of a plane that was saved.
  std::string method = "auto";
  std::optional<std::array<double, 4>> region;  ///< x0 x1 y0 y1 of the method "region".
};

/// A calibration that was tried.
struct PlaneCandidate {
  std::string method;
  SQO_planeCalibPara calibration;
  cv::Point3d centre;        ///< The rotation turns the scan around this point.
  bool isGround = false;     ///< The plane is levelled to a constant y, not z.
  double height = 0.0;       ///< z (y for the ground) of the plane after levelling.
  double tiltDegrees = 0.0;  ///< Angle of the rotation that levels the plane.
  double onPlane = 0.0;      ///< Share of the measured samples near the plane, from 0.0 to 1.0.
  double band = 0.0;         ///< The largest distance from the plane that counts as near.
  double residual = 0.0;     ///< Root mean square distance of these samples from the plane.
  std::string refused;       ///< Why there is no plane, or why it was not chosen.
};

/// The plane a scan was levelled to, and those that were not chosen.
struct PlaneChoice {
  std::optional<PlaneCandidate> chosen;  ///< None: the scan stays as it is.
  std::vector<PlaneCandidate> others;

  /// The z that pictures and tables show for the z of a levelled sample: the height over the plane,
  /// which grows towards the sensor. Without a plane, and for the ground, z itself.
  [[nodiscard]] double shown(double z) const {
    return showsHeights() ? chosen->height - z : z;
  }
  /// The same for a difference in z, such as that of a direction.
  [[nodiscard]] double shownStep(double dz) const {
    return showsHeights() ? -dz : dz;
  }
  [[nodiscard]] bool showsHeights() const {
    return chosen && !chosen->isGround;
  }
};

/// Adds --plane and --region to a command.
void addPlaneOptions(CLI::App& command, PlaneOptions& options);

/// Adds a --plane that accepts "none" alone, and states why.
void refusePlane(CLI::App& command, const std::string& why);

/// Finds the plane that the options ask for. The scan stays as it is.
/// @throws Failure (nothingFound, usage, badInput)
PlaneChoice choosePlane(Scan& scan,
                        const Extent& extent,
                        const PlaneOptions& options,
                        Messages& messages);

/// Rotates a scan so that its chosen plane is level, and shifts z if samples would reach z = 0.0.
void level(Scan& scan, PlaneChoice& plane);

}  // namespace program
