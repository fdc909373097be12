#include "roads/trace.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace program {
namespace {

/// A z beyond all samples, to measure z from the other side.
double mirrorOf(const Scan& scan) {
  double farthest = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      farthest = std::max(farthest, sample.pt3D.z);
    }
  }
  return farthest + 1.0;
}

void mirror(Line& line, double mirrorZ) {
  for (STesk3DPosition& sample : line) {
    if (isMeasured(sample)) {
      sample.pt3D.z = mirrorZ - sample.pt3D.z;
    }
  }
}

/// Where z falls in the mirror, it rises. The corners of a profile are of no other types.
int mirrored(int featureType) {
  return featureType == FEATURE_JUMP_RISE   ? FEATURE_JUMP_FALL
         : featureType == FEATURE_JUMP_FALL ? FEATURE_JUMP_RISE
                                            : featureType;
}

void mirror(std::vector<SQO_basicFeature1D>& features, double mirrorZ) {
  for (SQO_basicFeature1D& feature : features) {
    feature.jumpPos.z = mirrorZ - feature.jumpPos.z;
    feature.featureType = mirrored(feature.featureType);
  }
}

STesk3DPoint minus(const STesk3DPoint& a, const STesk3DPoint& b) {
  return {a.x - b.x, a.y - b.y, a.z - b.z};
}

double dot(const STesk3DPoint& a, const STesk3DPoint& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

double rmsDistance(const std::vector<STesk3DPoint>& points,
                   const STesk3DPoint& centre,
                   const STesk3DPoint& direction) {
  double sum = 0.0;
  for (const STesk3DPoint& p : points) {
    const STesk3DPoint d = minus(p, centre);
    const double along = dot(d, direction);
    sum += std::max(dot(d, d) - along * along, 0.0);
  }
  return std::sqrt(sum / static_cast<double>(points.size()));
}

TracedTree fitted(SQO_featureTree tree) {
  std::vector<STesk3DPoint> points;
  points.reserve(tree.treeNodes.size());
  for (const SQO_basicFeature1D& node : tree.treeNodes) {
    points.push_back(node.jumpPos);
  }
  TracedTree traced{};
  traced.type = tree.treeType;
  const STesk3DPoint span = minus(points.back(), points.front());
  traced.length = std::sqrt(dot(span, span));
  STesk3DPoint centre{};
  if (points.size() > 1 && fitLine3DLeastSquares(points, centre, traced.direction)) {
    // A fitted line may point either way.
    if (dot(traced.direction, span) < 0.0) {
      traced.direction = minus({0.0, 0.0, 0.0}, traced.direction);
    }
    traced.rms = rmsDistance(points, centre, traced.direction);
  }
  traced.nodes = std::move(tree.treeNodes);
  return traced;
}

/// Grows trees of the features, and of the ends of the segments if asked for.
std::vector<TracedTree> grow(std::vector<SQO_lineFeature>& features, const TraceParams& params) {
  std::vector<SQO_featureTree> trees;
  qo_getFeatureGrowingTrees(features, trees, params.grow);
  if (params.silhouettes) {
    for (SQO_lineFeature& line : features) {
      line.features = std::move(line.endings);
      line.endings.clear();
    }
    qo_getFeatureGrowingTrees(features, trees, params.grow);
  }
  std::vector<TracedTree> traced;
  traced.reserve(trees.size());
  for (SQO_featureTree& tree : trees) {
    traced.push_back(fitted(std::move(tree)));
  }
  return traced;
}

Line cleaned(const Line& line, const TraceParams& params) {
  return smoothed(withoutOutliers(line, params.cleaning), params.cleaning);
}

/// Each line becomes one of its sample index; the lines are cleaned before.
Scan cleanedAndTransposed(const Scan& scan, const TraceParams& params) {
  std::size_t samples = 0;
  for (const Line& line : scan) {
    samples = std::max(samples, line.size());
  }
  Scan result(samples, Line(scan.size()));
  forEachLine(scan, [&](std::size_t l) {
    Line line = cleaned(scan[l], params);
    line.resize(samples);
    for (std::size_t i = 0; i < samples; ++i) {
      const STesk3DPoint& p = line[i].pt3D;
      result[i][l] = {static_cast<int>(l), {p.y, p.x, p.z}};
    }
  });
  return result;
}

/// Traces the corners of the lines that `lineAt(index)` returns.
template <typename LineAt>
std::vector<TracedTree> traceLines(const Scan& scan,
                                   const TraceParams& params,
                                   Progress& progress,
                                   LineAt lineAt) {
  const double mirrorZ = params.edges == Edges::upper ? mirrorOf(scan) : 0.0;
  std::vector<SQO_lineFeature> features(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    features[l] = cornersOf(lineAt(l), static_cast<int>(l), params, mirrorZ);
    progress.advance();
  });
  std::vector<TracedTree> trees = grow(features, params);
  std::stable_sort(trees.begin(), trees.end(),
                   [](const TracedTree& a, const TracedTree& b) { return a.length > b.length; });
  return trees;
}

}  // namespace

SQO_lineFeature cornersOf(const Line& line,
                          int lineIdx,
                          const TraceParams& params,
                          double mirrorZ) {
  Line copy = line;
  if (mirrorZ > 0.0) {
    mirror(copy, mirrorZ);
  }
  SQO_lineFeature found{};
  qo_getLineCornerFeature(copy.data(), static_cast<int>(copy.size()), lineIdx, params.corner,
                          &found);
  if (mirrorZ > 0.0) {
    mirror(found.features, mirrorZ);
    mirror(found.endings, mirrorZ);
  }
  return found;
}

std::vector<TracedTree> traceEdges(const Scan& scan,
                                   const TraceParams& params,
                                   Progress& progress) {
  return traceLines(scan, params, progress,
                    [&](std::size_t l) { return cleaned(scan[l], params); });
}

std::vector<TracedTree> traceAlongLines(const Scan& scan,
                                        const TraceParams& params,
                                        Progress& progress) {
  const Scan columns = cleanedAndTransposed(scan, params);
  std::vector<TracedTree> trees = traceLines(
      columns, params, progress, [&](std::size_t l) -> const Line& { return columns[l]; });
  for (TracedTree& tree : trees) {
    tree.isAlongLines = true;
    std::swap(tree.direction.x, tree.direction.y);
    for (SQO_basicFeature1D& node : tree.nodes) {
      std::swap(node.jumpPos.x, node.jumpPos.y);
      std::swap(node.jumpPos2D.x, node.jumpPos2D.y);
    }
  }
  return trees;
}

}  // namespace program
