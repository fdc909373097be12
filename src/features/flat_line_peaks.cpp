#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/flat_steps.h"
#include "features/flat_views.h"
#include "features/valid_profile.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using detail::StepKind;
using Line = std::vector<STesk3DPosition>;

/// Mark on the samples of features in the caller's line.
constexpr int kFeatureMark = 13;

constexpr int kNoFeature = 0;
constexpr double kMinSideDiff = 0.1;

/// Whether the kinds and heights of a jump and the next step make a pair.
bool mayPair(const detail::SQO_flatStep& jump, const detail::SQO_flatStep& next, double jumpTh_z) {
  if (std::abs(jump.dz) < jumpTh_z) {
    return next.isJump();
  }
  const bool lowNext = jumpTh_z > std::abs(next.dz);
  if (jump.kind == StepKind::kFallingJump) {
    return next.isJump() && lowNext;
  }
  return next.kind == StepKind::kFallingJump || next.kind == StepKind::kFallingSlope ||
         (next.kind == StepKind::kRisingJump && lowNext);
}

/// Turns the steps of one line into features, one per step at most.
class FlatPeakFinder {
 public:
  FlatPeakFinder(Line& lineData, int lineIdx, const detail::FlatLineLimits& limits)
      : lineData_(lineData),
        lineIdx_(lineIdx),
        limits_(limits),
        points_(detail::collectValidPoints(lineData.data(), static_cast<int>(lineData.size()))),
        steps_(detail::steepestSteps(points_, limits)),
        features_(steps_.size()) {}

  [[nodiscard]] std::size_t maxFeatures() const {
    return features_.size();
  }

  /// Puts a feature on each jump or pair with one, and marks the outer samples.
  void placeJumps() {
    for (std::size_t e = 0; e < steps_.size(); ++e) {
      const detail::SQO_flatStep& step = steps_[e];
      if (!step.isJump()) {
        continue;
      }
      int last = step.last;
      if (e + 1 < steps_.size() && mayPair(step, steps_[e + 1], limits_.jumpTh_z) &&
          isNextClose(e)) {
        last = steps_[e + 1].last;
        steps_[e + 1].kind = StepKind::kNone;
      }
      features_[e] = featureBetween(step.first, last);
      lineData_[points_[step.first].nPointIdx].nPointIdx = detail::kJumpMark;
      lineData_[points_[last].nPointIdx].nPointIdx = detail::kJumpMark;
    }
  }

  /// Puts features on slopes, once all jumps are marked.
  void placeSlopes() {
    const detail::SideViewer sides(lineData_, limits_.peakWidth_y * 1.5);
    for (std::size_t e = 0; e < steps_.size(); ++e) {
      if (steps_[e].kind == StepKind::kFallingSlope) {
        features_[e] = featureBeside(steps_[e], sides);
      } else if (steps_[e].kind == StepKind::kRisingSlope && e + 1 < steps_.size()) {
        if (steps_[e + 1].kind == StepKind::kFallingSlope && isNextClose(e)) {
          features_[e] = featureBetween(steps_[e].first, steps_[e + 1].last);
          steps_[e + 1].kind = StepKind::kNone;
        } else {
          features_[e] = featureBeside(steps_[e], sides);
        }
      }
    }
  }

  void report(std::vector<SQO_basicFeature1D>& peaks) {
    for (const SQO_basicFeature1D& feature : features_) {
      if (feature.featureType == kNoFeature) {
        continue;
      }
      peaks.push_back(feature);
      STesk3DPosition& sample = lineData_[feature.jumpPos2D.y];
      if (detail::isNoSample(sample.pt3D.z)) {
        sample.pt3D = feature.jumpPos;
      }
      sample.nPointIdx = kFeatureMark;
    }
  }

 private:
  [[nodiscard]] bool isNextClose(std::size_t e) const {
    const double nextY = points_[steps_[e + 1].first].pt3D.y;
    return limits_.peakWidth_y > std::abs(nextY - points_[steps_[e].last].pt3D.y);
  }

  /// The feature half way between two points.
  [[nodiscard]] SQO_basicFeature1D featureBetween(int first, int last) const {
    const STesk3DPosition& a = points_[first];
    const STesk3DPosition& b = points_[last];
    const STesk3DPoint middle = {(a.pt3D.x + b.pt3D.x) / 2.0, (a.pt3D.y + b.pt3D.y) / 2.0,
                                 (a.pt3D.z + b.pt3D.z) / 2.0};
    return {FEATURE_PEAK, {lineIdx_, (a.nPointIdx + b.nPointIdx) / 2}, middle, 0.0};
  }

  /// The feature on the high side of a slope, if that side stands out. A mark counts only on the
  /// low side; on the high side it has stopped the view anyway.
  [[nodiscard]] SQO_basicFeature1D featureBeside(const detail::SQO_flatStep& slope,
                                                 const detail::SideViewer& sides) const {
    const bool rising = slope.kind == StepKind::kRisingSlope;
    const detail::SideView before = sides.view(points_[slope.first].nPointIdx, -1);
    const detail::SideView after = sides.view(points_[slope.last].nPointIdx, 1);
    const detail::SideView& high = rising ? after : before;
    const detail::SideView& low = rising ? before : after;
    if (high.highest < 0 || low.meetsMark) {
      return {};
    }
    const double base = low.highest >= 0 ? low.mean : points_[slope.first].pt3D.z;
    if (!(high.mean - base >= kMinSideDiff)) {
      return {};
    }
    return {FEATURE_PEAK, {lineIdx_, high.highest}, lineData_[high.highest].pt3D, 0.0};
  }

  Line& lineData_;
  int lineIdx_;
  detail::FlatLineLimits limits_;
  detail::Samples points_;
  detail::FlatSteps steps_;
  std::vector<SQO_basicFeature1D> features_;  ///< One per step, most of them none.
};

}  // namespace

void qo_getFlatLineLocalPeaks_vector(std::vector<STesk3DPosition>& lineData,
                                     int lineIdx,
                                     double slopeWin_y,
                                     double jumpTh_z,
                                     double peakWidth_y,
                                     std::vector<SQO_basicFeature1D>& peaks) {
  FlatPeakFinder finder(lineData, lineIdx, {slopeWin_y, jumpTh_z, peakWidth_y});
  detail::makeRoom(finder.maxFeatures(), peaks);
  // Nothing is allocated from here on.
  finder.placeJumps();
  finder.placeSlopes();
  finder.report(peaks);
}
