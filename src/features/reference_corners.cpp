#include <algorithm>
#include <cmath>

#include <scanline/line_features.h>
#include "features/append.h"
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/stretches.h"

namespace detail = scanline::detail;

namespace {

/// Corners count only this close in z to the reference height.
constexpr double kMaxHeightDistance = 10.0;

// The working word of a sample holds its index on the line, above it the type of a corner, above
// that the marks of stretch ends.
constexpr int kTypeShift = 16;
constexpr int kTypeMask = 15;
constexpr int kStretchEndsShift = 20;
constexpr int kStartMarkOnly = detail::kStretchStartMark >> kStretchEndsShift;
constexpr int kEndMarkOnly = detail::kStretchEndMark >> kStretchEndsShift;

/// Marks the corners of a line on its samples, at the indices that the points bear.
void markCorners(const detail::Samples& points,
                 const detail::Slopes& slopes,
                 const SQO_cornerParam& param,
                 detail::Samples& line) {
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kAny);
  const detail::PeakRule rule = {param.cornerTh, detail::twoScalesSquared(param.scale),
                                 detail::CornerMeasure::kValue};
  for (const auto& peak : detail::peakPass(extrema.maxima, points, rule)) {
    line[points[peak.pntIdx].nPointIdx].nPointIdx |= detail::typeByFlatArm(peak, param)
                                                     << kTypeShift;
  }
}

/// Type of the feature that a marked sample turns into, 0 for none. A stretch that goes on flat at
/// its start is typed like a corner with a flat forward arm, at its end like one with a flat
/// backward arm; a stretch of one sample bears both marks and is neither.
int typeOfMarked(const STesk3DPosition& sample,
                 const detail::SQO_pointSlope& slope,
                 double refZ,
                 double flat) {
  const int cornerType = (sample.nPointIdx >> kTypeShift) & kTypeMask;
  if (cornerType != 0) {
    return kMaxHeightDistance > std::abs(sample.pt3D.z - refZ) ? cornerType : 0;
  }
  const int ends = sample.nPointIdx >> kStretchEndsShift;
  if (ends == kStartMarkOnly && flat > std::abs(slope.forwardAngle)) {
    return FEATURE_JUMP_FALL;
  }
  if (ends == kEndMarkOnly && flat > std::abs(slope.backwardAngle)) {
    return FEATURE_JUMP_RISE;
  }
  return 0;
}

}  // namespace

void qo_getLineCornerFeature_BQ(STesk3DPosition* lineData,
                                int dataSize,
                                int lineIdx,
                                double refZ,
                                SQO_cornerParam cornerPara,
                                std::vector<SQO_basicFeature1D>& line_features) {
  const detail::Stretches stretches =
      detail::stretchesByYZ(lineData, dataSize, cornerPara.minEndingGap, cornerPara.minEndingGap_z);
  const detail::Slopes slopes = detail::slopePass(stretches.points, stretches.ranges,
                                                  detail::SlopeSearch::oneSided(cornerPara.scale));
  detail::Samples line(lineData, lineData + std::max(dataSize, 0));
  detail::markStretchEnds(stretches, line);
  markCorners(stretches.points, slopes, cornerPara, line);

  std::vector<SQO_basicFeature1D> features;
  std::size_t point = 0;
  for (int i = 0; i < dataSize; ++i) {
    // A hole has no slope; it bears marks only if the caller left them there.
    const bool isPoint = point < slopes.size() && stretches.sampleOf[point] == i;
    const detail::SQO_pointSlope slope = isPoint ? slopes[point++] : detail::SQO_pointSlope{};
    const int type = typeOfMarked(line[i], slope, refZ, cornerPara.jumpCornerTh_1);
    if (type != 0) {
      features.push_back({type, {lineIdx, i}, line[i].pt3D, 0.0});
    }
  }
  detail::append(features, line_features);
  std::copy(line.begin(), line.end(), lineData);
}
