#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/trees.h>
#include "builders.h"

// The growers of endings, gaps, semi-circles, segments and LV features: where they differ from the
// growers of single features.

namespace {

using build::feature;
using build::sample;
using Trees = std::vector<SQO_featureTree>;

constexpr SQO_treeGrowParam kParam = {2.0, 3.0, 3, 5.0, 0.5, 0.5};

/// Each tree as "state first-last line: y of its nodes; ".
template <typename Tree, typename Node = SQO_basicFeature1D>
std::string told(const std::vector<Tree>& trees,
                 STesk3DPoint Node::*point = &SQO_basicFeature1D::jumpPos) {
  std::ostringstream out;
  for (const Tree& tree : trees) {
    out << tree.treeState << ' ' << tree.sLineIdx << '-' << tree.eLineIdx << ':';
    for (const Node& node : tree.treeNodes) {
      out << ' ' << (node.*point).y;
    }
    out << "; ";
  }
  return out.str();
}

TEST(TypeFreeGrowing, LinksAllTypesButKeepsFeaturesAndEndingsApart) {
  std::vector<SQO_lineFeature> lines = {
      {0, {feature(0, 0.0, FEATURE_V)}, {feature(0, 9.0, FEATURE_SEG_END)}},
      {1, {feature(1, 0.5, FEATURE_PEAK)}, {feature(1, 0.25, 8), feature(1, 9.0, 0)}}};
  Trees trees;
  Trees endingTrees;
  SQO_treeGrowParam param = kParam;
  ju_getFeatureGrowingTrees_noTypeMatch(lines, trees, endingTrees, param);
  ASSERT_EQ(told(trees), "2 0-1: 0 0.5; ");
  EXPECT_EQ(trees[0].treeType, FEATURE_V);
  EXPECT_EQ(told(endingTrees), "2 0-1: 9 9; ") << "a single node is too short";

  param.minVTypeTreeLen = 4.0;
  trees.clear();
  ju_getFeatureGrowingTrees_noTypeMatch(lines, trees, endingTrees, param);
  EXPECT_TRUE(trees.empty()) << "still held to the length of a V tree";
}

TEST(EndingGrowing, ExchangeTheAxesOfAScanWalkedAcrossItsLines) {
  build::Scan scan = build::surfaceScan(4, 4, [](double x, double y) { return 10.0 * x + y; });
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  std::vector<SQO_2DValueI> endings;
  for (int sample = 0; sample < 3; ++sample) {
    endings.push_back({sample, 0, 0, 0.0, 0});
    endings.push_back({sample, 3, 0, 0.0, 0});
  }
  Trees trees;
  qo_getEndingGrowingTrees(endings, lines.data(), false, FEATURE_SEG_START, trees, kParam);
  ASSERT_EQ(told(trees), "2 0-2: 0 0 0; 2 0-2: 3 3 3; ") << "y is the x of the scan";
  EXPECT_EQ(trees[1].treeNodes[2].jumpPos.x, 2.0);
  EXPECT_EQ(trees[1].treeNodes[2].jumpPos2D.y, 3);
  EXPECT_EQ(trees[1].treeValue, 0.0);

  trees.clear();
  SQO_treeGrowParam keepAll = kParam;
  keepAll.minLTypeTreeLen = -1.0;
  qo_getEndingGrowingTrees(endings, lines.data(), false, 8, trees, keepAll);
  EXPECT_EQ(trees.size(), endings.size()) << "a type that matches nothing";
}

TEST(EndingGrowing, ClosesTreesAfterEachEnding) {
  build::Scan scan(4, build::lineOfZ({10, 10}, 0.0, 30.0));
  std::vector<SQO_2DValueI> endings = {{0, 0, 0, 0, 0}, {3, 1, 0, 0, 0}, {3, 0, 0, 0, 0}};
  Trees trees;
  qo_getEndingGrowingTrees(endings, build::pointerForm(scan).data(), true, FEATURE_SEG_END, trees,
                           {2.0, 3.0, 2, 5.0, -1.0, -1.0});
  EXPECT_EQ(trees.size(), 3U) << "the first one is too far behind the second";
}

TEST(EndingGrowing, TurnOffTheAxisByNoMoreThan45Degrees) {
  // The trees that endings with the given y, one per line, grow to, and the first one's anchor.
  const auto grown = [](const std::vector<double>& ys, double checkDist) {
    build::Scan scan;
    std::vector<SQO_2DValueI> endings;
    for (const double y : ys) {
      const auto line = static_cast<int>(scan.size());
      scan.push_back({sample(line, y, 10.0)});
      endings.push_back({line, 0, 0, 0.0, 0});
    }
    Trees trees;
    qo_getEndingGrowingTrees_angleCheck(endings, build::pointerForm(scan).data(), true,
                                        FEATURE_SEG_END, trees, {6.0, 3.0, 3, 5.0, -1.0, 0.5},
                                        checkDist);
    return told(trees) + std::to_string(trees.at(0).anchorNode);
  };
  EXPECT_EQ(grown({0, 4}, 5.0), "2 0-1: 0 4; -1") << "nearer than the distance: no test";
  EXPECT_EQ(grown({0, 4}, std::sqrt(17.0)), "2 0-0: 0; 2 1-1: 4; 0") << "at the distance";
  EXPECT_EQ(grown({0, 1}, 1.0), "2 0-1: 0 1; 0") << "45 degrees";
  EXPECT_EQ(grown({0, 0, 0, 0, 0, 0}, 2.5), "2 0-5: 0 0 0 0 0 0; 2");
  EXPECT_EQ(grown({0, 0, 0, 0, 0, 0, 4}, 4.2), "2 0-5: 0 0 0 0 0 0; 2 6-6: 4; 4")
      << "the anchor moves though the feature fails";
}

SQO_basicFeatureGap gap(int line, double y, double width = 2.0) {
  return {line, {}, sample(line, y - width / 2, 10.0), sample(line, y + width / 2, 12.0), {}};
}

TEST(GapGrowing, LinksCentresLineByLine) {
  std::vector<SQO_gapFeatureTree> trees;
  std::vector<SQO_basicFeatureGap> gaps;
  for (int line = 0; line < 3; ++line) {
    gaps = {gap(line, 0.0, 1.0 + 4.0 * line), gap(line, 1.0)};
    qo_lineGapsGrowing(line, false, gaps, trees, kParam);
  }
  ASSERT_EQ(trees.size(), 2U) << "one gap per line and tree, whatever its width";
  EXPECT_EQ(trees[0].treeNodes.size(), 3U);
  EXPECT_EQ(trees[0].treeType, 1);
  EXPECT_EQ(trees[0].treeState, TREE_GROWING);
  EXPECT_EQ(trees[1].eLineIdx, 2);

  gaps = {gap(5, 50.0)};
  qo_lineGapsGrowing(5, false, gaps, trees, kParam);
  EXPECT_EQ(trees[0].treeState, TREE_GROWING) << "three lines behind are allowed";
  SQO_treeGrowParam param = kParam;
  param.minLTypeTreeLen = 2.0;
  gaps.clear();
  qo_lineGapsGrowing(6, false, gaps, trees, param);
  ASSERT_EQ(trees.size(), 1U) << "exactly as long as the minimum is too short";
  EXPECT_EQ(trees[0].sLineIdx, 5);
}

SQO_featureSemiCircle semiCircle(int line, double y, int state = 0) {
  return {state, line, 0, 0, 0, {1.0 * line, y, 10.0}, 1.0, 1.0};
}

struct SemiCircleScan {
  std::vector<SQO_semiCircleFeatureTree> trees, longTrees, shortTrees;

