#include "pipeline.h"

#include <algorithm>
#include <utility>

#include "each_line.h"
#include "plane_calibration.h"

namespace examples {
namespace {

/// Step 1: finds the reference plane and the rotation that levels it.
SQO_planeCalibPara calibrate(Scan& scan) {
  std::vector<STesk3DLaserLine> lines = pointerForm(scan);
  return qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
}

/// Step 2: turns a line into the levelled frame and cuts what lies too high.
void level(Line& line, const SQO_planeCalibPara& calibration, double cutHeight) {
  STesk3DLaserLine view = {line.data(), static_cast<int>(line.size()), 0};
  lineDataRT(&view, calibration.levelMatrix, cutHeight);
}

/// Step 3: blanks short stretches, then takes the noise off what is left.
void clean(Line& line, const TraceParams& params) {
  qo_lineDataRemoveOutlier_changeOriginData(line.data(), static_cast<int>(line.size()),
                                            params.outlier);
  Line smooth;
  qo_lineDataSmoothing(line, params.smoothWindow, smooth);
  line = std::move(smooth);
}

/// Step 4: finds where the profile bends.
SQO_lineFeature findCorners(Line& line, int lineIdx, const SQO_cornerParam& corner) {
  SQO_lineFeature features{};
  qo_getLineCornerFeature(line.data(), static_cast<int>(line.size()), lineIdx, corner, &features);
  return features;
}

/// Step 5: links the corners of neighbouring lines.
std::vector<SQO_featureTree> growTrees(std::vector<SQO_lineFeature>& features,
                                       const SQO_treeGrowParam& grow) {
  std::vector<SQO_featureTree> trees;
  qo_getFeatureGrowingTrees(features, trees, grow);
  return trees;
}

/// Step 6: fits a line in space to every tree.
std::vector<TracedEdge> fitEdges(std::vector<SQO_featureTree> trees) {
  std::vector<TracedEdge> edges;
  edges.reserve(trees.size());
  for (SQO_featureTree& tree : trees) {
    edges.push_back(fitEdge(std::move(tree)));
  }
  std::stable_sort(edges.begin(), edges.end(),
                   [](const TracedEdge& a, const TracedEdge& b) { return a.length > b.length; });
  return edges;
}

long long countMeasured(const Line& line) {
  return std::count_if(line.begin(), line.end(), isMeasured);
}

SampleCounts sumOf(const std::vector<SampleCounts>& lines) {
  SampleCounts sum{};
  for (const SampleCounts& line : lines) {
    sum.all += line.all;
    sum.measured += line.measured;
    sum.afterCut += line.afterCut;
    sum.afterOutliers += line.afterOutliers;
  }
  return sum;
}

}  // namespace

TraceResult traceFeatures(Scan scan, const TraceParams& params, Progress& progress) {
  TraceResult result{};
  result.calibration = params.level ? calibrate(scan) : noCalibration();
  result.isLevelled = isLevelling(result.calibration);
  if (result.isLevelled) {
    result.before = viewPlane(scan, result.calibration);
    const double plane = levelledHeight(scan, result.calibration);
    result.cutHeight = params.cutAbove > 0.0 ? plane + params.cutAbove : 0.0;
  }

  result.features.resize(scan.size());
  std::vector<SampleCounts> counts(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    Line& line = scan[l];
    counts[l].all = static_cast<long long>(line.size());
    counts[l].measured = countMeasured(line);
    level(line, result.calibration, result.cutHeight);
    counts[l].afterCut = countMeasured(line);
    clean(line, params);
    counts[l].afterOutliers = countMeasured(line);
    result.features[l] = findCorners(line, static_cast<int>(l), params.corner);
    progress.advance();
  });

  // A tree takes its nodes line by line, so growing is one thread's work.
  result.edges = fitEdges(growTrees(result.features, params.grow));
  if (result.isLevelled) {
    result.after = viewPlane(scan, noCalibration());
  }
  result.samples = sumOf(counts);
  result.scan = std::move(scan);
  return result;
}

Line levelledLine(Line line, const TraceResult& result) {
  level(line, result.calibration, result.cutHeight);
  return line;
}

}  // namespace examples
