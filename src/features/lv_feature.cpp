// Finds the L and V shapes of a line and the ends of its data segments.
#include <cmath>
#include <cstddef>
#include <optional>

#include <scanline/line_features.h>
#include "features/line_runs.h"
#include "features/lv_stages.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using Features = std::vector<SQO_basicFeature1D>;
using Segments = std::vector<SQO_RUN>;

/// Distance in y beyond which a flank is separate from the V that it belongs to.
constexpr double kSeparateY = 5.0;

/// Difference of a V's outer ends in z below which they are level.
constexpr double kLevelEndsZ = 40.0;

/// Distance in y below which two jumps of one direction are one.
constexpr double kMergeY = 20.0;

/// A rise and a fall that belong together, and the flanks that each would make alone.
struct VShape {
  SQO_basicFeature1D v;
  std::optional<SQO_basicFeature1D> rise;
  std::optional<SQO_basicFeature1D> fall;
  bool isRiseSeparate;
  bool isFallSeparate;
  double outerDiff;  ///< How much higher in z the rise begins than the fall ends.

  [[nodiscard]] bool hasLevelEnds() const {
    return kLevelEndsZ > std::abs(outerDiff);
  }
};

bool isJump(const SQO_basicFeature1D& feature) {
  return feature.featureType == FEATURE_JUMP_RISE || feature.featureType == FEATURE_JUMP_FALL;
}

VShape shapeOf(const detail::LvLine& line,
               const Segments& segments,
               const detail::SlopeRun& rise,
               const detail::SlopeRun& fall,
               double jumpTh_z) {
  const int top =
      line.point(rise.endIdx).z >= line.point(fall.startIdx).z ? rise.endIdx : fall.startIdx;
  const auto isSeparate = [&](int index) {
    return std::abs(line.point(top).y - line.point(index).y) > kSeparateY;
  };
  return {line.feature(FEATURE_V, top),
          detail::flankOf(line, segments, rise, jumpTh_z),
          detail::flankOf(line, segments, fall, jumpTh_z),
          isSeparate(rise.maxEndIdx),
          isSeparate(fall.maxStartIdx),
          line.growth(fall.endIdx, rise.startIdx)};
}

/// What is reported of a V with one flank close to it.
SQO_basicFeature1D vOrFlank(const VShape& shape, const SQO_basicFeature1D& flank) {
  return shape.hasLevelEnds() && !isJump(flank) ? shape.v : flank;
}

/// What is reported of a V with both flanks close to it. A flank, even a jump, becomes a slope of
/// the direction from outer end to outer end.
SQO_basicFeature1D vOrEitherFlank(const VShape& shape) {
  if (shape.hasLevelEnds()) {
    return shape.v;
  }
  SQO_basicFeature1D flank =
      shape.rise->jumpPos.z > shape.fall->jumpPos.z ? *shape.rise : *shape.fall;
  flank.featureType = shape.outerDiff > 0.0 ? FEATURE_SLOPE_FALL : FEATURE_SLOPE_RISE;
  return flank;
}

void appendVWithFall(const VShape& shape, Features& features) {
  if (shape.isFallSeparate) {
    features.insert(features.end(), {shape.v, *shape.fall});
  } else {
    features.push_back(vOrFlank(shape, *shape.fall));
  }
}

void appendVWithRise(const VShape& shape, Features& features) {
  if (shape.isRiseSeparate) {
    features.insert(features.end(), {*shape.rise, shape.v});
  } else {
    features.push_back(vOrFlank(shape, *shape.rise));
  }
}

void appendVWithBoth(const VShape& shape, Features& features) {
  const auto jumpOrV = [&shape](const SQO_basicFeature1D& flank) {
    return isJump(flank) ? flank : shape.v;
  };
  if (shape.isRiseSeparate && shape.isFallSeparate) {
    features.insert(features.end(), {*shape.rise, shape.v, *shape.fall});
  } else if (shape.isRiseSeparate) {
    features.insert(features.end(), {*shape.rise, jumpOrV(*shape.fall)});
  } else if (shape.isFallSeparate) {
    features.insert(features.end(), {jumpOrV(*shape.rise), *shape.fall});
  } else {
    features.push_back(vOrEitherFlank(shape));
  }
}

/// Decides which of a V and its flanks become features.
void appendV(const VShape& shape, Features& features) {
  if (shape.rise && shape.fall) {
    appendVWithBoth(shape, features);
  } else if (shape.rise) {
    appendVWithRise(shape, features);
  } else if (shape.fall) {
    appendVWithFall(shape, features);
  } else {
    features.push_back(shape.v);
  }
}

/// Walks the runs: a rise and the fall after it may make a V, any other run may make an L.
void appendShapes(const detail::LvLine& line,
                  const Segments& segments,
                  const SQO_slopeParam& slope,
                  const SQO_VFeatureParam& param,
                  Features& features) {
  const std::vector<detail::SlopeRun> runs = detail::findSlopeRuns(line, slope.minSlope_z);
  for (std::size_t k = 0; k < runs.size(); ++k) {
    const detail::SlopeRun& run = runs[k];
    const bool isRiseThenFall =
        k + 1 < runs.size() && line.total(run) > 0.0 && line.total(runs[k + 1]) < 0.0;
    if (isRiseThenFall && detail::isV(line, run, runs[k + 1], param)) {
      appendV(shapeOf(line, segments, run, runs[k + 1], slope.jumpTh_z), features);
      ++k;
    } else if (const auto flank = detail::flankOf(line, segments, run, slope.jumpTh_z)) {
      features.push_back(*flank);
    }
  }
}

bool isOneJump(const SQO_basicFeature1D& a, const SQO_basicFeature1D& b) {
  return a.featureType == b.featureType && isJump(a) &&
         kMergeY > std::abs(a.jumpPos.y - b.jumpPos.y);
}

/// Keeps the last of neighbouring jumps that are one, searching from the end of the list.
void mergeJumps(Features& features) {
  if (features.empty()) {
    return;
  }
  auto kept = features.end() - 1;
  for (auto f = kept; f != features.begin();) {
    --f;
    if (!isOneJump(*f, *kept)) {
      *--kept = *f;
    }
  }
  features.erase(features.begin(), kept);
}

}  // namespace

void qo_getLineLVFeature(STesk3DPosition* lineData,
                         int dataSize,
                         int lineIdx,
                         SQO_slopeParam slopeParam,
                         SQO_VFeatureParam vFeatureParam,
                         SQO_lineFeature* line_features) {
  const detail::LvLine line = {lineData, dataSize, lineIdx};
  const Segments segments = detail::findSegments(line, slopeParam.maxGap_y);
  Features shapes;
  appendShapes(line, segments, slopeParam, vFeatureParam, shapes);
  Features endings;
  detail::appendEndings(lineData, lineIdx, segments, endings);
  detail::append(shapes, endings, *line_features);
  mergeJumps(line_features->features);
}
