#pragma once

#include <optional>
#include <vector>

#include <scanline/feature_records.h>
#include <scanline/line_features.h>
#include <scanline/scan_records.h>

/// The stages of the search for L and V shapes: monotone runs of z, the flank that a run makes, and
/// the test whether two runs make a V.
namespace scanline::detail {

/// A stretch of a line along which z goes one way, level places included. All are indices on the
/// line.
struct SlopeRun {
  int startIdx;     ///< First sample.
  int endIdx;       ///< Last sample.
  int maxStartIdx;  ///< First sample of the largest step, the earliest of equal ones.
  int maxEndIdx;    ///< Second sample of that step.
};

/// One line as the search sees it.
struct LvLine {
  const STesk3DPosition* samples;
  int count;
  int lineIdx;

  [[nodiscard]] const STesk3DPoint& point(int index) const {
    return samples[index].pt3D;
  }
  /// Growth of z from one sample to another.
  [[nodiscard]] double growth(int from, int to) const {
    return point(to).z - point(from).z;
  }
  [[nodiscard]] double total(const SlopeRun& run) const {
    return growth(run.startIdx, run.endIdx);
  }
  [[nodiscard]] double maxStep(const SlopeRun& run) const {
    return growth(run.maxStartIdx, run.maxEndIdx);
  }
  [[nodiscard]] SQO_basicFeature1D feature(int type, int index) const {
    return {type, {lineIdx, index}, point(index), 0.0};
  }
};

/// The monotone runs of a line whose z changes by `minSlope_z` or more. They go on across holes.
std::vector<SlopeRun> findSlopeRuns(const LvLine& line, double minSlope_z);

/// The data segments of a line, in order. They end at holes wider than `maxGap_y`, except that the
/// last sample of the line begins no segment.
std::vector<SQO_RUN> findSegments(const LvLine& line, double maxGap_y);

/// The L of a run: a jump on the low side of its largest step if that exceeds `jumpTh_z`, else a
/// slope on the high side of it if the whole run does, is steep enough and does not run out near
/// the end of a segment.
std::optional<SQO_basicFeature1D> flankOf(const LvLine& line,
                                          const std::vector<SQO_RUN>& segments,
                                          const SlopeRun& run,
                                          double jumpTh_z);

/// The sample from `first` to `last`, hole or not, whose z is nearest to `z`; the earliest among
/// equals. A record of zeros if there are none.
STesk3DPosition nearestByZ(const STesk3DPosition* lineData, int first, int last, double z);

/// Whether a rise and the fall after it stand close enough to be two sides of one thing.
bool isV(const LvLine& line,
         const SlopeRun& rise,
         const SlopeRun& fall,
         const SQO_VFeatureParam& param);

}  // namespace scanline::detail
