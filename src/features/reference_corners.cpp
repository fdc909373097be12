#include <algorithm>
#include <cmath>

#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/stretches.h"
#include "records/append.h"

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

/// The marks that a line's samples receive: stretch ends, and corners at the index that their point
/// bears.
std::vector<int> findMarks(const detail::Stretches& stretches,
                           const detail::Slopes& slopes,
                           int dataSize,
                           const SQO_cornerParam& param) {
  std::vector<int> marks(static_cast<std::size_t>(std::max(dataSize, 0)));
  for (const detail::PointRange& range : stretches.ranges) {
    marks[stretches.sampleOf[range.first]] |= detail::kStretchStartMark;
    marks[stretches.sampleOf[range.last]] |= detail::kStretchEndMark;
  }
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kAny);
  const detail::PeakRule rule = {param.cornerTh, detail::twoScalesSquared(param.scale),
                                 detail::CornerMeasure::kValue};
  for (const auto& peak : detail::peakPass(extrema.maxima, stretches.points, rule)) {
    marks[stretches.points[peak.pntIdx].nPointIdx] |= detail::typeByFlatArm(peak, param)
                                                      << kTypeShift;
  }
  return marks;
}

/// Type of the feature that a marked sample turns into, 0 for none. A stretch that goes on flat at
/// its start is typed like a corner with a flat forward arm, at its end like one with a flat
/// backward arm; a stretch of one sample bears both marks and is neither.
int typeOfMarked(
    int word, double z, const detail::SQO_pointSlope& slope, double refZ, double flat) {
  const int cornerType = (word >> kTypeShift) & kTypeMask;
  if (cornerType != 0) {
    return kMaxHeightDistance > std::abs(z - refZ) ? cornerType : 0;
  }
  const int ends = word >> kStretchEndsShift;
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
  const std::vector<int> marks = findMarks(stretches, slopes, dataSize, cornerPara);

  std::vector<SQO_basicFeature1D> features;
  constexpr detail::SQO_pointSlope kHole = {};
  std::size_t point = 0;
  for (int i = 0; i < dataSize; ++i) {
    // A hole has no slope; it bears marks only if the caller left them there.
    const bool isPoint = point < slopes.size() && stretches.sampleOf[point] == i;
    const detail::SQO_pointSlope& slope = isPoint ? slopes[point++] : kHole;
    const STesk3DPosition& sample = lineData[i];
    const int word = sample.nPointIdx | marks[i];
    const int type = typeOfMarked(word, sample.pt3D.z, slope, refZ, cornerPara.jumpCornerTh_1);
    if (type != 0) {
      features.push_back({type, {lineIdx, i}, sample.pt3D, 0.0});
    }
  }
  detail::append(features, line_features);
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx |= marks[i];
  }
}
