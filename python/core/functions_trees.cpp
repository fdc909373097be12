#include "checks.h"
#include "define.h"
#include "functions.h"

namespace binding {

namespace {

using Trees = std::vector<SQO_featureTree>;
using Positions = std::vector<SQO_2DValueI>;

/// That positions lie on a scan, whose lines end with one of -1 samples.
void checkEndings(Positions& endingPts,
                  STesk3DLaserLine* laserLines,
                  bool isLineFirst,
                  int /*endingType*/,
                  Trees& /*trees*/,
                  SQO_treeGrowParam /*growParam*/) {
  int lineCount = 0;
  while (laserLines[lineCount].nPositionCnt >= 0) {
    ++lineCount;
  }
  for (const SQO_2DValueI& at : endingPts) {
    const int line = isLineFirst ? at.x : at.y;
    const int sample = isLineFirst ? at.y : at.x;
    require(line >= 0 && line < lineCount && sample >= 0 && sample < laserLines[line].nPositionCnt,
            "endingPts", "positions on the scan of " + std::to_string(lineCount) + " lines",
            "sample " + std::to_string(sample) + " of line " + std::to_string(line));
  }
}

void checkAnchors(Positions& endingPts,
                  STesk3DLaserLine* laserLines,
                  bool isLineFirst,
                  int endingType,
                  Trees& trees,
                  SQO_treeGrowParam growParam,
                  double /*angleCheckDist*/) {
  checkEndings(endingPts, laserLines, isLineFirst, endingType, trees, growParam);
  for (const SQO_featureTree& tree : trees) {
    const auto nodes = static_cast<std::int64_t>(tree.treeNodes.size());
    require(tree.anchorNode < nodes, "trees",
            "an anchorNode that is negative or one of the " + std::to_string(nodes) + " nodes",
            std::to_string(tree.anchorNode));
  }
}

void checkLines(std::vector<SQO_lineFeature>& lineFeatures,
                Trees& /*trees*/,
                SQO_bagParam /*bagParam*/,
                SQO_treeGrowParam /*growParam*/,
                Positions& /*segStarts*/,
                Positions& /*segEnds*/) {
  for (std::size_t i = 0; i < lineFeatures.size(); ++i) {
    const SQO_lineFeature& line = lineFeatures[i];
    const auto requireLine = [i](int lineIdx) {
      require(lineIdx == static_cast<int>(i), "lineFeatures",
              "the index of the line, " + std::to_string(i) + ", in lineIdx and jumpPos2D.x",
              std::to_string(lineIdx));
    };
    requireLine(line.lineIdx);
    for (const auto* list : {&line.features, &line.endings}) {
      for (const SQO_basicFeature1D& feature : *list) {
        requireLine(feature.jumpPos2D.x);
      }
    }
  }
}

void checkSegments(std::vector<std::vector<SJU_segFeature>>& lineFeatures,
                   std::vector<SJU_segFeatureTree>& /*trees*/,
                   SQO_treeGrowParam /*growParam*/) {
  for (std::size_t i = 0; i < lineFeatures.size(); ++i) {
    for (const SJU_segFeature& segment : lineFeatures[i]) {
      require(segment.lineIdx == static_cast<int>(i), "lineFeatures",
              "the index of the line, " + std::to_string(i) + ", in lineIdx",
              std::to_string(segment.lineIdx));
    }
  }
}

}  // namespace

void defineTrees(py::module_& m) {
  SCANLINE_DEFINE(m, qo_getFeatureGrowingTrees, In, Grown, In);
  SCANLINE_DEFINE(m, qo_lineFeaturesGrowing, In, In, In, InOut, In);
  SCANLINE_DEFINE(m, qo_cornerFeaturesGrowing, In, Grown, In);
  SCANLINE_DEFINE(m, qo_peakFeatureGrowing, In, Grown, In);
  SCANLINE_DEFINE(m, ju_getFeatureGrowingTrees_noTypeMatch, In, Grown, Grown, In);
  SCANLINE_DEFINE_CHECKED(m, qo_getEndingGrowingTrees, checkEndings, In, In, In, In, Grown, In);
  SCANLINE_DEFINE_CHECKED(m, qo_getEndingGrowingTrees_angleCheck, checkAnchors, In, In, In, In,
                          Grown, In, In);
  SCANLINE_DEFINE(m, qo_lineGapsGrowing, In, In, In, InOut, In);
  SCANLINE_DEFINE(m, qo_getFeatureGrowingTrees_semiCircle, InOut, In, In, InOut, Grown, Grown, In);
  SCANLINE_DEFINE_CHECKED(m, ju_getSegFeatureGrowingTrees, checkSegments, In, Grown, In);
  SCANLINE_DEFINE_CHECKED(m, qo_LVFeatureGrowing, checkLines, InOut, Grown, In, In, Out, Out);
}

}  // namespace binding
