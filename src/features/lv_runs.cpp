// Cuts a line into monotone runs of z and, independently of these, into data segments.
#include <cmath>
#include <vector>

#include "features/lv_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

enum class Direction { kNone, kFalling, kRising };

/// A change of z, positive in the given direction.
double along(Direction direction, double dz) {
  return direction == Direction::kRising ? dz : -dz;
}

/// The run between two samples, with its largest step, the earliest of equal ones.
SlopeRun runBetween(const LvLine& line, int start, int end, Direction direction) {
  SlopeRun run = {start, end, start, start};
  int before = start;
  for (int i = start + 1; i <= end; ++i) {
    if (isMissing(line.point(i).z)) {
      continue;
    }
    if (before == start ||
        along(direction, line.growth(before, i)) > along(direction, line.maxStep(run))) {
      run.maxStartIdx = before;
      run.maxEndIdx = i;
    }
    before = i;
  }
  return run;
}

}  // namespace

std::vector<SlopeRun> findSlopeRuns(const LvLine& line, double minSlope_z) {
  std::vector<SlopeRun> runs;
  Direction direction = Direction::kNone;
  int start = -1;
  int end = -1;
  const auto close = [&] {
    if (direction != Direction::kNone && along(direction, line.growth(start, end)) >= minSlope_z) {
      runs.push_back(runBetween(line, start, end, direction));
    }
  };
  int before = -1;
  for (int i = 0; i < line.count; ++i) {
    if (isMissing(line.point(i).z)) {
      continue;
    }
    const double dz = before < 0 ? 0.0 : line.growth(before, i);
    const bool turnsUp = (dz > 0.0) & (direction != Direction::kRising);
    const bool turnsDown = (dz < 0.0) & (direction != Direction::kFalling);
    if (turnsUp | turnsDown) {
      close();
      direction = turnsUp ? Direction::kRising : Direction::kFalling;
      start = before;
      end = i;
    } else if (!std::isnan(dz)) {
      end = i;
    }
    before = i;
  }
  close();
  return runs;
}

std::vector<SQO_RUN> findSegments(const LvLine& line, double maxGap_y) {
  std::vector<SQO_RUN> segments;
  int start = -1;
  int before = -1;
  const auto close = [&] { segments.push_back({start, before - start + 1, 1}); };
  for (int i = 0; i < line.count; ++i) {
    if (isMissing(line.point(i).z)) {
      continue;
    }
    const bool isAfterHole = i - before > 1;
    if (before < 0) {
      start = i;
    } else if (isAfterHole && i != line.count - 1 &&
               std::abs(line.point(i).y - line.point(before).y) > maxGap_y) {
      close();
      start = i;
    }
    before = i;
  }
  if (before >= 0 && start != line.count - 1) {
    close();
  }
  return segments;
}

}  // namespace scanline::detail
