#include <algorithm>
#include <cmath>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// Bends whose arms are flat and steep, or the other way about, with `type` saying which.
void appendBends(const detail::Slopes& peaks,
                 const SQO_cornerParam& param,
                 int flatThenSteep,
                 int steepThenFlat,
                 detail::Slopes& bends) {
  for (detail::SQO_pointSlope bend : peaks) {
    const detail::Arms arms = detail::armsOf(bend, param);
    if (arms != detail::Arms::kOther) {
      bend.type = arms == detail::Arms::kFlatThenSteep ? flatThenSteep : steepThenFlat;
      bends.push_back(bend);
    }
  }
}

/// All bends of a line that can be the foot or the top of a step, in line order.
detail::Slopes findBends(const detail::Samples& points, const SQO_cornerParam& param) {
  const detail::CornerExtrema extrema =
      detail::extremaPass(detail::slopePass(points, detail::SlopeSearch::unlimited(param.scale)),
                          detail::ExtremaSign::kAny);
  const double window = detail::twoScalesSquared(param.scale);
  detail::Slopes bends;
  appendBends(detail::peakPass(extrema.maxima, points,
                               {param.cornerTh, window, detail::CornerMeasure::kValue}),
              param, FEATURE_RIGHT_ANGLE_1, FEATURE_RIGHT_ANGLE_4, bends);
  appendBends(detail::peakPass(extrema.minima, points,
                               {param.cornerTh, window, detail::CornerMeasure::kMagnitude}),
              param, FEATURE_RIGHT_ANGLE_2, FEATURE_RIGHT_ANGLE_3, bends);
  std::sort(bends.begin(), bends.end(),
            [](const detail::SQO_pointSlope& a, const detail::SQO_pointSlope& b) {
              return a.pntIdx < b.pntIdx;
            });
  return bends;
}

}  // namespace

void qo_getLineJumpFeature_cornerMethod(STesk3DPosition* lineData,
                                        int dataSize,
                                        int lineIdx,
                                        SQO_cornerParam cornerPara,
                                        std::vector<SQO_basicFeature1D>& line_jumps) {
  const detail::Samples points = detail::collectValidPoints(lineData, dataSize);
  const detail::Slopes bends = findBends(points, cornerPara);
  std::vector<SQO_basicFeature1D> jumps;
  for (std::size_t k = 0; k + 1 < bends.size(); ++k) {
    const detail::SQO_pointSlope& first = bends[k];
    const detail::SQO_pointSlope& second = bends[k + 1];
    const STesk3DPosition& firstPoint = points[first.pntIdx];
    const STesk3DPosition& secondPoint = points[second.pntIdx];
    const double dy = std::abs(firstPoint.pt3D.y - secondPoint.pt3D.y);
    const double dz = std::abs(second.forwardZ - first.backwardZ);
    if (!(cornerPara.minEndingGap > dy && dz > cornerPara.minEndingGap_z)) {
      continue;
    }
    // A jump stands on the bend at the end of greater z.
    if (first.type == FEATURE_RIGHT_ANGLE_1 && second.type == FEATURE_RIGHT_ANGLE_3) {
      jumps.push_back(detail::featureAt(firstPoint, FEATURE_JUMP_FALL, lineIdx, first.backwardZ));
    } else if (first.type == FEATURE_RIGHT_ANGLE_2 && second.type == FEATURE_RIGHT_ANGLE_4) {
      jumps.push_back(detail::featureAt(secondPoint, FEATURE_JUMP_RISE, lineIdx, second.forwardZ));
    }
  }
  detail::append(jumps, line_jumps);
}
