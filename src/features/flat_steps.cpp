// Measures the steps of a nearly flat line and selects the steepest of each monotone row.
#include "features/flat_steps.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "features/extent.h"

namespace scanline::detail {
namespace {

constexpr double kMinSlope = 0.5;
constexpr double kMinSlopeZ = 0.2;

/// Finds the first point from a cursor on that is far enough in y from a given one.
class DistantPointSearch {
 public:
  DistantPointSearch(const Profile& profile, double distance)
      : profile_(profile), distance_(distance) {}

  /// Moves the cursor, which must be after the last point searched from.
  void setCursor(int cursor) {
    cursor_ = cursor;
  }

  /// Moves the cursor to the point found; returns `kNoPoint` and does not move it if there is none.
  int find(int from) {
    const double y = profile_.y[from];
    const auto isDistant = [&](double other) { return std::abs(other - y) >= distance_; };
    // Without this test, each search for a distance that spans the line would visit the whole line.
    if (!extentFrom_.empty() && !extentFrom_[cursor_ - begin_].anyFar(isDistant)) {
      return kNoPoint;
    }
    const int count = profile_.count();
    int found = cursor_;
    while (found < count && !isDistant(profile_.y[found])) {
      ++found;
    }
    if (found == count) {
      measureExtents(std::min(from, cursor_));
      return kNoPoint;
    }
    cursor_ = found;
    return found;
  }

 private:
  /// Once a search has failed, mostly near the end of the line, others are likely to fail.
  void measureExtents(int begin) {
    begin_ = begin;
    extentFrom_.resize(static_cast<std::size_t>(profile_.count() - begin));
    Extent extent;
    for (std::size_t k = extentFrom_.size(); k-- > 0;) {
      extent.take(profile_.y[k + static_cast<std::size_t>(begin)]);
      extentFrom_[k] = extent;
    }
  }

  const Profile& profile_;
  double distance_;
  int cursor_ = 0;
  std::vector<Extent> extentFrom_;  ///< Of each point from `begin_` on with all after it.
  int begin_ = 0;
};

FlatStep stepBetween(
    const Profile& profile, int first, int last, StepKind falling, StepKind rising) {
  const double dz = profile.z[last] - profile.z[first];
  const double slope = dz / std::abs(profile.y[last] - profile.y[first]);
  return {dz > 0.0 ? rising : falling, first, last, dz, slope};
}

/// The jumps and slopes of a line, at most one from each point: the jump to the next point, or else
/// the slope over the window.
FlatSteps measureSteps(const Profile& profile, const FlatLineLimits& limits) {
  const auto& y = profile.y;
  const auto& z = profile.z;
  const double maxGap = limits.peakWidth_y * 0.5;
  FlatSteps steps;
  DistantPointSearch search(profile, limits.slopeWin_y);
  for (int k = 0; k + 1 < profile.count(); ++k) {
    if (std::abs(y[k + 1] - y[k]) > maxGap || std::abs(z[k + 1] - z[k]) > limits.jumpTh_z) {
      steps.push_back(
          stepBetween(profile, k, k + 1, StepKind::kFallingJump, StepKind::kRisingJump));
      search.setCursor(k + 1);
      continue;
    }
    const int distant = search.find(k);
    if (distant == kNoPoint || !(std::abs(z[distant] - z[k]) > kMinSlopeZ)) {
      continue;
    }
    const FlatStep step =
        stepBetween(profile, k, distant, StepKind::kFallingSlope, StepKind::kRisingSlope);
    if (std::abs(step.slope) > kMinSlope) {
      steps.push_back(step);
    }
  }
  return steps;
}

/// Whether two steps start from adjacent points.
bool areAdjacent(const FlatStep& a, const FlatStep& b) {
  return b.first - a.first == 1 || a.first - b.first == 1;
}

/// Clears the unbroken row of slopes of `kind` next to step `k` in one direction.
void clearSlopes(FlatSteps& steps, int k, int direction, StepKind kind) {
  const int count = static_cast<int>(steps.size());
  for (int j = k + direction; j >= 0 && j < count; j += direction) {
    if (steps[j].kind != kind || !areAdjacent(steps[j], steps[j - direction])) {
      return;
    }
    steps[j].kind = StepKind::kNone;
  }
}

/// Drops the slopes on the side of greater z of each jump.
void absorbSlopes(FlatSteps& steps) {
  for (int k = 0; k < static_cast<int>(steps.size()); ++k) {
    if (steps[k].kind == StepKind::kRisingJump) {
      clearSlopes(steps, k, 1, StepKind::kRisingSlope);
    } else if (steps[k].kind == StepKind::kFallingJump) {
      clearSlopes(steps, k, -1, StepKind::kFallingSlope);
    }
  }
}

bool runSameWay(const FlatStep& a, const FlatStep& b) {
  return (a.slope < 0.0 && b.slope < 0.0) || (a.slope > 0.0 && b.slope > 0.0);
}

/// The steepest step of each monotone row. A jump at the start of a row is kept by itself; one
/// inside a row counts like a slope. A point without a step ends a row.
FlatSteps mergeSteps(const FlatSteps& steps) {
  FlatSteps merged;
  const FlatStep* steepest = nullptr;
  const auto endRow = [&] {
    if (steepest != nullptr) {
      merged.push_back(*steepest);
      steepest = nullptr;
    }
  };
  for (std::size_t k = 0; k < steps.size(); ++k) {
    const FlatStep& step = steps[k];
    if (step.kind == StepKind::kNone || (k > 0 && !areAdjacent(steps[k - 1], step))) {
      endRow();
    }
    if (step.kind == StepKind::kNone) {
      continue;
    }
    if (steepest == nullptr && step.isJump()) {
      merged.push_back(step);
      continue;
    }
    if (steepest != nullptr && !runSameWay(*steepest, step)) {
      endRow();
    }
    if (steepest == nullptr || std::abs(step.slope) > std::abs(steepest->slope)) {
      steepest = &step;
    }
  }
  endRow();
  return merged;
}

}  // namespace

FlatSteps steepestSteps(const Profile& profile, const FlatLineLimits& limits) {
  FlatSteps steps = measureSteps(profile, limits);
  absorbSlopes(steps);
  return mergeSteps(steps);
}

}  // namespace scanline::detail
