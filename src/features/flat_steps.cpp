#include "features/flat_steps.h"

#include <cmath>

#include "features/extent.h"

namespace scanline::detail {
namespace {

constexpr double kMinSlope = 0.5;
constexpr double kMinSlopeZ = 0.2;

/// Finds the first point from a cursor on that lies far enough in y from a given one.
class DistantPointSearch {
 public:
  DistantPointSearch(const Samples& points, double distance)
      : points_(points), distance_(distance), extentFrom_(points.size()) {
    Extent extent;
    for (std::size_t k = points.size(); k-- > 0;) {
      extent.take(points[k].pt3D.y);
      extentFrom_[k] = extent;
    }
  }

  void setCursor(int cursor) {
    cursor_ = cursor;
  }

  /// Moves the cursor to the point found; leaves it and returns -1 if there is none.
  int find(double y) {
    const auto isDistant = [&](double other) { return std::abs(other - y) >= distance_; };
    // Without this a distance that spans the line would have every point search all of it.
    if (!extentFrom_[cursor_].anyFar(isDistant)) {
      return -1;
    }
    while (!isDistant(points_[cursor_].pt3D.y)) {
      ++cursor_;
    }
    return cursor_;
  }

 private:
  const Samples& points_;
  double distance_;
  std::vector<Extent> extentFrom_;  ///< Extent in y of each point and all after it.
  int cursor_ = 0;
};

/// The step between two points, its kind still open.
SQO_flatStep stepBetween(const Samples& points, int first, int last) {
  const STesk3DPoint& from = points[first].pt3D;
  const STesk3DPoint& to = points[last].pt3D;
  const double dz = to.z - from.z;
  return {StepKind::kNone, first, last, dz, dz / std::abs(to.y - from.y)};
}

/// One step per point: the jump to its neighbour, or else the slope over the window.
FlatSteps measureSteps(const Samples& points, const FlatLineLimits& limits) {
  FlatSteps steps(points.size());
  DistantPointSearch search(points, limits.slopeWin_y);
  for (int k = 0; k + 1 < static_cast<int>(points.size()); ++k) {
    const STesk3DPoint& p = points[k].pt3D;
    const STesk3DPoint& q = points[k + 1].pt3D;
    if (std::abs(q.y - p.y) > limits.peakWidth_y * 0.5 || std::abs(q.z - p.z) > limits.jumpTh_z) {
      steps[k] = stepBetween(points, k, k + 1);
      steps[k].kind = steps[k].dz > 0.0 ? StepKind::kRisingJump : StepKind::kFallingJump;
      search.setCursor(k + 1);
      continue;
    }
    const int distant = search.find(p.y);
    if (distant < 0) {
      continue;
    }
    steps[k] = stepBetween(points, k, distant);
    if (std::abs(steps[k].slope) > kMinSlope && std::abs(steps[k].dz) > kMinSlopeZ) {
      steps[k].kind = steps[k].dz > 0.0 ? StepKind::kRisingSlope : StepKind::kFallingSlope;
    }
  }
  return steps;
}

/// Clears the slopes of `kind` that start right beside step `k` on one side.
void clearSlopes(FlatSteps& steps, int k, int direction, StepKind kind) {
  const int count = static_cast<int>(steps.size());
  for (int j = k + direction; j >= 0 && j < count && steps[j].kind == kind; j += direction) {
    steps[j].kind = StepKind::kNone;
  }
}

/// A jump swallows the slope on its high side.
void absorbSlopes(FlatSteps& steps) {
  for (int k = 0; k < static_cast<int>(steps.size()); ++k) {
    if (steps[k].kind == StepKind::kRisingJump) {
      clearSlopes(steps, k, 1, StepKind::kRisingSlope);
    } else if (steps[k].kind == StepKind::kFallingJump) {
      clearSlopes(steps, k, -1, StepKind::kFallingSlope);
    }
  }
}

bool runSameWay(const SQO_flatStep& a, const SQO_flatStep& b) {
  return (a.slope < 0.0 && b.slope < 0.0) || (a.slope > 0.0 && b.slope > 0.0);
}

/// Each monotone stretch of steps, represented by its steepest. A jump that opens a stretch stands
/// alone; one inside a stretch takes part like a slope.
FlatSteps mergeSteps(const FlatSteps& steps) {
  FlatSteps merged;
  const SQO_flatStep* steepest = nullptr;
  for (const SQO_flatStep& step : steps) {
    const bool empty = step.kind == StepKind::kNone;
    if (steepest == nullptr) {
      if (step.isJump()) {
        merged.push_back(step);
      } else if (!empty) {
        steepest = &step;
      }
    } else if (empty) {
      merged.push_back(*steepest);
      steepest = nullptr;
    } else if (!runSameWay(*steepest, step)) {
      merged.push_back(*steepest);
      steepest = &step;
    } else if (std::abs(step.slope) > std::abs(steepest->slope)) {
      steepest = &step;
    }
  }
  return merged;
}

}  // namespace

FlatSteps steepestSteps(const Samples& points, const FlatLineLimits& limits) {
  FlatSteps steps = measureSteps(points, limits);
  absorbSlopes(steps);
  return mergeSteps(steps);
}

}  // namespace scanline::detail
