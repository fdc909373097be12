// Finds the raised runs of a line: from a steep fall of z to the next steep rise.
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_samples.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SJU_segFeature>;

/// Enough for most lines, so that the list need not grow.
constexpr std::size_t kUsualFeatures = 32;

/// A run that no rise has ended yet. Initially it begins at the first sample of the line, as if a
/// fall preceded that.
struct OpenRun {
  int start = 0;
  int end = -1;  ///< Below `start` while the run has no sample.
};

/// Whether the step between two successive samples is a flank, up or down. Few steps exceed the
/// height, so few divisions are made.
bool isFlank(const STesk3DPoint& before,
             const STesk3DPoint& point,
             const SQO_raisedFeatureParam& param) {
  const double step = std::abs(point.z - before.z);
  return step > param.minJumpZ && step / std::abs(point.y - before.y) > param.minJumpK;
}

void reportIfFitting(const STesk3DPosition* lineData,
                     int lineIdx,
                     const OpenRun& run,
                     const SQO_raisedFeatureParam& param,
                     Features& features) {
  if (run.end < run.start) {
    return;
  }
  const STesk3DPoint& first = lineData[run.start].pt3D;
  const STesk3DPoint& last = lineData[run.end].pt3D;
  const double width = std::abs(first.y - last.y);
  if (width >= param.minWidth && param.maxWidth >= width) {
    features.push_back({lineIdx, run.start, run.end, 0, first, last, width});
  }
}

Features findRaised(const STesk3DPosition* lineData,
                    int dataSize,
                    int lineIdx,
                    const SQO_raisedFeatureParam& param) {
  constexpr STesk3DPoint kNothing = {0.0, 0.0, std::numeric_limits<double>::quiet_NaN()};
  Features features;
  features.reserve(kUsualFeatures);
  OpenRun run;
  const STesk3DPoint* before = &kNothing;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (detail::isHole(point.z)) {
      continue;
    }
    // NaN is no hole, but the step from it is ignored.
    if (!std::isnan(before->z)) {
      if (!isFlank(*before, point, param) || before->z == point.z) {
        run.end = i;
      } else if (before->z > point.z) {
        run = {i, i};
      } else {
        reportIfFitting(lineData, lineIdx, run, param, features);
        run = {};
      }
    }
    before = &point;
  }
  return features;
}

}  // namespace

void ju_getLineRaisedFeature(std::vector<STesk3DPosition>& lineData,
                             int lineIdx,
                             SQO_raisedFeatureParam raisedFeaturePara,
                             std::vector<SJU_segFeature>& line_raisedFeatures) {
  detail::append(
      findRaised(lineData.data(), static_cast<int>(lineData.size()), lineIdx, raisedFeaturePara),
      line_raisedFeatures);
  detail::stampIndices(lineData.data(), static_cast<int>(lineData.size()));
}