  /// Grows by one line and gives the states that its features end with.
  std::vector<int> grow(int line, int lineCount, std::vector<SQO_featureSemiCircle> features) {
    qo_getFeatureGrowingTrees_semiCircle(features, line, lineCount, trees, longTrees, shortTrees,
                                         kParam);
    std::vector<int> states;
    for (const SQO_featureSemiCircle& f : features) {
      states.push_back(f.segState);
    }
    return states;
  }
};

TEST(SemiCircleGrowing, TakesTheNearestOfRivals) {
  SemiCircleScan scan;
  scan.grow(0, 9, {semiCircle(0, 0.0)});
  const std::vector<int> states =
      scan.grow(1, 9,
                {semiCircle(1, -1.5), semiCircle(1, 1.0), semiCircle(1, -1.0, 3),
                 semiCircle(1, 2.0), semiCircle(1, 0.0)});
  EXPECT_EQ(states, (std::vector<int>{5, 5, 5, 0, 0})) << "rivals end at the first that is too far";
  EXPECT_EQ(told(scan.trees, &SQO_featureSemiCircle::midPt), "1 0-1: 0 1; 1 1-1: 2; 1 1-1: 0; ")
      << "the earliest of equals";
  EXPECT_EQ(scan.trees[0].treeNodes[1].segState, 0);
}

TEST(SemiCircleGrowing, ObeysStatesAndSortsClosedTreesByLength) {
  SemiCircleScan scan;
  scan.trees.push_back({TREE_CLOSED, 7, 0, 0, {}, 0.0, 0.0, 0, {semiCircle(0, 0.0)}});
  scan.grow(0, 3, {semiCircle(0, 0.0, 2), semiCircle(0, 20.0), semiCircle(0, 40.0)});
  scan.grow(1, 3, {semiCircle(1, 0.0), semiCircle(1, 20.0, 1), semiCircle(1, 40.0, 4)});
  EXPECT_EQ(scan.trees.size(), 6U) << "the end of a tree and the start of another are forced";
  scan.grow(2, 3, {semiCircle(2, 40.0, 5)});
  ASSERT_EQ(scan.trees.size(), 1U);
  EXPECT_EQ(scan.trees[0].treeType, 7) << "trees that were closed before stay";
  EXPECT_EQ(told(scan.longTrees, &SQO_featureSemiCircle::midPt), "2 0-1: 40 40; ");
  ASSERT_EQ(told(scan.shortTrees, &SQO_featureSemiCircle::midPt),
            "2 1-1: 20; 2 1-1: 0; 2 0-0: 20; 2 0-0: 0; ")
      << "from the last to the first";
  EXPECT_EQ(scan.shortTrees[3].treeNodes[0].segState, 2);
}

SJU_segFeature segment(int line, double x, double y0, double y1) {
  return {line, 0, 0, 0, {x, y0, 10.0}, {x + 1.0, y1, 12.0}, 0.0};
}

TEST(SegmentGrowing, HoldsBothEndsToTheLimitsAndMeasuresInX) {
  std::vector<std::vector<SJU_segFeature>> lines = {
      {segment(0, 0.0, 0.0, 9.0), segment(0, 0.0, 50.0, 60.0)},
      {segment(1, 1.0, 1.0, 8.0)},
      {segment(2, 2.0, 0.0, 6.0), segment(2, 0.0, 1.0, 8.0)},
      {segment(3, 2.0, 50.0, 60.0)}};
  std::vector<SJU_segFeatureTree> trees;
  ju_getSegFeatureGrowingTrees(lines, trees, kParam);
  EXPECT_EQ(told(trees, &SJU_segFeature::startPt), "1 0-3: 50 50; ")
      << "a tree that comes back to its x has no length";

  trees.clear();
  lines[2][1].startPt.x = 0.25;
  lines[2][1].endPt.x = 0.0;
  SQO_treeGrowParam param = kParam;
  param.maxLineSkipNum = 0;
  ju_getSegFeatureGrowingTrees(lines, trees, param);
  ASSERT_EQ(told(trees, &SJU_segFeature::startPt), "2 0-2: 0 1 1; 1 0-3: 50 50; ")
      << "the second took a node of the last line";
  EXPECT_EQ(trees[0].treeValue, 33.0);

  trees[1].eLineIdx = trees[1].sLineIdx;
  lines.clear();
  ju_getSegFeatureGrowingTrees(lines, trees, param);
  EXPECT_EQ(trees.size(), 1U);
}

struct LVGrowing : testing::Test {
  /// A feature at y, and at `slope` more from line to line, on each line from `first` to `last`.
  void edge(double y, int first, int last, int type = FEATURE_SLOPE_RISE, double slope = 0.0) {
    lines.resize(30);
    for (int l = 0; l < 30; ++l) {
      lines[l].lineIdx = l;
      if (l >= first && l <= last) {
        lines[l].features.push_back(feature(l, y + slope * (l - first), type));
      }
    }
  }
  void ending(int line, double y, int type = FEATURE_SEG_START) {
    lines[line].endings.push_back(feature(line, y, type));
  }
  Trees grow(const SQO_bagParam& bag) {
    Trees trees;
    starts = ends = {{-1, 0, 0, 0.0, 0}};
    qo_LVFeatureGrowing(lines, trees, bag, kParam, starts, ends);
    return trees;
  }

