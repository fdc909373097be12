#include "edge_fit.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include <scanline/geometry.h>
#include "vectors.h"

namespace examples {
namespace {

double rmsDistance(const std::vector<STesk3DPoint>& points, const TracedEdge& edge) {
  double sum = 0.0;
  for (const STesk3DPoint& p : points) {
    const STesk3DPoint d = minus(p, edge.centre);
    const double along = dot(d, edge.direction);
    sum += std::max(dot(d, d) - along * along, 0.0);
  }
  return std::sqrt(sum / static_cast<double>(points.size()));
}

}  // namespace

TracedEdge fitEdge(SQO_featureTree tree) {
  std::vector<STesk3DPoint> points;
  points.reserve(tree.treeNodes.size());
  for (const SQO_basicFeature1D& node : tree.treeNodes) {
    points.push_back(node.jumpPos);
  }
  TracedEdge edge{};
  edge.length = compute2DLen(points.front(), points.back());
  edge.tree = std::move(tree);
  // Only a single point has no line, and a tree of one node is never long enough to be kept.
  if (fitLine3DLeastSquares(points, edge.centre, edge.direction)) {
    // A fitted line has no front end, so its direction may come out either way round.
    if (edge.direction.x < 0.0) {
      edge.direction = minus({0.0, 0.0, 0.0}, edge.direction);
    }
    edge.rmsError = rmsDistance(points, edge);
  }
  return edge;
}

}  // namespace examples
