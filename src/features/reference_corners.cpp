// Finds the corners near a reference height, and the ends of stretches that continue flat.
#include <algorithm>
#include <cassert>
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

/// Distance in z from the reference height at which a corner is dropped.
constexpr double kMaxHeightDistance = 10.0;

// The word of a sample holds, from the lowest bit on, its index on the line, the type of a corner
// and the marks of stretch ends.
constexpr int kTypeShift = 16;
constexpr int kTypeMask = 15;
constexpr int kStretchEndsShift = 20;
constexpr int kStartMarkOnly = detail::kStretchStartMark >> kStretchEndsShift;
constexpr int kEndMarkOnly = detail::kStretchEndMark >> kStretchEndsShift;

/// The marks of all samples: stretch ends, and the types of corners at the indices stamped by the
/// caller.
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

/// The type of the feature at a marked sample, 0 for none. The start of a stretch is typed like a
/// corner with a flat forward arm, its end like one with a flat backward arm. The only sample of a
/// stretch has both marks and is neither. A hole has only the marks that the caller left there, and
/// its arms have an angle of 0, as any missing arm.
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
  assert(dataSize < 1 || lineData != nullptr);
  assert(dataSize <= 1 << kTypeShift && detail::isStamped(lineData, dataSize));
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
