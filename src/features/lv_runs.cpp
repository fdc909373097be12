#include <cmath>

#include "features/lv_stages.h"
#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// Which way z goes along a run.
enum class Direction { kNone, kFalling, kRising };

/// Cuts a line into runs, step by step from one valid sample to the next.
class RunCutter {
 public:
  RunCutter(LvLine& line, double minSlope_z) : line_(line), minSlope_z_(minSlope_z) {}

  void step(int from, int to) {
    const double dz = line_.growth(from, to);
    if (direction_ != Direction::kNone && along(dz) >= 0.0) {
      extend(from, to, dz);
    } else if (dz > 0.0 || dz < 0.0) {
      finish();
      direction_ = dz > 0.0 ? Direction::kRising : Direction::kFalling;
      run_ = {from, to, from, to};
    }
  }

  /// Keeps the open run if z changes enough along it.
  void finish() {
    if (direction_ != Direction::kNone && along(line_.total(run_)) >= minSlope_z_) {
      line_.runs.push_back(run_);
    }
  }

 private:
  /// A change of z, counted in the direction of the open run.
  [[nodiscard]] double along(double dz) const {
    return direction_ == Direction::kRising ? dz : -dz;
  }

  void extend(int from, int to, double dz) {
    run_.endIdx = to;
    if (along(dz) > along(line_.maxStep(run_))) {
      run_.maxStartIdx = from;
      run_.maxEndIdx = to;
    }
  }

  LvLine& line_;
  double minSlope_z_;
  Direction direction_ = Direction::kNone;
  SQO_slopeRun run_ = {};
};

/// Cuts a line into data segments, step by step from one valid sample to the next.
class SegmentCutter {
 public:
  SegmentCutter(LvLine& line, double maxGap_y) : line_(line), maxGap_y_(maxGap_y) {}

  void begin(int first) {
    start_ = first;
  }

  void step(int from, int to) {
    const bool isAcrossHole = to - from > 1;
    // The last sample of the line begins no segment, however far away it is.
    const bool mayBegin = to != line_.count - 1;
    if (isAcrossHole && mayBegin && std::abs(line_.point(to).y - line_.point(from).y) > maxGap_y_) {
      close(from);
      start_ = to;
    }
  }

  void finish(int last) {
    if (start_ != line_.count - 1) {
      close(last);
    }
  }

 private:
  void close(int last) {
    line_.segments.push_back({start_, last - start_ + 1, 1});
  }

  LvLine& line_;
  double maxGap_y_;
  int start_ = 0;
};

}  // namespace

LvLine qo_getLineSlopeRuns(const STesk3DPosition* lineData,
                           int dataSize,
                           int lineIdx,
                           const SQO_slopeParam& param) {
  LvLine line = {lineData, dataSize, lineIdx, {}, {}};
  RunCutter runs(line, param.minSlope_z);
  SegmentCutter segments(line, param.maxGap_y);
  int before = -1;
  for (int i = 0; i < dataSize; ++i) {
    if (isNoSample(line.point(i).z)) {
      continue;
    }
    if (before < 0) {
      segments.begin(i);
    } else {
      segments.step(before, i);
      runs.step(before, i);
    }
    before = i;
  }
  if (before >= 0) {
    segments.finish(before);
    runs.finish();
  }
  return line;
}

}  // namespace scanline::detail
