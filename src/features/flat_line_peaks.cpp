// Finds the dents of a nearly flat line: narrow places of greater z, by their jumps and slopes.
#include <optional>
#include <vector>

#include <scanline/line_features.h>
#include "features/flat_pairs.h"
#include "features/flat_steps.h"
#include "features/flat_views.h"
#include "features/line_samples.h"
#include "features/profile.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using detail::FlatDent;
using Dents = std::vector<FlatDent>;
using Line = std::vector<STesk3DPosition>;

/// Stamp of the samples of features.
constexpr int kFeatureMark = 13;

/// Smallest difference of the mean z of the two sides of a slope.
constexpr double kMinSideDiff = 0.1;

/// Stamps the outer samples of jumps in the caller's line.
void markJumps(const detail::Profile& profile, const Dents& dents, Line& lineData) {
  for (const FlatDent& dent : dents) {
    if (dent.kind == FlatDent::kJump) {
      lineData[profile.index[dent.first]].nPointIdx = detail::kJumpMark;
      lineData[profile.index[dent.last]].nPointIdx = detail::kJumpMark;
    }
  }
}

/// The feature half way between two samples.
SQO_basicFeature1D featureBetween(const Line& lineData, int lineIdx, int first, int last) {
  const STesk3DPoint& a = lineData[first].pt3D;
  const STesk3DPoint& b = lineData[last].pt3D;
  const STesk3DPoint middle = {(a.x + b.x) / 2.0, (a.y + b.y) / 2.0, (a.z + b.z) / 2.0};
  return {FEATURE_PEAK, {lineIdx, (first + last) / 2}, middle, 0.0};
}

/// The sample of the feature beside a slope, on the side of greater z (the far side), if that side
/// differs enough from the near one. A jump on either side rules it out.
std::optional<int> farSideOf(
    const Line& lineData, const detail::SideViewer& sides, bool rises, int first, int last) {
  const detail::SideView before = sides.view(first, -1);
  const detail::SideView after = sides.view(last, 1);
  const detail::SideView& far = rises ? after : before;
  const detail::SideView& near = rises ? before : after;
  if (far.farthest < 0 || near.meetsJump) {
    return std::nullopt;
  }
  const double base = near.farthest >= 0 ? near.mean : lineData[first].pt3D.z;
  return far.mean - base >= kMinSideDiff ? std::optional(far.farthest) : std::nullopt;
}

/// Appends the features of the dents. All jumps must be stamped.
void appendFeatures(const Line& lineData,
                    int lineIdx,
                    const detail::Profile& profile,
                    const Dents& dents,
                    double sideWidth,
                    std::vector<SQO_basicFeature1D>& peaks) {
  std::optional<detail::SideViewer> sides;
  for (const FlatDent& dent : dents) {
    const int first = profile.index[dent.first];
    const int last = profile.index[dent.last];
    if (dent.kind == FlatDent::kJump || dent.kind == FlatDent::kSlopePair) {
      peaks.push_back(featureBetween(lineData, lineIdx, first, last));
      continue;
    }
    if (!sides) {
      sides.emplace(lineData, sideWidth);
    }
    const bool rises = dent.kind == FlatDent::kRisingSlope;
    if (const auto sample = farSideOf(lineData, *sides, rises, first, last)) {
      peaks.push_back(detail::featureAt(lineData.data(), *sample, FEATURE_PEAK, lineIdx));
    }
  }
}

/// Stamps the sample of a feature. A missing sample takes the position of the feature.
void markFeature(const SQO_basicFeature1D& feature, Line& lineData) {
  STesk3DPosition& sample = lineData[feature.jumpPos2D.y];
  if (detail::isMissing(sample.pt3D.z)) {
    sample.pt3D = feature.jumpPos;
  }
  sample.nPointIdx = kFeatureMark;
}

}  // namespace

void qo_getFlatLineLocalPeaks_vector(std::vector<STesk3DPosition>& lineData,
                                     int lineIdx,
                                     double slopeWin_y,
                                     double jumpTh_z,
                                     double peakWidth_y,
                                     std::vector<SQO_basicFeature1D>& peaks) {
  const detail::FlatLineLimits limits = {slopeWin_y, jumpTh_z, peakWidth_y};
  const detail::Profile profile =
      detail::collectProfile(lineData.data(), static_cast<int>(lineData.size()));
  const Dents dents = detail::pairSteps(profile, detail::steepestSteps(profile, limits), limits);
  detail::makeRoom(dents.size(), peaks);
  // Nothing is allocated from here on.
  const std::size_t before = peaks.size();
  markJumps(profile, dents, lineData);
  appendFeatures(lineData, lineIdx, profile, dents, peakWidth_y * 1.5, peaks);
  for (std::size_t k = before; k < peaks.size(); ++k) {
    markFeature(peaks[k], lineData);
  }
}
