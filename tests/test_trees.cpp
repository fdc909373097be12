#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/trees.h>
#include "builders.h"

namespace {

using build::feature;
using Features = std::vector<SQO_basicFeature1D>;
using Trees = std::vector<SQO_featureTree>;

constexpr SQO_treeGrowParam kParam = {2.0, 3.0, 3, 5.0, 0.5, 0.5};

SQO_featureTree treeOf(const Features& nodes, int state = TREE_GROWING) {
  const auto& [type, first, pos, value] = nodes.front();
  return {state, type, first.x, nodes.back().jumpPos2D.x, 0.0, {}, {}, nodes, -1};
}

// The rules told once more in the plainest way, as walks over the whole list.
namespace plain {

bool matches(int tree, int type) {
  static const std::vector<std::vector<int>> table = {
      {}, {1, 3}, {2, 4}, {1, 3}, {2, 4}, {3, 4, 5}, {6},  {7},
      {}, {9},    {10},   {11},   {12},   {13},      {14}, {15}};
  const bool known = tree >= 0 && tree < static_cast<int>(table.size());
  return known && std::count(table[tree].begin(), table[tree].end(), type) > 0;
}

bool stays(const SQO_featureTree& tree, const SQO_treeGrowParam& p) {
  const auto& nodes = tree.treeNodes;
  const double len = std::sqrt(std::pow(nodes.front().jumpPos.x - nodes.back().jumpPos.x, 2) +
                               std::pow(nodes.front().jumpPos.y - nodes.back().jumpPos.y, 2));
  if (tree.treeType != FEATURE_V) {
    return len > p.minLTypeTreeLen;
  }
  const std::size_t k = nodes.size();
  return len > p.minVTypeTreeLen &&
         std::abs(nodes[k / 4].jumpPos.z - nodes[3 * k / 4].jumpPos.z) / len < 0.3;
}

void place(const SQO_basicFeature1D& f,
           int line,
           Trees& trees,
           const SQO_treeGrowParam& p,
           bool countsFirst) {
  for (SQO_featureTree& tree : trees) {
    const SQO_basicFeature1D& n = tree.treeNodes.back();
    if (tree.treeState != TREE_CLOSED && f.jumpPos2D.x != n.jumpPos2D.x &&
        std::abs(f.jumpPos.y - n.jumpPos.y) < p.yDeviation_max &&
        std::abs(f.jumpPos.z - n.jumpPos.z) < p.zDeviation_max &&
        (std::abs(f.jumpPos2D.x - n.jumpPos2D.x) < p.maxLineSkipNum ||
         std::abs(f.jumpPos.x - n.jumpPos.x) < p.maxSkipDistance) &&
        matches(tree.treeType, f.featureType)) {
      tree.eLineIdx = line;
      tree.treeNodes.push_back(f);
      tree.treeValue += f.featureValue;
      return;
    }
  }
  trees.push_back(treeOf({f}));
  trees.back().sLineIdx = trees.back().eLineIdx = line;
  trees.back().treeValue = countsFirst ? f.featureValue : 0.0;
}

bool closes(
    const SQO_featureTree& tree, int line, bool isLast, const SQO_treeGrowParam& p, bool byStep) {
  const int gap = std::abs(line - tree.treeNodes.back().jumpPos2D.x);
  const int span = tree.eLineIdx - tree.sLineIdx;
  if (!byStep) {
    return isLast || (p.maxLineSkipNum > 0 && gap > p.maxLineSkipNum);
  }
  if (gap < 1 || span < 1) {
    return false;
  }
  const double skipped =
      std::abs(tree.treeNodes.front().jumpPos.x - tree.treeNodes.back().jumpPos.x) / span * gap;
  return isLast || (p.maxLineSkipNum > 0 ? gap > p.maxLineSkipNum : skipped > p.maxSkipDistance);
}

Trees grow(const std::vector<Features>& lines,
           Trees trees,
           const SQO_treeGrowParam& p,
           bool byStep) {
  for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
    for (const SQO_basicFeature1D& f : lines[i]) {
      place(f, i, trees, p, byStep);
    }
    const bool isLast = i + 1 == static_cast<int>(lines.size());
    for (int t = static_cast<int>(trees.size()) - 1; t >= 0; --t) {
      if (trees[t].treeState == TREE_GROWING && closes(trees[t], i, isLast, p, byStep)) {
        trees[t].treeState = TREE_CLOSED;
        if (!stays(trees[t], p)) {
          trees.erase(trees.begin() + t);
        }
      }
    }
  }
  return trees;
}

}  // namespace plain

