// Finds the right angles of a line, where a flat arm meets a steep one.
#include <vector>

#include <scanline/line_features.h>
#include "features/right_angle_stages.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

using Marks = std::vector<detail::RightAngleMark>;

/// The last sample that is marked like the one at `start` without a break.
int endOfKind(const Marks& marks, int start) {
  const int last = static_cast<int>(marks.size()) - 1;
  int end = start;
  while (end < last && marks[end + 1].kind == marks[start].kind) {
    ++end;
  }
  return end;
}

/// Where among samples of one kind the corner stands: on the last sharp one, else in the middle.
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
  const Marks marks = detail::markRightAngles(
      lineData, dataSize, {flatRisePara, riseFlatPara, flatFallPara, fallFlatPara});
  std::vector<SQO_basicFeature1D> corners;
  int start = 0;
  while (start < dataSize) {
    const int end = endOfKind(marks, start);
    if (const int kind = marks[start].kind; kind != 0) {
      const int corner = cornerAmong(marks, start, end);
      corners.push_back({kind, {lineIdx, corner}, lineData[corner].pt3D, 0.0});
    }
    start = end + 1;
  }
  detail::append(corners, line_features->features);
}
