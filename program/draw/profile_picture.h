#pragma once

#include <string>
#include <vector>

#include "base/scan.h"
#include "draw/plot.h"
#include "plane/plane_choice.h"

namespace program {

/// The samples of a line, as a line or as dots.
struct ProfileTrace {
  Line line;
  Colour colour;
  bool isDots;
  std::string name;
};

/// Samples that a feature covers.
struct ProfileStretch {
  Line line;
  Colour colour;
};

/// A limit or a reference in shown z, as a dashed line.
struct ProfileLevel {
  double z;
  std::string name;
};

/// A named range of y.
struct ProfileBand {
  STeskRangeD y;
  std::string name;
};

/// A feature on the profile.
struct ProfileMark {
  STesk3DPoint at;
  Colour colour;
  std::string label;  ///< Empty: none.
};

struct ProfileContent {
  std::string title;
  std::string subtitle;
  std::string unit;
  std::vector<ProfileTrace> traces;
  std::vector<ProfileStretch> stretches;
  std::vector<ProfileMark> marks;
  std::vector<ProfileLevel> levels;
  std::vector<ProfileBand> bands;
  std::vector<LegendEntry> legend;  ///< Of the marks; traces add theirs.
  std::string footer;               ///< Below the axis.
};

/// One line, y against z, the side towards the sensor at the top.
Picture profilePicture(const PlaneChoice& plane, ProfileContent content);

}  // namespace program
