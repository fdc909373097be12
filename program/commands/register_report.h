#pragma once

#include <string>
#include <vector>

#include "draw/overlay_picture.h"
#include "output/report.h"
#include "roads/registration.h"

namespace program {

/// The motion as rows of the rotation and a shift.
Table motionTable(const Motion& motion, const std::string& unit);

/// The pairs of points and how far they are apart after the registration.
Table residualTable(const std::vector<PointPair>& pairs,
                    const Registration& found,
                    const std::string& unit);

/// Three digits, but no more decimals than the table of residuals has for perfect points.
std::string rmsAsText(double rms);

/// Angles, rotation, translation and residuals for JSON.
Field motionField(const Registration& found, std::size_t pairs);
Field agreementField(const Agreement& agreement);

/// The same for people.
std::vector<std::string> describe(const Registration& found,
                                  const Agreement& agreement,
                                  const std::string& unit);

}  // namespace program
