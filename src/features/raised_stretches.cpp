#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/stretches.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SJU_segFeature>;

/// A stretch that no rise has closed yet. The fresh one starts at the line's first sample and looks
/// like one that a fall has opened there.
struct OpenStretch {
  int start = 0;
  int len = -1;
};

enum class Flank { kNone, kFall, kRise };

Flank flankBetween(const STesk3DPoint& before,
                   const STesk3DPoint& point,
                   const SQO_raisedFeatureParam& param) {
  const double step = std::abs(point.z - before.z);
  const double slope = step / std::abs(point.y - before.y);
  if (!(step > param.minJumpZ && slope > param.minJumpK)) {
    return Flank::kNone;
  }
  if (before.z > point.z) {
    return Flank::kFall;
  }
  return point.z > before.z ? Flank::kRise : Flank::kNone;
}

void reportIfFitting(const std::vector<STesk3DPosition>& lineData,
                     int lineIdx,
                     const OpenStretch& stretch,
                     const SQO_raisedFeatureParam& param,
                     Features& features) {
  if (stretch.len <= 0) {
    return;
  }
  const int end = stretch.start + stretch.len - 1;
  const STesk3DPoint& first = lineData[stretch.start].pt3D;
  const STesk3DPoint& last = lineData[end].pt3D;
  const double width = std::abs(first.y - last.y);
  if (width >= param.minWidth && param.maxWidth >= width) {
    features.push_back({lineIdx, stretch.start, end, 0, first, last, width});
  }
}

Features findRaised(const std::vector<STesk3DPosition>& lineData,
                    int lineIdx,
                    const SQO_raisedFeatureParam& param) {
  Features features;
  OpenStretch stretch;
  const STesk3DPoint* before = nullptr;
  for (int i = 0; i < static_cast<int>(lineData.size()); ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (detail::isHole(point.z)) {
      continue;
    }
    // A z that is not a number passes for a sample, yet nothing is measured against it.
    if (before != nullptr && !std::isnan(before->z)) {
      switch (flankBetween(*before, point, param)) {
        case Flank::kFall:
          stretch = {i, 1};
          break;
        case Flank::kRise:
          reportIfFitting(lineData, lineIdx, stretch, param, features);
          stretch = {};
          break;
        case Flank::kNone:
          stretch.len = i - stretch.start + 1;
          break;
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
  detail::append(findRaised(lineData, lineIdx, raisedFeaturePara), line_raisedFeatures);
  detail::stampIndices(lineData);
}
