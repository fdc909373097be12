// Finds the corners close to the ground at which a line turns away from the sensor.
#include <algorithm>
#include <cassert>
#include <optional>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_types.h"
#include "features/line_samples.h"
#include "features/reach_search.h"
#include "features/stretches.h"
#include "geometry/squared_threshold.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

constexpr int kGround = 1;

/// Searches the ground on a line. Distances are in the x-y plane.
class GroundSearch {
 public:
  GroundSearch(const std::vector<STesk3DPosition>& lineData,
               const detail::Profile& profile,
               const std::vector<int>& groundMask,
               double groundDist)
      : x_(static_cast<std::size_t>(profile.count())),
        tooFar_(profile.y.data(),
                x_.data(),
                profile.count(),
                detail::squaredThresholdAbove(groundDist)) {
    for (int i = 0; i < profile.count(); ++i) {
      const STesk3DPosition& sample = lineData[profile.index[i]];
      x_[i] = sample.pt3D.x;
      if (groundMask[sample.nPointIdx] == kGround) {
        ground_.push_back(i);
      }
    }
  }

  /// Whether there is ground before or after point `i` such that the nearest point of it and all
  /// points up to that one lie within the distance.
  bool findsAround(int i) {
    const auto after = std::upper_bound(ground_.begin(), ground_.end(), i);
    if (after != ground_.end() && tooFar_.find(i, 1, *after + 1) == detail::kNoPoint) {
      return true;
    }
    const auto before = std::lower_bound(ground_.begin(), after, i);
    return before != ground_.begin() && tooFar_.find(i, -1, *(before - 1) - 1) == detail::kNoPoint;
  }

 private:
  std::vector<double> x_;
  detail::ReachSearch tooFar_;
  std::vector<int> ground_;  ///< The points on the ground, in line order.
};

/// The peaks among the minima of the turn angle below 0.
std::vector<int> minimumPeaks(const detail::Arms& arms,
                              const detail::Profile& profile,
                              const SQO_cornerParam& param) {
  const auto extrema = detail::findExtrema(arms, detail::ExtremaSign::kMatching);
  return detail::findPeaks(extrema.minima, arms, profile,
                           detail::peakRule(param, detail::PeakRule::Measure::kMagnitude));
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
  assert(groundMask.size() >= lineData.size());
  assert(detail::isStamped(lineData.data(), static_cast<int>(lineData.size())));
  const detail::Stretches stretches =
      detail::stretchesByYZ(lineData.data(), static_cast<int>(lineData.size()),
                            cornerPara.minEndingGap, cornerPara.minEndingGap_z);
  const detail::Profile& profile = stretches.points;
  const detail::Arms arms(profile, stretches.ranges, detail::ArmSearch::oneSided(cornerPara.scale));
  std::optional<GroundSearch> ground;
  std::vector<SQO_basicFeature1D> features;
  for (const int peak : minimumPeaks(arms, profile, cornerPara)) {
    const int type = detail::typeByFlatArm(arms, peak, cornerPara);
    if (type == 0) {
      continue;
    }
    if (!ground) {
      ground.emplace(lineData, profile, groundMask, groundDist);
    }
    if (ground->findsAround(peak)) {
      const int stamp = lineData[profile.index[peak]].nPointIdx;
      features.push_back(
          detail::featureAt(lineData.data(), stamp, type, lineIdx, arms.turnAngle(peak)));
    }
  }
  detail::append(features, line_features);
}
