// Finds the L and V shapes of a line, and the ends of its data segments.
#include <cassert>
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

/// Distance in y beyond which an L is apart from its V.
constexpr double kApartY = 5.0;

/// Difference in z of the near ends of a V below which it is level.
constexpr double kLevelZ = 40.0;

/// Distance in y below which one of two jumps in the same direction is dropped.
constexpr double kMergeY = 20.0;

/// The V of a rise and a fall, and the L of each of them.
struct VShape {
  SQO_basicFeature1D v;
  std::optional<SQO_basicFeature1D> rise;
  std::optional<SQO_basicFeature1D> fall;
  bool isRiseApart;
  bool isFallApart;
  double nearDiff;  ///< z at the start of the rise minus z at the end of the fall.

  [[nodiscard]] bool isLevel() const {
    return kLevelZ > std::abs(nearDiff);
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
  const int apex =
      line.point(rise.endIdx).z >= line.point(fall.startIdx).z ? rise.endIdx : fall.startIdx;
  const auto isApart = [&](int index) {
    return std::abs(line.point(apex).y - line.point(index).y) > kApartY;
  };
  return {line.feature(FEATURE_V, apex),
          detail::lShapeOf(line, segments, rise, jumpTh_z),
          detail::lShapeOf(line, segments, fall, jumpTh_z),
          isApart(rise.maxEndIdx),
          isApart(fall.maxStartIdx),
          line.growth(fall.endIdx, rise.startIdx)};
}

/// What is reported of a V and its only L, which is close.
SQO_basicFeature1D vOrL(const VShape& shape, const SQO_basicFeature1D& lShape) {
  return shape.isLevel() && !isJump(lShape) ? shape.v : lShape;
}

/// What is reported of a V with two close L. An L, even a jump, becomes a slope in the direction
/// from one near end to the other.
SQO_basicFeature1D vOrEitherL(const VShape& shape) {
  if (shape.isLevel()) {
    return shape.v;
  }
  SQO_basicFeature1D lShape =
      shape.rise->jumpPos.z > shape.fall->jumpPos.z ? *shape.rise : *shape.fall;
  lShape.featureType = shape.nearDiff > 0.0 ? FEATURE_SLOPE_FALL : FEATURE_SLOPE_RISE;
  return lShape;
}

void appendVWithFall(const VShape& shape, Features& features) {
  if (shape.isFallApart) {
    features.insert(features.end(), {shape.v, *shape.fall});
  } else {
    features.push_back(vOrL(shape, *shape.fall));
  }
}

void appendVWithRise(const VShape& shape, Features& features) {
  if (shape.isRiseApart) {
    features.insert(features.end(), {*shape.rise, shape.v});
  } else {
    features.push_back(vOrL(shape, *shape.rise));
  }
}

void appendVWithBoth(const VShape& shape, Features& features) {
  const auto jumpOrV = [&shape](const SQO_basicFeature1D& closeL) {
    return isJump(closeL) ? closeL : shape.v;
  };
  if (shape.isRiseApart && shape.isFallApart) {
    features.insert(features.end(), {*shape.rise, shape.v, *shape.fall});
  } else if (shape.isRiseApart) {
    features.insert(features.end(), {*shape.rise, jumpOrV(*shape.fall)});
  } else if (shape.isFallApart) {
    features.insert(features.end(), {jumpOrV(*shape.rise), *shape.fall});
  } else {
    features.push_back(vOrEitherL(shape));
  }
}

/// Appends what is reported of a V and its L.
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

/// Visits the runs in order: a rise and the next run may make a V, any other run may make an L.
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
    } else if (const auto lShape = detail::lShapeOf(line, segments, run, slope.jumpTh_z)) {
      features.push_back(*lShape);
    }
  }
}

/// Whether two features are jumps that are merged.
bool areOneJump(const SQO_basicFeature1D& a, const SQO_basicFeature1D& b) {
  return a.featureType == b.featureType && isJump(a) &&
         kMergeY > std::abs(a.jumpPos.y - b.jumpPos.y);
}

/// Drops each jump that is merged with the next kept feature, from the end of the list to its
/// start.
void mergeJumps(Features& features) {
  if (features.empty()) {
    return;
  }
  auto kept = features.end() - 1;
  for (auto f = kept; f != features.begin();) {
    --f;
    if (!areOneJump(*f, *kept)) {
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
  assert(dataSize < 1 || lineData != nullptr);
  assert(line_features != nullptr);
  const detail::LvLine line = {lineData, dataSize, lineIdx};
  const Segments segments = detail::findSegments(line, slopeParam.maxGap_y);
  Features shapes;
  appendShapes(line, segments, slopeParam, vFeatureParam, shapes);
  Features endings;
  detail::appendEndings(lineData, lineIdx, segments, endings);
  detail::append(shapes, endings, *line_features);
  mergeJumps(line_features->features);
}
