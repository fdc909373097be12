#include <algorithm>
#include <vector>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/reach_search.h"
#include "features/stretches.h"
#include "geometry/root_free.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr int kGround = 1;

/// The ground on a line, and the distances to it in the x-y plane.
class GroundSearch {
 public:
  GroundSearch(const detail::Samples& points, const std::vector<int>& groundMask, double groundDist)
      : plan_(seenFromAbove(points)), tooFar_(plan_, detail::leastSquareExceeding(groundDist)) {
    for (int i = 0; i < static_cast<int>(points.size()); ++i) {
      if (groundMask[points[i].nPointIdx] == kGround) {
        ground_.push_back(i);
      }
    }
  }

  /// Whether the nearest ground on either side of point `i`, and all points up to it, lie within
  /// the distance.
  bool findsAround(int i) {
    const auto after = std::upper_bound(ground_.begin(), ground_.end(), i);
    if (after != ground_.end() && tooFar_.find(i, 1, *after + 1) == detail::kNoPoint) {
      return true;
    }
    const auto before = std::lower_bound(ground_.begin(), after, i);
    return before != ground_.begin() && tooFar_.find(i, -1, *(before - 1) - 1) == detail::kNoPoint;
  }

 private:
  /// The points with x in the place of z.
  static detail::Samples seenFromAbove(const detail::Samples& points) {
    detail::Samples plan = points;
    for (STesk3DPosition& point : plan) {
      point.pt3D.z = point.pt3D.x;
    }
    return plan;
  }

  detail::Samples plan_;
  detail::ReachSearch tooFar_;
  std::vector<int> ground_;  ///< The points on the ground, in line order.
};

/// The peaks among the minima of the corner measure that have a flat arm, with their type.
detail::Slopes flatArmedMinima(const detail::Stretches& stretches, const SQO_cornerParam& param) {
  const detail::Slopes slopes = detail::slopePass(stretches.points, stretches.ranges,
                                                  detail::SlopeSearch::oneSided(param.scale));
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kMatching);
  const detail::PeakRule rule = {param.cornerTh, detail::twoScalesSquared(param.scale),
                                 detail::CornerMeasure::kMagnitude};
  detail::Slopes corners;
  for (detail::SQO_pointSlope peak : detail::peakPass(extrema.minima, stretches.points, rule)) {
    peak.type = detail::typeByFlatArm(peak, param);
    if (peak.type != 0) {
      corners.push_back(peak);
    }
  }
  return corners;
}

}  // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): the public signature takes a copy
void qo_getLineContourCornerFeature_groundMask_BQ(std::vector<STesk3DPosition>& lineData,
                                                  std::vector<int> groundMask,
                                                  int lineIdx,
                                                  double groundDist,
                                                  SQO_cornerParam cornerPara,
                                                  std::vector<SQO_basicFeature1D>& line_features) {
  // NOLINTEND(performance-unnecessary-value-param)
  const detail::Stretches stretches =
      detail::stretchesByYZ(lineData.data(), static_cast<int>(lineData.size()),
                            cornerPara.minEndingGap, cornerPara.minEndingGap_z);
  const detail::Slopes corners = flatArmedMinima(stretches, cornerPara);
  if (corners.empty()) {
    return;
  }
  GroundSearch ground(stretches.points, groundMask, groundDist);
  std::vector<SQO_basicFeature1D> features;
  for (const detail::SQO_pointSlope& corner : corners) {
    if (ground.findsAround(corner.pntIdx)) {
      const int stamp = stretches.points[corner.pntIdx].nPointIdx;
      features.push_back({corner.type, {lineIdx, stamp}, lineData[stamp].pt3D, corner.corner});
    }
  }
  detail::append(features, line_features);
}
