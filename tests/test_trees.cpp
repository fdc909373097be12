#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/trees.h>
#include "builders.h"
#include "plain_trees.h"

namespace {

using build::feature;
using plain::Features;
using plain::Lines;
using plain::treeOf;
using plain::Trees;

constexpr SQO_treeGrowParam kParam = {2.0, 3.0, 3, 5.0, 0.5, 0.5};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::string text(const Trees& trees) {
  std::ostringstream out;
  for (const SQO_featureTree& tree : trees) {
    out << "tree " << tree.treeState << ' ' << tree.treeType << ' ' << tree.sLineIdx << ' '
        << tree.eLineIdx << ' ' << tree.treeValue << ' ' << tree.anchorNode << ' '
        << tree.xRange.min << ' ' << tree.xRange.max << ' ' << tree.yRange.min << ' '
        << tree.yRange.max << '\n';
    for (const auto& [type, pos2D, pos, value] : tree.treeNodes) {
      out << type << ' ' << pos2D.x << ',' << pos2D.y << ' ' << pos.x << ' ' << pos.y << ' '
          << pos.z << ' ' << value << '\n';
    }
  }
  return out.str();
}

/// Lines of random features on a coarse grid, so that values at a limit and ties are frequent.
struct RandomScan : build::Random {
  using Random::Random;

