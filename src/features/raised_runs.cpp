// Finds the raised stretches of a line: from a steep fall of z to the next steep rise.
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_samples.h"
#include "features/stretches.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SJU_segFeature>;

/// Room for the features of most lines, so that the list need not grow.
constexpr std::size_t kUsualFeatures = 32;

/// A stretch that no rise has closed yet. The fresh one starts at the line's first sample and looks
/// like one that a fall has opened there.
struct OpenStretch {
  int start = 0;
  int end = -1;  ///< Before `start` while no sample belongs to it.
};

/// Whether the step between two neighbouring samples is a flank, up or down. Few steps are high, so
/// few are divided.
bool isFlank(const STesk3DPoint& before,
             const STesk3DPoint& point,
             const SQO_raisedFeatureParam& param) {
  const double step = std::abs(point.z - before.z);
  return step > param.minJumpZ && step / std::abs(point.y - before.y) > param.minJumpK;
}

void reportIfFitting(const STesk3DPosition* lineData,
                     int lineIdx,
                     const OpenStretch& stretch,
                     const SQO_raisedFeatureParam& param,
                     Features& features) {
  if (stretch.end < stretch.start) {
    return;
  }
  const STesk3DPoint& first = lineData[stretch.start].pt3D;
  const STesk3DPoint& last = lineData[stretch.end].pt3D;
  const double width = std::abs(first.y - last.y);
  if (width >= param.minWidth && param.maxWidth >= width) {
    features.push_back({lineIdx, stretch.start, stretch.end, 0, first, last, width});
  }
}

Features findRaised(const STesk3DPosition* lineData,
                    int dataSize,
                    int lineIdx,
                    const SQO_raisedFeatureParam& param) {
  constexpr STesk3DPoint kNothing = {0.0, 0.0, std::numeric_limits<double>::quiet_NaN()};
  Features features;
  features.reserve(kUsualFeatures);
  OpenStretch stretch;
  const STesk3DPoint* before = &kNothing;
  for (int i = 0; i < dataSize; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (detail::isHole(point.z)) {
      continue;
    }
    // A z that is not a number passes for a sample, yet nothing is compared with it.
    if (!std::isnan(before->z)) {
      if (!isFlank(*before, point, param) || before->z == point.z) {
        stretch.end = i;
      } else if (before->z > point.z) {
        stretch = {i, i};
      } else {
        reportIfFitting(lineData, lineIdx, stretch, param, features);
        stretch = {};
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
