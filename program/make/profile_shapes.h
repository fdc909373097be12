#pragma once

#include <limits>
#include <string>
#include <vector>

#include <scanline/scan_records.h>

namespace program {

/// A place that a profile passes through.
struct ProfilePoint {
  double y;
  double z;
};

/// A round place, as high as `height` over its foot; a negative height makes a hollow.
struct Rounding {
  double centre;
  double halfWidth;
  double height;
};

/// A profile in millimetres; z is the distance from the sensor.
struct ProfileShape {
  const char* name;
  const char* shows;                  ///< For help.
  std::vector<ProfilePoint> corners;  ///< Between them the profile is straight.
  std::vector<Rounding> arches = {};  ///< Elliptic, with upright feet.
  std::vector<Rounding> bumps = {};   ///< Cosines, with level feet.
  std::vector<STeskRangeD> holes = {};
  double farthest = std::numeric_limits<double>::infinity();  ///< What lies farther is missing.
  double noise = 0.03;    ///< Usual standard deviation of z. Some searches want smooth lines.
  double step = 0.5;      ///< Between samples, in y.
  bool hasWalls = false;  ///< Steps along the profile, so that walls hold samples too.
};

/// A shape for each extractor, in their order.
const std::vector<ProfileShape>& profileShapes();

/// The shape of a name that profileShapes() lists.
const ProfileShape& shapeNamed(const std::string& name);

}  // namespace program
