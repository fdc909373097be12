#pragma once

#include <opencv2/core.hpp>
#include <optional>
#include <string>
#include <vector>

#include <scanline/scan_records.h>
#include "base/scan.h"
#include "input/point_pairs.h"

namespace program {

/// A rotation and a shift, as caculateRT() finds them: b goes to R (b - centreB) + centreA.
struct Motion {
  cv::Mat R;
  cv::Mat T;
  cv::Point3d centreB;
  cv::Point3d centreA;

  [[nodiscard]] cv::Point3d apply(const cv::Point3d& b) const;
  [[nodiscard]] SQO_EulerAngles angles() const;
  /// The angle of the whole rotation.
  [[nodiscard]] double degrees() const;
};

/// A pair of points after the registration.
struct Residual {
  cv::Point3d moved;  ///< The point of B in A's frame.
  double distance;    ///< From the point of A.
  bool isOutlier;
};

struct Registration {
  Motion motion;
  std::vector<Residual> residuals;  ///< Of all pairs, in their order.
  std::size_t fitted;               ///< Pairs that the motion was fitted to.
  double rms;                       ///< Of these.
};

/// Why pairs do not determine a motion; empty if they do.
std::string whyNoMotion(const std::vector<PointPair>& pairs);

/// The robust spread of the pairs around the motion that the most of them agree on; 0.0 for fewer
/// than five, where no pair can be called wrong.
double consensusSpread(const std::vector<PointPair>& pairs);

/**
 * Finds the motion of B into A's frame, and the pairs that are farther than `limit` from the motion
 * on which most pairs agree: the one of three pairs whose median distance from all is smallest.
 *
 * @param keepsOutliers  whether the motion is fitted to all pairs, or to those that agree
 * @pre whyNoMotion() is empty.
 */
Registration registerPairs(const std::vector<PointPair>& pairs, double limit, bool keepsOutliers);

/// Whether a mirror image of B fits far better, as when an axis of one scan runs the other way.
bool isMirrored(const std::vector<PointPair>& pairs, const Registration& found, double limit);

/// How many times as far apart the points of A are as those of B.
double scaleBetween(const std::vector<PointPair>& pairs);

}  // namespace program