  std::vector<SQO_lineFeature> lines;
  std::vector<SQO_2DValueI> starts, ends;
};

TEST_F(LVGrowing, CreepsBackwardButReachesForwardFromOnePlace) {
  edge(0.0, 10, 14);
  lines[12].features[0].featureType = FEATURE_JUMP_RISE;
  for (int step = 1; step <= 4; ++step) {
    ending(10 - step, 1.5 * step);
    ending(14 + step, 0.5 * step, FEATURE_SEG_END);
  }
  ending(9, 1.5);
  const Trees trees = grow({1.0, 1.0});
  ASSERT_EQ(told(trees), "2 10-14: 6 4.5 3 1.5 0 0 0 0 0 0.5 1; ")
      << "forward, the third ending is three lines away from the reference";
  EXPECT_EQ(lines[6].endings[0].featureType, FEATURE_SLOPE_RISE);
  ASSERT_EQ(starts.size(), 2U) << "only the first ending of a line is taken, outputs are appended";
  EXPECT_EQ(starts[1].x, 9);
  EXPECT_EQ(ends.size(), 3U);
  EXPECT_EQ(trees[0].xRange.min, 6.0);
}

TEST_F(LVGrowing, TakesTheLowestOfEquallyFrequentTypes) {
  edge(0.0, 0, 3, FEATURE_V);
  lines[1].features[0].featureType = lines[3].features[0].featureType = FEATURE_SLOPE_RISE;
  EXPECT_EQ(grow({1.0, 1.0})[0].treeType, FEATURE_SLOPE_RISE);
}

TEST_F(LVGrowing, RemovesShortTreesInsideAnObject) {
  edge(0.0, 0, 29);
  edge(10.0, 5, 10);
  edge(14.0, 5, 10, FEATURE_JUMP_RISE);
  edge(20.0, 0, 29);
  edge(30.0, 5, 10);
  EXPECT_EQ(grow({100.0, 10.0}).size(), 5U) << "half an object long";
  EXPECT_EQ(grow({20.0 / 1.3, 11.0}).size(), 5U) << "neighbours far enough apart";
  const Trees trees = grow({16.0, 11.0});
  ASSERT_EQ(trees.size(), 4U) << "without an upper neighbour, or as a jump, it stays";
  EXPECT_EQ(trees[1].treeNodes[0].jumpPos.y, 20.0);
}

TEST_F(LVGrowing, RemovesStubsThatWander) {
  edge(0.0, 4, 8, FEATURE_SLOPE_RISE, 0.75);
  EXPECT_EQ(grow({1.0, 16.0}).size(), 1U) << "a quarter of the object long";
  EXPECT_EQ(grow({1.0, 17.0}).size(), 0U);
}

}  // namespace