std::string text(const Trees& trees) {
  std::ostringstream out;
  for (const SQO_featureTree& tree : trees) {
    out << "tree " << tree.treeState << ' ' << tree.treeType << ' ' << tree.sLineIdx << ' '
        << tree.eLineIdx << ' ' << tree.treeValue << ' ' << tree.anchorNode << '\n';
    for (const auto& [type, pos2D, pos, value] : tree.treeNodes) {
      out << type << ' ' << pos2D.x << ' ' << pos.x << ' ' << pos.y << ' ' << pos.z << ' ' << value
          << '\n';
    }
  }
  return out.str();
}

/// Lines of random features on a coarse grid, so that exact limits and ties are frequent.
struct RandomScan {
  std::mt19937 random;

  int integer(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random);
  }
  SQO_basicFeature1D node(int line) {
    SQO_basicFeature1D f =
        feature(line + (integer(0, 9) == 0 ? integer(-2, 2) : 0), 0.5 * integer(-40, 40),
                integer(0, 3) == 0 ? integer(0, 16) : FEATURE_JUMP_RISE, 9.5 + 0.5 * integer(0, 8),
                0.25 * integer(0, 9));
    f.jumpPos.x += 0.5 * integer(-1, 1);
    return f;
  }
  std::vector<Features> lines() {
    std::vector<Features> result(integer(0, 40));
    for (std::size_t i = 0; i < result.size(); ++i) {
      for (int k = integer(-2, 12); k > 0; --k) {
        result[i].push_back(node(static_cast<int>(i)));
      }
    }
    return result;
  }
  SQO_treeGrowParam param() {
    return {0.5 * integer(-1, 12), 0.5 * integer(1, 8),  integer(-1, 4),
            0.5 * integer(0, 8),   0.5 * integer(-1, 8), 0.5 * integer(-1, 8)};
  }
  Trees passedIn() {
    Trees trees;
    for (int k = integer(0, 4); k > 0; --k) {
      trees.push_back(treeOf({node(integer(-3, 3)), node(integer(-3, 3))}, integer(0, 3)));
    }
    return trees;
  }
};

TEST(TreeGrowing, AgreesWithThePlainWalkOverTheWholeList) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(seed);
    RandomScan random = {std::mt19937(seed)};
    std::vector<Features> lines = random.lines();
    const SQO_treeGrowParam param = random.param();
    const Trees passedIn = random.passedIn();
    std::vector<SQO_lineFeature> lineFeatures;
    Trees scanTrees = passedIn;
    Trees peaks = passedIn;
    Trees byLine = passedIn;
    Trees corners = passedIn;
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
      lineFeatures.push_back({i, lines[i], {}});
      const bool isLast = i + 1 == static_cast<int>(lines.size());
      qo_lineFeaturesGrowing(i, isLast, lines[i], byLine, param);
    }
    qo_getFeatureGrowingTrees(lineFeatures, scanTrees, param);
    qo_peakFeatureGrowing(lines, peaks, param);
    qo_cornerFeaturesGrowing(lines, corners, param);

    const std::string expected = text(plain::grow(lines, passedIn, param, false));
    ASSERT_EQ(expected, text(scanTrees));
    ASSERT_EQ(expected, text(peaks));
    Trees stepwise = plain::grow(lines, passedIn, param, true);
    ASSERT_EQ(text(stepwise), text(byLine));
    stepwise.erase(std::remove_if(stepwise.begin(), stepwise.end(),
                                  [](const auto& t) { return t.sLineIdx == t.eLineIdx; }),
                   stepwise.end());
    ASSERT_EQ(text(stepwise), text(corners));
  }
}

TEST(TreeGrowing, FinishesTreesEvenWithoutLines) {
  Trees trees = {treeOf({feature(3, 4.0), feature(1, -2.0), feature(2, 9.0)}, TREE_CLOSED),
                 treeOf({feature(2, 0.0), feature(3, 0.0)}), treeOf({feature(2, 0.0)}, TREE_CLOSED),
                 treeOf({feature(0, 0.0)})};
  trees[3].treeNodes.clear();
  trees[3].xRange = {7.0, 7.0};
  std::vector<Features> none;
  qo_peakFeatureGrowing(none, trees, kParam);
  EXPECT_TRUE(trees[0].xRange.min == 1.0 && trees[0].xRange.max == 3.0);
  EXPECT_TRUE(trees[0].yRange.min == -2.0 && trees[0].yRange.max == 9.0);
  EXPECT_EQ(trees[3].xRange.max, 0.0);
  qo_cornerFeaturesGrowing(none, trees, kParam);
  ASSERT_EQ(trees.size(), 2U) << "those of a single line go";
  EXPECT_EQ(trees[1].eLineIdx, 3);
}

}  // namespace
