#pragma once

#include <cmath>

#include <scanline/feature_records.h>

/// The line, the position and the distance in x of the nodes of each kind of tree.
namespace scanline::detail {

/// The line of a node.
inline int lineOf(const SQO_basicFeature1D& node) {
  return node.jumpPos2D.x;
}
inline int lineOf(const SQO_basicFeatureGap& node) {
  return node.lineIdx;
}
inline int lineOf(const SQO_featureSemiCircle& node) {
  return node.lineIdx;
}
inline int lineOf(const SJU_segFeature& node) {
  return node.lineIdx;
}

/// The position of a node: the centre of a gap, the start of a segment.
inline const STesk3DPoint& positionOf(const SQO_basicFeature1D& node) {
  return node.jumpPos;
}
inline STesk3DPoint positionOf(const SQO_basicFeatureGap& node) {
  const STesk3DPoint& a = node.gapStart.pt3D;
  const STesk3DPoint& b = node.gapEnd.pt3D;
  return {(a.x + b.x) * 0.5, (a.y + b.y) * 0.5, (a.z + b.z) * 0.5};
}
inline const STesk3DPoint& positionOf(const SQO_featureSemiCircle& node) {
  return node.midPt;
}
inline const STesk3DPoint& positionOf(const SJU_segFeature& node) {
  return node.startPt;
}

/// Distance of two nodes in x. For segments, the mean of the distances of their starts and ends.
template <typename Node>
double distanceX(const Node& a, const Node& b) {
  return std::abs(positionOf(a).x - positionOf(b).x);
}
inline double distanceX(const SJU_segFeature& a, const SJU_segFeature& b) {
  return (std::abs(a.startPt.x - b.startPt.x) + std::abs(a.endPt.x - b.endPt.x)) * 0.5;
}

}  // namespace scanline::detail
