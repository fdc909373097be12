#pragma once

#include <vector>

#include "scan_types.h"

/// Builders of synthetic profiles in millimetres. z is the distance from the sensor.

namespace examples {

/// A place that a profile passes through.
struct ProfilePoint {
  double y;
  double z;
};

using Corners = std::vector<ProfilePoint>;

/// A line through corners, straight between them, with a sample each `step` in y.
Line alongY(const Corners& corners, double step);

/// The same with a sample each `step` along the profile, so that walls hold samples too.
Line alongProfile(const Corners& corners, double step);

/// Raises the samples around `centre` to an elliptic arch.
void addArch(Line& line, double centre, double halfWidth, double height);

/// Raises the samples around `centre` to a smooth bump; a negative height makes a dent.
void addBump(Line& line, double centre, double halfWidth, double height);

/// Makes the samples from `yMin` to `yMax` holes.
void blank(Line& line, double yMin, double yMax);

/// Adds bell-shaped measuring noise, the same in each run.
void roughen(Line& line, double deviation);

/// Writes `label` into the working words of the samples from `yMin` to `yMax`.
void label(Line& line, double yMin, double yMax, int label);

/// Writes each sample's index into its working word.
void numberSamples(Line& line);

}  // namespace examples