  SQO_basicFeature1D node(int line) {
    SQO_basicFeature1D f =
        feature(line + (whole(0, 9) == 0 ? whole(-2, 2) : 0), 70.0 + 0.5 * whole(-20, 20),
                whole(0, 3) == 0 ? whole(-1, 16) : FEATURE_JUMP_RISE, 9.5 + 0.5 * whole(0, 8),
                0.25 * whole(0, 9));
    f.jumpPos.x += whole(0, 60) == 0 ? kNaN : 30.0 + 0.5 * whole(-1, 1);
    f.jumpPos.y = whole(0, 60) == 0 ? kNaN : f.jumpPos.y;
    return f;
  }
  Lines lines(int count, int most) {
    Lines result(count);
    for (int i = 0; i < count; ++i) {
      for (int k = whole(most > 1 ? -2 : 1, most); k > 0; --k) {
        result[i].push_back(node(i));
      }
    }
    return result;
  }
  SQO_treeGrowParam param() {
    return {0.5 * whole(-1, 12), 0.5 * whole(1, 8),  whole(-1, 4),
            0.5 * whole(0, 8),   0.5 * whole(-1, 8), 0.5 * whole(-1, 8)};
  }
  Trees passedIn() {
    Trees trees;
    for (int k = whole(0, 4); k > 0; --k) {
      trees.push_back(treeOf({node(whole(-3, 3)), node(whole(-3, 3))}, whole(0, 3)));
    }
    return trees;
  }
};

TEST(TreeGrowing, AgreesWithAPlainSearchOfTheWholeList) {
  for (unsigned seed = 0; seed < 400; ++seed) {
    SCOPED_TRACE(seed);
    RandomScan random(seed);
    Lines lines = random.lines(random.whole(0, 40), 12);
    const SQO_treeGrowParam param = random.param();
    const Trees passedIn = random.passedIn();
    std::vector<SQO_lineFeature> records, reversed;
    Trees scanTrees = passedIn, peaks = passedIn, byLine = passedIn, corners = passedIn,
          untyped = passedIn, endingTrees = passedIn;
    for (int i = 0; i < static_cast<int>(lines.size()); ++i) {
      records.push_back({i, lines[i], {}});
      reversed.push_back({i, lines[lines.size() - 1 - i], lines[i]});
      const bool isLast = i + 1 == static_cast<int>(lines.size());
      qo_lineFeaturesGrowing(i, isLast, lines[i], byLine, param);
    }
    qo_getFeatureGrowingTrees(records, scanTrees, param);
    qo_peakFeatureGrowing(lines, peaks, param);
    for (SQO_featureTree& tree : peaks) {
      tree.xRange = tree.yRange = {0.0, 0.0};
    }
    qo_cornerFeaturesGrowing(lines, corners, param);
    ju_getFeatureGrowingTrees_noTypeMatch(reversed, untyped, endingTrees, param);

    const std::string expected = text(plain::grow(lines, passedIn, {param, false, true, kNaN}));
    ASSERT_EQ(expected, text(scanTrees));
    ASSERT_EQ(expected, text(peaks));
    const plain::Rules anyType = {param, false, false, kNaN};
    ASSERT_EQ(text(plain::grow(lines, passedIn, anyType)), text(endingTrees));
    ASSERT_EQ(text(plain::grow({lines.rbegin(), lines.rend()}, passedIn, anyType)), text(untyped));
    const Trees stepwise = plain::grow(lines, passedIn, {param, true, true, kNaN});
    ASSERT_EQ(text(stepwise), text(byLine));
    ASSERT_EQ(text(plain::withoutOneLineTrees(stepwise)), text(corners));
  }
}

TEST(EndingGrowing, AgreesWithAPlainSearchOfTheWholeList) {
  for (unsigned seed = 0; seed < 500; ++seed) {
    SCOPED_TRACE(seed);
    RandomScan random(seed);
    const bool isLineFirst = seed % 2 == 0;
    const bool isLong = seed % 25 == 1;
    const int type = seed % 10 == 0 ? 8 : FEATURE_SEG_END;
    SQO_treeGrowParam param = random.param();
    if (isLong || seed % 3 == 0) {
      param = {isLong ? 40.0 : 6.0, 5.0, 3, 9.0, 2.0, 0.5};
    }
    build::Scan scan(600, build::Line(isLineFirst ? 20 : 600));
    std::vector<SQO_2DValueI> positions;
    Lines endings;
    const Lines places = isLong ? random.lines(600, 1) : random.lines(30, 8);
    for (int l = 0; l < static_cast<int>(places.size()); ++l) {
      for (int k = 0; k < static_cast<int>(places[l].size()); ++k) {
        const STesk3DPoint& at = places[l][k].jumpPos;
        (isLineFirst ? scan[l][k] : scan[k][l]).pt3D =
            isLineFirst ? at : STesk3DPoint{at.y, at.x, at.z};
        positions.push_back({l, k, -7, -7.0, -7});
        endings.push_back({{type, {l, k}, at, 0.0}});
      }
    }
    const double checkDist = 0.75 * random.whole(-1, 8);
    Trees passedIn = random.passedIn();
    if (isLong) {  // a tree with long runs of nodes that are not finite
      Features nodes(80, feature(0, kNaN, type));
      for (const int k : {0, 48, 63, 64, 78, 79}) {
        nodes[k].jumpPos = random.node(0).jumpPos;
      }
      passedIn.push_back(treeOf(nodes));
    }
    Trees trees = passedIn, directed = passedIn;
    auto lines = build::pointerForm(scan);
    qo_getEndingGrowingTrees(positions, lines.data(), isLineFirst, type, trees, param);
    qo_getEndingGrowingTrees_angleCheck(positions, lines.data(), isLineFirst, type, directed, param,
                                        checkDist);
    ASSERT_EQ(text(plain::grow(endings, passedIn, {param, false, true, kNaN}, true)), text(trees));
    ASSERT_EQ(text(plain::grow(endings, passedIn, {param, false, true, checkDist}, true)),
              text(directed));
  }
}

TEST(TreeGrowing, SetsBoundsAndRemovesTreesOfOneLineEvenWithoutLines) {
  Trees trees = {treeOf({feature(3, 4.0), feature(1, -2.0), feature(2, 9.0)}, TREE_CLOSED),
                 treeOf({feature(2, 0.0)}), treeOf({feature(0, 0.0)})};
  trees[2].treeNodes.clear();
  trees[2].xRange = trees[2].yRange = {7.0, 7.0};
  Lines none;
  qo_peakFeatureGrowing(none, trees, kParam);
  std::ostringstream ranges;
  for (const SQO_featureTree& tree : {trees[0], trees[2]}) {
    ranges << tree.xRange.min << ' ' << tree.xRange.max << ' ' << tree.yRange.min << ' '
           << tree.yRange.max << "; ";
  }
  EXPECT_EQ(ranges.str(), "1 3 -2 9; 0 0 0 0; ");
  qo_cornerFeaturesGrowing(none, trees, kParam);
  EXPECT_EQ(trees.size(), 1U) << "trees of one line are removed";

  Lines last(1);
  for (const double z : {11.5, 11.4375}) {
    trees = {treeOf({feature(0, 0.0, FEATURE_V, 10.0), feature(3, 4.0, FEATURE_V, z)})};
    qo_peakFeatureGrowing(last, trees, kParam);
    EXPECT_EQ(trees.empty(), z == 11.5) << "a V tree drifts in z by less than 0.3 of its length";
  }
}

TEST(TreeGrowing, StaysLinearForManyFeaturesAtOnePlace) {
  for (const double y : {5.0, kNaN}) {
    Lines lines = {Features(100000, feature(0, y)), Features(100000, feature(1, y)), {}};
    Trees trees;
    qo_cornerFeaturesGrowing(lines, trees, kParam);
    EXPECT_EQ(trees.size(), std::isnan(y) ? 0U : 100000U);
  }
}

}  // namespace
