#pragma once

#include <vector>

#include "base/extent.h"
#include "base/messages.h"
#include "roads/registration.h"

namespace program {

/// Both scans must have been read with their axes in the same order. @throws Failure (usage)
void checkAxes(const Messages& messages);

/// Warns of points that cannot be places on the scan `name`.
void warnIfOutside(const std::vector<PointPair>& pairs,
                   cv::Point3d PointPair::*side,
                   const char* name,
                   const Extent& extent,
                   Messages& messages);

/// Warns of outliers, of a mirror image, and of scans in different units.
void warnOfPoints(const std::vector<PointPair>& pairs,
                  const Registration& found,
                  double limit,
                  bool dropsOutliers,
                  Messages& messages);

}  // namespace program
