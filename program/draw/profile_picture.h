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
  std::vector<ProfileMark> marks;
  std::vector<LegendEntry> legend;  ///< Of the marks; traces add theirs.
};

/// One line, y against z, the side towards the sensor at the top.
Picture profilePicture(const PlaneChoice& plane, ProfileContent content);

}  // namespace program
