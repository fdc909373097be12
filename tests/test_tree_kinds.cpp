#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include <scanline/trees.h>
#include "builders.h"

// The growers of semi-circles, segments and LV features: where they differ from the growers of
// single features.

namespace {

using build::feature;
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

SQO_featureSemiCircle semiCircle(int line, double y, int state = 0) {
  return {state, line, 0, 0, 0, {1.0 * line, y, 10.0}, 1.0, 1.0};
}

struct SemiCircleScan {
  std::vector<SQO_semiCircleFeatureTree> trees, longTrees, shortTrees;

  /// Grows by one line and gives the states that its features end with.
  std::string grow(int line, int lineCount, std::vector<SQO_featureSemiCircle> features) {
    qo_getFeatureGrowingTrees_semiCircle(features, line, lineCount, trees, longTrees, shortTrees,
                                         kParam);
    std::string states;
    for (const SQO_featureSemiCircle& f : features) {
      states += std::to_string(f.segState);
    }
    return states;
  }
};

TEST(SemiCircleGrowing, TakesTheNearestOfRivals) {
  SemiCircleScan scan;
  scan.grow(0, 9, {semiCircle(0, 0.0)});
  const std::vector<SQO_featureSemiCircle> line = {semiCircle(1, -1.5), semiCircle(1, 1.0),
                                                   semiCircle(1, -1.0, 3), semiCircle(1, 2.0),
                                                   semiCircle(1, 0.0)};
  EXPECT_EQ(scan.grow(1, 9, line), "55500") << "rivals end at the first that is too far";
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
  EXPECT_TRUE(scan.trees.size() == 1 && scan.trees[0].treeType == 7)
      << "trees that were closed before stay";
  EXPECT_EQ(told(scan.longTrees, &SQO_featureSemiCircle::midPt), "2 0-1: 40 40; ");
  ASSERT_EQ(told(scan.shortTrees, &SQO_featureSemiCircle::midPt),
            "2 1-1: 20; 2 1-1: 0; 2 0-0: 20; 2 0-0: 0; ")
      << "from the last to the first";
}

TEST(SegmentGrowing, HoldsBothEndsToTheLimitsAndMeasuresBothInX) {
  const auto isLinked = [](const STesk3DPoint& a, const STesk3DPoint& b) {
    SJU_segFeature first = {2, 0, 0, 0, {10.0, 40.0, 70.0}, {13.0, 45.0, 74.0}, 0.0};
    SJU_segFeature next = {5, 0, 0, 0, {10.0 + a.x, 40.0 + a.y, 70.0 + a.z}, {}, 0.0};
    next.endPt = {13.0 + b.x, 45.0 + b.y, 74.0 + b.z};
    std::vector<std::vector<SJU_segFeature>> lines = {{}, {}, {first}, {}, {}, {next}, {}};
    std::vector<SJU_segFeatureTree> trees;
    ju_getSegFeatureGrowingTrees(lines, trees, {2.0, 3.0, 3, 5.0, 0.0, 0.0});
    return !trees.empty();
  };
  EXPECT_TRUE(isLinked({7.0, 1.75, -2.75}, {2.75, -1.75, 2.75})) << "a mean step in x below 5";
  EXPECT_FALSE(isLinked({7.0, 0.0, 0.0}, {-3.0, 0.0, 0.0})) << "a mean step of 5";
  for (const STesk3DPoint& step : {STesk3DPoint{1.0, 2.0, 0.0}, {1.0, 0.0, -3.0}}) {
    EXPECT_FALSE(isLinked(step, {1.0, 0.0, 0.0}));
    EXPECT_FALSE(isLinked({1.0, 0.0, 0.0}, step));
  }
}

struct LVGrowing : testing::Test {
  /// A feature at y on each line from `first` to `last`.
  void edge(double y, int first, int last, int type = FEATURE_SLOPE_RISE) {
    lines.resize(30);
    for (int l = 0; l < 30; ++l) {
      lines[l].lineIdx = l;
      if (l >= first && l <= last) {
        lines[l].features.push_back(feature(l, y, type));
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

/// Extent of a tree in x and y, and its type.
struct Extent {
  double x0, x1, y0, y1;
  int type = FEATURE_SLOPE_RISE;
};

/// The indices of the trees that stay in the list.
std::string kept(const SQO_bagParam& bag, const std::vector<Extent>& extents) {
  Trees trees;
  for (const auto& [x0, x1, y0, y1, type] : extents) {
    const int id = static_cast<int>(trees.size());
    trees.push_back({TREE_CLOSED, type, id, 0, 0.0, {}, {}, {}, -1});
    trees.back().treeNodes = {{type, {0, 0}, {100.0 + x0, 50.0 + y0, 10.0}, 0.0},
                              {type, {1, 0}, {100.0 + x1, 50.0 + y1, 10.0}, 0.0}};
  }
  std::vector<SQO_lineFeature> none;
  std::vector<SQO_2DValueI> ends;
  qo_LVFeatureGrowing(none, trees, bag, kParam, ends, ends);
  std::string ids;
  for (const SQO_featureTree& tree : trees) {
    ids += std::to_string(tree.sLineIdx);
  }
  return ids;
}

TEST(LVTrees, AreRemovedWhenTooShort) {
  EXPECT_EQ(kept({1, 16}, {{0, 4, 0, 3}}), "0") << "a quarter of the object long";
  EXPECT_EQ(kept({1, 17}, {{0, 4, 0, 3}, {0, 4, 3, 0, 4}, {0, 4, 0, 3, 5}, {0, 4, 0, 3, 15}}), "");
  EXPECT_EQ(kept({1, 17}, {{0, 4, 0, 2}, {0, 4, 0, 3, 1}}), "01") << "straight enough, a jump";

  const Extent low = {0, 29, 0, 0}, inner = {5, 10, 10, 10}, high = {0, 29, 20, 20};
  EXPECT_EQ(kept({16, 10}, {low, inner, high}), "012") << "half an object long";
  EXPECT_EQ(kept({20 / 1.3, 11}, {low, inner, high}), "012") << "neighbours far enough apart";
  EXPECT_EQ(kept({16, 11}, {low, inner, {5, 10, 10, 10, 1}, high}), "023");
  EXPECT_EQ(kept({16, 11}, {inner, high}) + kept({16, 11}, {low, inner}), "0101");
  for (const Extent& same : {Extent{5, 29, 0, 0}, {0, 10, 0, 0}, {0, 29, 0, 10}}) {
    EXPECT_EQ(kept({99, 11}, {same, inner, high}), "012") << "starts, ends or touches there";
  }
  EXPECT_EQ(kept({99, 11}, {low, inner, {0, 29, 10, 20}}), "012") << "touches";
  EXPECT_EQ(
      kept({14, 11}, {low, {0, 29, 2, 2}, low, inner, {0, 29, 40, 40}, high, {0, 29, 60, 60}}),
      "012456")
      << "the nearest neighbours count";
  EXPECT_EQ(kept({21, 20}, {low, {0, 29, 3, 7}, {0, 29, 30, 30}, {8, 10, 4, 4}, {6, 12, 8, 8}}),
            "0123")
      << "a removed tree is no neighbour";
}

}  // namespace
