// Finds the right angles of a line: places where an arm flat in z meets a steep one.
#include <cassert>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_samples.h"
#include "features/right_angle_stages.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using Marks = std::vector<detail::RightAngleMark>;

/// The last sample of the row of samples from `start` on that are marked with the same kind.
int endOfKind(const Marks& marks, int start) {
  const int last = static_cast<int>(marks.size()) - 1;
  int end = start;
  while (end < last && marks[end + 1].kind == marks[start].kind) {
    ++end;
  }
  return end;
}

/// The place of the corner among samples of one kind: the last sharp one, else the middle.
int cornerAmong(const Marks& marks, int start, int end) {
  for (int i = end; i >= start; --i) {
    if (marks[i].isSharp) {
      return i;
    }
  }
  return (start + end) / 2;
}

}  // namespace

void qo_getLineRigthAngleFeature(STesk3DPosition* lineData,
                                 int dataSize,
                                 int lineIdx,
                                 SQO_lineRightAngleParam flatRisePara,
                                 SQO_lineRightAngleParam riseFlatPara,
                                 SQO_lineRightAngleParam flatFallPara,
                                 SQO_lineRightAngleParam fallFlatPara,
                                 SQO_lineFeature* line_features) {
  assert(dataSize < 1 || lineData != nullptr);
  assert(line_features != nullptr);
  const Marks marks = detail::markRightAngles(
      lineData, dataSize, {flatRisePara, riseFlatPara, flatFallPara, fallFlatPara});
  std::vector<SQO_basicFeature1D> corners;
  int start = 0;
  while (start < dataSize) {
    const int end = endOfKind(marks, start);
    if (const int kind = marks[start].kind; kind != 0) {
      const int corner = cornerAmong(marks, start, end);
      corners.push_back(detail::featureAt(lineData, corner, kind, lineIdx));
    }
    start = end + 1;
  }
  detail::append(corners, line_features->features);
}
