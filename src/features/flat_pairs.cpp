// Pairs the opposite flanks of the dents of a nearly flat line.
#include "features/flat_pairs.h"

#include <cmath>
#include <cstddef>

namespace scanline::detail {
namespace {

/// Whether a step and the next one make a pair by their kinds and heights. A jump is low if z
/// changes by less than `jumpTh_z`.
///
/// | step              | partner                                        |
/// |-------------------|------------------------------------------------|
/// | low jump          | any jump                                       |
/// | high falling jump | low jump                                       |
/// | high rising jump  | falling jump, falling slope or low rising jump |
/// | rising slope      | falling slope                                  |
bool mayPair(const FlatStep& step, const FlatStep& next, double jumpTh_z) {
  const auto isLow = [jumpTh_z](const FlatStep& jump) { return jumpTh_z > std::abs(jump.dz); };
  if (!step.isJump()) {
    return step.kind == StepKind::kRisingSlope && next.kind == StepKind::kFallingSlope;
  }
  if (isLow(step)) {
    return next.isJump();
  }
  if (step.kind == StepKind::kFallingJump) {
    return next.isJump() && isLow(next);
  }
  return next.kind == StepKind::kFallingJump || next.kind == StepKind::kFallingSlope ||
         (next.kind == StepKind::kRisingJump && isLow(next));
}

FlatDent::Kind kindOf(const FlatStep& step, bool isPaired) {
  if (step.isJump()) {
    return FlatDent::kJump;
  }
  if (isPaired) {
    return FlatDent::kSlopePair;
  }
  return step.kind == StepKind::kRisingSlope ? FlatDent::kRisingSlope : FlatDent::kFallingSlope;
}

}  // namespace

std::vector<FlatDent> pairSteps(const Profile& profile,
                                const FlatSteps& steps,
                                const FlatLineLimits& limits) {
  const auto areClose = [&](const FlatStep& step, const FlatStep& next) {
    return limits.peakWidth_y > std::abs(profile.y[next.first] - profile.y[step.last]);
  };
  std::vector<FlatDent> dents;
  for (std::size_t k = 0; k < steps.size(); ++k) {
    const FlatStep& step = steps[k];
    const bool isLast = k + 1 == steps.size();
    if (isLast && step.kind == StepKind::kRisingSlope) {
      continue;
    }
    const bool isPaired =
        !isLast && mayPair(step, steps[k + 1], limits.jumpTh_z) && areClose(step, steps[k + 1]);
    dents.push_back({kindOf(step, isPaired), step.first, isPaired ? steps[k + 1].last : step.last});
    k += isPaired ? 1 : 0;
  }
  return dents;
}

}  // namespace scanline::detail
