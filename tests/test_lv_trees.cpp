#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/trees.h>
#include "builders.h"

namespace {

using build::feature;
using Trees = std::vector<SQO_featureTree>;

constexpr SQO_treeGrowParam kParam = {2.0, 3.0, 3, 5.0, 0.5, 0.5};

/// Each tree as "state first-last line: y of its nodes; ".
std::string text(const Trees& trees) {
  std::ostringstream out;
  for (const SQO_featureTree& tree : trees) {
    out << tree.treeState << ' ' << tree.sLineIdx << '-' << tree.eLineIdx << ':';
    for (const SQO_basicFeature1D& node : tree.treeNodes) {
      out << ' ' << node.jumpPos.y;
    }
    out << "; ";
  }
  return out.str();
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
  Trees grow(const SQO_bagParam& bag, Trees trees = {}) {
    starts = ends = {{-1, 0, 0, 0.0, 0}};
    qo_LVFeatureGrowing(lines, trees, bag, kParam, starts, ends);
    return trees;
  }

  std::vector<SQO_lineFeature> lines;
  std::vector<SQO_2DValueI> starts, ends;
};

TEST_F(LVGrowing, TakesEndingsFromEachNewFirstNodeButFromOneLastNode) {
  edge(0.0, 10, 14);
  lines[12].features[0].featureType = FEATURE_JUMP_RISE;
  for (int step = 1; step <= 4; ++step) {
    ending(10 - step, 1.5 * step);
    ending(14 + step, 0.5 * step, FEATURE_SEG_END);
  }
  ending(9, 1.5);
  const Trees trees = grow({1.0, 1.0});
  ASSERT_EQ(text(trees), "2 10-14: 6 4.5 3 1.5 0 0 0 0 0 0.5 1; ")
      << "forward, the third ending is three lines from the reference node";
  EXPECT_EQ(lines[6].endings[0].featureType, FEATURE_SLOPE_RISE);
  ASSERT_EQ(starts.size(), 2U)
      << "only the first ending of a line is taken; free ends are appended";
  EXPECT_EQ(starts[1].x, 9);
  EXPECT_EQ(ends.size(), 3U);
  EXPECT_EQ(trees[0].xRange.min, 6.0);
}

TEST_F(LVGrowing, TakesTheLowestOfEquallyFrequentTypes) {
  edge(0.0, 0, 3, FEATURE_V);
  lines[1].features[0].featureType = lines[3].features[0].featureType = FEATURE_SLOPE_RISE;
  EXPECT_EQ(grow({1.0, 1.0})[0].treeType, FEATURE_SLOPE_RISE);
}

TEST_F(LVGrowing, LooksForEndingsFromTheFirstLineToTheLast) {
  edge(0.0, 1, 29);
  ending(0, 0.5);
  ending(29, 0.5, FEATURE_SEG_END);
  Trees before;
  for (const int line : {-2, -1, 0}) {
    before.push_back({TREE_CLOSED, FEATURE_PEAK, line, line, 0.0, {}, {}, {}, -1});
    before.back().treeNodes = {feature(line, -50.0 + 10.0 * line)};
    ending(std::max(0, line + 1), -50.0 + 10.0 * line);
  }
  std::string expected = "2 -2--2: -70 -70; 2 -1--1: -60 -60; 2 0-0: -50 -50; 2 1-29: 0.5";
  for (int line = 1; line <= 29; ++line) {
    expected += " 0";
  }
  EXPECT_EQ(text(grow({1.0, 1.0}, before)), expected + "; ");
  EXPECT_EQ(ends.size(), 2U) << "an ending on the last line of a tree is not after it";
}

TEST_F(LVGrowing, IgnoresTypesThatDoNotExist) {
  Trees trees(3);
  trees[0].treeType = trees[1].treeType = FEATURE_PEAK;
  for (const int type : {-1, 0, 0, 16, 16, 16, 2}) {
    trees[0].treeNodes.push_back(feature(0, 0.0, type));
  }
  trees[1].treeNodes = {feature(0, 0.0, FEATURE_JUMP_RISE)};
  trees[2].xRange = trees[2].yRange = {7.0, 7.0};
  trees = grow({1.0, 1.0}, trees);
  EXPECT_EQ(trees[0].treeType, FEATURE_PEAK) << "0 is no type";
  EXPECT_EQ(trees[1].treeType, FEATURE_JUMP_RISE);
  EXPECT_EQ(trees[2].xRange.max + trees[2].yRange.max, 0.0) << "no nodes";
}

/// Extent of a tree in x and y, and its type.
struct Extent {
  double x0, x1, y0, y1;
  int type = FEATURE_SLOPE_RISE;
};

/// The indices of the trees that remain in the list.
std::string kept(const SQO_bagParam& bag, const std::vector<Extent>& extents) {
  Trees trees;
  for (const auto& [x0, x1, y0, y1, type] : extents) {
    const int id = static_cast<int>(trees.size());
    trees.push_back({TREE_CLOSED, type, id, 0, 0.0, {}, {}, {}, -1});
    trees.back().treeNodes = {{type, {0, 0}, {100.0 + x0, 50.0 + y0, 10.0}, 0.0},
                              {type, {1, 0}, {100.0 + x1, 50.0 + y1, 10.0}, 0.0}};
  }
  std::vector<SQO_lineFeature> none;
  std::vector<SQO_2DValueI> starts, ends;
  qo_LVFeatureGrowing(none, trees, bag, kParam, starts, ends);
  std::string ids;
  for (const SQO_featureTree& tree : trees) {
    ids += std::to_string(tree.sLineIdx);
  }
  return ids;
}

TEST(LVTrees, AreRemovedIfTheyDoNotSuitTheObject) {
  EXPECT_EQ(kept({1, 16}, {{0, 4, 0, 3}}), "0") << "a quarter of the object long";
  EXPECT_EQ(kept({1, 17}, {{0, 4, 0, 3}, {0, 4, 3, 0, 4}, {0, 4, 0, 3, 5}, {0, 4, 0, 3, 15}}), "");
  EXPECT_EQ(kept({1, 17}, {{0, 4, 0, 2}, {0, 4, 0, 3, 1}}), "01")
      << "straight enough; a type that is kept";

  const Extent low = {0, 29, 0, 0}, inner = {5, 10, 10, 10}, high = {0, 29, 20, 20};
  EXPECT_EQ(kept({16, 10}, {low, inner, high}), "012") << "half an object long";
  EXPECT_EQ(kept({20 / 1.3, 11}, {low, inner, high}), "012") << "neighbours far enough apart";
  EXPECT_EQ(kept({16, 11}, {low, inner, {5, 10, 10, 10, 1}, high}), "023");
  EXPECT_EQ(kept({16, 11}, {inner, low, {0, 29, -20, 0}, high}), "123")
      << "of lower neighbours with equal bounds, the earliest counts";
  EXPECT_EQ(kept({14, 11}, {low, high, {0, 29, 11, 20}, inner}), "0123") << "and of upper ones too";
  EXPECT_EQ(kept({16, 11}, {inner, high}) + kept({16, 11}, {low, inner}), "0101");
  for (const Extent& same : {Extent{5, 29, 0, 0}, {0, 10, 0, 0}, {0, 29, 0, 10}}) {
    EXPECT_EQ(kept({99, 11}, {same, inner, high}), "012")
        << "not a neighbour: it starts, ends or touches there";
  }
  EXPECT_EQ(kept({99, 11}, {low, inner, {0, 29, 10, 20}}), "012")
      << "not a neighbour: it touches in y";
  EXPECT_EQ(
      kept({14, 11}, {low, {0, 29, 2, 2}, low, inner, {0, 29, 40, 40}, high, {0, 29, 60, 60}}),
      "012456")
      << "the nearest neighbours count";
  EXPECT_EQ(kept({21, 20}, {low, {0, 29, 3, 7}, {0, 29, 30, 30}, {8, 10, 4, 4}, {6, 12, 8, 8}}),
            "0123")
      << "a removed tree is no neighbour";
}

}  // namespace
