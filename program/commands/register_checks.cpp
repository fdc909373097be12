#include "commands/register_checks.h"

#include <algorithm>
#include <cmath>

#include "base/failure.h"
#include "base/number.h"
#include "draw/plot.h"

namespace program {

void checkAxes(const Messages& messages) {
  const auto exchanged =
      std::count_if(messages.warnings().begin(), messages.warnings().end(),
                    [](const Warning& warning) { return warning.code == "axes-exchanged"; });
  if (exchanged == 1) {
    throw Failure(ExitCode::usage,
                  "x runs along the lines in one of the scans alone, so x and y were exchanged in "
                  "it and not in the other. Give --axes keep or --axes swap");
  }
}

void warnIfOutside(const std::vector<PointPair>& pairs,
                   cv::Point3d PointPair::*side,
                   const char* name,
                   const Extent& extent,
                   Messages& messages) {
  constexpr double kMargin = 0.5;
  const STeskRangeD x = widened(extent.x, kMargin);
  const STeskRangeD y = widened(extent.y, kMargin);
  const auto outside = std::count_if(pairs.begin(), pairs.end(), [&](const PointPair& pair) {
    const cv::Point3d& p = pair.*side;
    return p.x < x.min || p.x > x.max || p.y < y.min || p.y > y.max;
  });
  if (outside > 0) {
    messages.warn("points-outside",
                  counted(static_cast<long long>(outside), "point") + " of " + name +
                      " far outside of the scan. Points are in the coordinates of the scans "
                      "after --scale, --axes and --transpose");
  }
}

void warnOfPoints(const std::vector<PointPair>& pairs,
                  const Registration& found,
                  double limit,
                  bool dropsOutliers,
                  Messages& messages) {
  constexpr double kOfScale = 0.02;
  const double scale = scaleBetween(pairs);
  if (isMirrored(pairs, found, limit)) {
    messages.warn("mirrored",
                  "a mirror image of B would fit far better. An axis of one of the scans runs the "
                  "other way, or its z is a height");
  } else if (std::abs(scale - 1.0) > kOfScale && found.rms > limit) {
    messages.warn("scale", "the points of A are " + significant(scale, 4) +
                               " times as far apart as those of B. Are both in the same unit?");
  }
  std::string ids;
  int count = 0;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (found.residuals[i].isOutlier) {
      ids += (ids.empty() ? "" : ", ") + pairs[i].id;
      ++count;
    }
  }
  if (count > 0) {
    messages.warn("outliers", std::string(count == 1 ? "pair " : "pairs ") + ids +
                                  " cannot belong to the motion of the others" +
                                  (dropsOutliers ? ", and so was left out"
                                                 : ". --drop-outliers fits the motion without"));
  }
}

}  // namespace program
