#include <cmath>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/stretches.h"

namespace detail = scanline::detail;

namespace {

constexpr int kGround = 1;

/// The search for ground around a point, one side of it at a time.
class GroundSearch {
 public:
  GroundSearch(const detail::Samples& points, const std::vector<int>& groundMask, double groundDist)
      : points_(points), groundMask_(groundMask), groundDist_(groundDist) {}

  /// Whether ground lies near point `i`. Both sides are looked at alike, nearest points first.
  [[nodiscard]] bool findsAround(int i) const {
    bool forward = true;
    bool backward = true;
    for (int step = 1; forward || backward; ++step) {
      forward = forward && isNear(i, i + step);
      if (forward && isGround(i + step)) {
        return true;
      }
      backward = backward && isNear(i, i - step);
      if (backward && isGround(i - step)) {
        return true;
      }
    }
    return false;
  }

 private:
  [[nodiscard]] bool isNear(int i, int other) const {
    if (other < 0 || other >= static_cast<int>(points_.size())) {
      return false;
    }
    const double dx = points_[i].pt3D.x - points_[other].pt3D.x;
    const double dy = points_[i].pt3D.y - points_[other].pt3D.y;
    return !(std::sqrt(dx * dx + dy * dy) > groundDist_);
  }
  [[nodiscard]] bool isGround(int point) const {
    return groundMask_[points_[point].nPointIdx] == kGround;
  }

  const detail::Samples& points_;
  const std::vector<int>& groundMask_;
  double groundDist_;
};

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
  const detail::Samples& points = stretches.points;
  const detail::Slopes slopes =
      detail::slopePass(points, stretches.ranges, detail::SlopeSearch::oneSided(cornerPara.scale));
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kMatching);
  const detail::PeakRule rule = {cornerPara.cornerTh, detail::twoScalesSquared(cornerPara.scale),
                                 detail::CornerMeasure::kMagnitude};
  const GroundSearch ground(points, groundMask, groundDist);
  for (const auto& peak : detail::peakPass(extrema.minima, points, rule)) {
    const int type = detail::typeByFlatArm(peak, cornerPara);
    if (type != 0 && ground.findsAround(peak.pntIdx)) {
      const int stamp = points[peak.pntIdx].nPointIdx;
      line_features.push_back({type, {lineIdx, stamp}, lineData[stamp].pt3D, peak.corner});
    }
  }
}
