#pragma once

#include <optional>
#include <vector>

#include <scanline/feature_records.h>
#include <scanline/line_features.h>
#include <scanline/scan_records.h>

/// The stages of the search for L and V shapes: monotone runs of z, the L of a run, and the test
/// whether two runs make a V. The end of a run with the smaller z is the near one, the other the
/// far one.
namespace scanline::detail {

/// A run along which z changes in one direction, flat places included. All are indices on the line.
struct SlopeRun {
  int startIdx;     ///< First sample.
  int endIdx;       ///< Last sample.
  int maxStartIdx;  ///< First sample of the largest step, the earliest of equal ones.
  int maxEndIdx;    ///< Second sample of that step.
};

struct LvLine {
  const STesk3DPosition* samples;
  int count;
  int lineIdx;

  [[nodiscard]] const STesk3DPoint& point(int index) const {
    return samples[index].pt3D;
  }
  /// Change of z from one sample to another.
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

/// The monotone runs along which z changes by `minSlope_z` or more. They continue across missing
/// samples.
std::vector<SlopeRun> findSlopeRuns(const LvLine& line, double minSlope_z);

/// The data segments of a line, in order. They end where missing samples separate two that are more
/// than `maxGap_y` apart in y. The last sample of the line starts no segment.
std::vector<SQO_RUN> findSegments(const LvLine& line, double maxGap_y);

/// The L of a run, if it has one: a jump at the near sample of the largest step if that exceeds
/// `jumpTh_z`. Otherwise a slope at the far sample of that step, if the change of z along the run
/// exceeds `jumpTh_z`, the step is steep, and the far end of the run is not near an end of a
/// segment.
std::optional<SQO_basicFeature1D> lShapeOf(const LvLine& line,
                                           const std::vector<SQO_RUN>& segments,
                                           const SlopeRun& run,
                                           double jumpTh_z);

/// The sample from `first` to `last`, missing or not, whose z is nearest to `z`; the earliest of
/// equal ones. A record of zeros if there are none.
STesk3DPosition nearestByZ(const STesk3DPosition* lineData, int first, int last, double z);

/// Whether a rise and the following fall make a V: each far end has a greater z than the near end
/// of the other run, and the V is narrow.
bool isV(const LvLine& line,
         const SlopeRun& rise,
         const SlopeRun& fall,
         const SQO_VFeatureParam& param);

}  // namespace scanline::detail
