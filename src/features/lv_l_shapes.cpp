// Finds the L of one monotone run of a line.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "features/line_runs.h"
#include "features/lv_stages.h"

namespace scanline::detail {
namespace {

/// Change of z over y around the largest step of a run that makes it steep, strict.
constexpr double kMinSteepness = 2.0;

/// Distance in samples from the end of a data segment within which there is no slope, strict.
constexpr int kSegmentMargin = 3;

/// Whether z changes steeply from the sample before the largest step to the one after it. Missing
/// samples count too. Equal y are steep, unless both z are equal too.
bool isSteep(const LvLine& line, const SlopeRun& run) {
  const STesk3DPoint& p0 = line.point(std::max(run.maxStartIdx - 1, 0));
  const STesk3DPoint& p1 = line.point(std::min(run.maxEndIdx + 1, line.count - 1));
  return std::abs((p0.z - p1.z) / (p0.y - p1.y)) > kMinSteepness;
}

bool isNearSegmentEnd(const std::vector<SQO_RUN>& segments, int index) {
  // Earlier segments end too far away, and later ones start farther away than this one ends.
  const auto segment =
      std::partition_point(segments.begin(), segments.end(),
                           [&](const SQO_RUN& s) { return lastOf(s) <= index - kSegmentMargin; });
  return segment != segments.end() && (std::abs(index - segment->start) < kSegmentMargin ||
                                       std::abs(index - lastOf(*segment)) < kSegmentMargin);
}

}  // namespace

std::optional<SQO_basicFeature1D> lShapeOf(const LvLine& line,
                                           const std::vector<SQO_RUN>& segments,
                                           const SlopeRun& run,
                                           double jumpTh_z) {
  const double maxStep = line.maxStep(run);
  if (std::abs(maxStep) > jumpTh_z) {
    return maxStep > 0.0 ? line.feature(FEATURE_JUMP_RISE, run.maxStartIdx)
                         : line.feature(FEATURE_JUMP_FALL, run.maxEndIdx);
  }
  const double total = line.total(run);
  if (!(std::abs(total) > jumpTh_z) || !isSteep(line, run)) {
    return std::nullopt;
  }
  const bool rises = total > 0.0;
  if (isNearSegmentEnd(segments, rises ? run.endIdx : run.startIdx)) {
    return std::nullopt;
  }
  return rises ? line.feature(FEATURE_SLOPE_RISE, run.maxEndIdx)
               : line.feature(FEATURE_SLOPE_FALL, run.maxStartIdx);
}

}  // namespace scanline::detail
