// Finds the corners near a reference height, and the ends of stretches that run out flat.
#include <algorithm>
#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_types.h"
#include "features/line_samples.h"
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

/// The marks that a line's samples receive: stretch ends, and corners at the index that the
/// caller's stamp gives.
std::vector<int> findMarks(const STesk3DPosition* lineData,
                           int dataSize,
                           const detail::Stretches& stretches,
                           const detail::Arms& arms,
                           const SQO_cornerParam& param) {
  const std::vector<int>& index = stretches.points.index;
  std::vector<int> marks(static_cast<std::size_t>(std::max(dataSize, 0)));
  for (const detail::PointRange& range : stretches.ranges) {
    marks[index[range.first]] |= detail::kStretchStartMark;
    marks[index[range.last]] |= detail::kStretchEndMark;
  }
  for (const int peak : detail::cornerPeaks(arms, stretches.points, param)) {
    marks[lineData[index[peak]].nPointIdx] |= detail::typeByFlatArm(arms, peak, param)
                                              << kTypeShift;
  }
  return marks;
}

/// Type of the feature that a marked sample turns into, 0 for none. A stretch that goes on flat at
/// its start is typed like a corner with a flat forward arm, at its end like one with a flat
/// backward arm; a stretch of one sample bears both marks and is neither. A hole bears marks only
/// if the caller left them there; its arms, like all that are missing, have an angle of 0.
int typeOfMarked(int word,
                 double z,
                 int point,
                 const detail::Arms& arms,
                 double refZ,
                 const SQO_cornerParam& param) {
  const int cornerType = (word >> kTypeShift) & kTypeMask;
  if (cornerType != 0) {
    return kMaxHeightDistance > std::abs(z - refZ) ? cornerType : 0;
  }
  const auto isFlat = [&](double angle) { return param.jumpCornerTh_1 > std::abs(angle); };
  const bool isHole = point == detail::kNoPoint;
  switch (word >> kStretchEndsShift) {
    case kStartMarkOnly:
      return isFlat(isHole ? 0.0 : arms.forwardAngle(point)) ? FEATURE_JUMP_FALL : 0;
    case kEndMarkOnly:
      return isFlat(isHole ? 0.0 : arms.backwardAngle(point)) ? FEATURE_JUMP_RISE : 0;
    default:
      return 0;
  }
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
  const detail::Arms arms(stretches.points, stretches.ranges,
                          detail::ArmSearch::oneSided(cornerPara.scale));
  const std::vector<int> marks = findMarks(lineData, dataSize, stretches, arms, cornerPara);

  std::vector<SQO_basicFeature1D> features;
  int next = 0;
  for (int i = 0; i < dataSize; ++i) {
    const bool isPoint = next < arms.count() && stretches.points.index[next] == i;
    const int point = isPoint ? next++ : detail::kNoPoint;
    const STesk3DPosition& sample = lineData[i];
    const int word = sample.nPointIdx | marks[i];
    const int type = typeOfMarked(word, sample.pt3D.z, point, arms, refZ, cornerPara);
    if (type != 0) {
      features.push_back(detail::featureAt(lineData, i, type, lineIdx));
    }
  }
  detail::append(features, line_features);
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx |= marks[i];
  }
}
