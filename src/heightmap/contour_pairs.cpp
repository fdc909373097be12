// Selects pairs of contour points by their edges and by a window.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include <scanline/heightmap.h>

namespace {

bool isInside(const STesk3DPoint& point, const STeskRangeD& window, bool useX) {
  const double value = useX ? point.x : point.y;
  return value > window.min && value < window.max;
}

bool joinsEdges(const SQO_conotourPair& pair, const std::vector<SQO_intPair>& edgePairs) {
  return std::any_of(edgePairs.begin(), edgePairs.end(), [&](const SQO_intPair& edges) {
    return pair.edgeId_1 == edges.first && pair.edgeId_2 == edges.second;
  });
}

}  // namespace

void qo_getPairingContourPts(std::vector<SQO_conotourPair>& pairs,
                             std::vector<SQO_intPair>& edgePairs,
                             std::vector<SQO_conotourPair>& matched,
                             STeskRangeD window,
                             bool useX,
                             int* sideVerdict_1,
                             int* sideVerdict_2) {
  assert(&matched != &pairs);
  std::vector<SQO_conotourPair> kept;
  std::size_t facing1 = 0;
  std::size_t facing2 = 0;
  for (const SQO_conotourPair& pair : pairs) {
    if (isInside(pair.contourPt_1.edgePt, window, useX) &&
        isInside(pair.contourPt_2.edgePt, window, useX) && joinsEdges(pair, edgePairs)) {
      kept.push_back(pair);
      facing1 += pair.contourPt_1.sideFlag >= 1 ? 1 : 0;
      facing2 += pair.contourPt_2.sideFlag >= 1 ? 1 : 0;
    }
  }
  matched.insert(matched.end(), kept.begin(), kept.end());
  const std::size_t half = matched.size() / 2;
  *sideVerdict_1 = 0;  // both may be the same variable, which is then 1 if either side faces
  *sideVerdict_2 = 0;
  if (facing1 > half) {
    *sideVerdict_1 = 1;
  }
  if (facing2 > half) {
    *sideVerdict_2 = 1;
  }
}
