#include <scanline/trees.h>
#include "cost.h"
#include "cost_features.h"

// All growers on the same features, in the records of each.

namespace cost {
namespace {

constexpr int kFeatures = 500;

using Trees = std::vector<SQO_featureTree>;

/// Limits that all features of a case observe, and trees that never close before the end.
constexpr SQO_treeGrowParam kGrow = {2.0, 5.0, 0, 1e9, 0.0, 0.0};

std::vector<SQO_lineFeature> asRecords(const FeatureLines& lines) {
  std::vector<SQO_lineFeature> records;
  for (const Features& features : lines) {
    records.push_back({static_cast<int>(records.size()), features, {}});
  }
  return records;
}

template <typename Record, typename Convert>
std::vector<std::vector<Record>> converted(const FeatureLines& lines, Convert convert) {
  std::vector<std::vector<Record>> result(lines.size());
  for (std::size_t l = 0; l < lines.size(); ++l) {
    for (const SQO_basicFeature1D& feature : lines[l]) {
      result[l].push_back(convert(feature));
    }
  }
  return result;
}

using Prepared = std::function<void()>;

Prepared wholeScan(const FeatureLines& lines) {
  return [records = asRecords(lines), trees = Trees{}]() mutable {
    qo_getFeatureGrowingTrees(records, trees, kGrow);
  };
}

Prepared lineByLine(const FeatureLines& lines) {
  return [features = lines.front(), trees = Trees{}]() mutable {
    qo_lineFeaturesGrowing(0, false, features, trees, kGrow);
  };
}

template <void (*grow)(FeatureLines&, Trees&, SQO_treeGrowParam)>
Prepared byLists(const FeatureLines& lines) {
  return [features = lines, trees = Trees{}]() mutable { grow(features, trees, kGrow); };
}

Prepared typeFree(const FeatureLines& lines) {
  return [records = asRecords(lines), trees = Trees{}, endingTrees = Trees{}]() mutable {
    ju_getFeatureGrowingTrees_noTypeMatch(records, trees, endingTrees, kGrow);
  };
}

/// The features as positions on a scan that has no other samples.
struct EndingScan {
  explicit EndingScan(const FeatureLines& features)
      : scan(converted<STesk3DPosition>(features, [](const SQO_basicFeature1D& feature) {
          return STesk3DPosition{0, feature.jumpPos};
        })) {
    for (int l = 0; l < static_cast<int>(scan.size()); ++l) {
      for (int i = 0; i < static_cast<int>(scan[l].size()); ++i) {
        endings.push_back({l, i, 0, 0.0, 0});
      }
    }
  }

  Scan scan;
  std::vector<SQO_2DValueI> endings;
};

Prepared endings(const FeatureLines& lines) {
  return [positions = EndingScan(lines), trees = Trees{}]() mutable {
    std::vector<STesk3DLaserLine> scan = pointerForm(positions.scan);
    qo_getEndingGrowingTrees(positions.endings, scan.data(), true, FEATURE_SEG_END, trees, kGrow);
  };
}

std::function<Prepared(const FeatureLines&)> endingsByDirection(double checkDist) {
  return [checkDist](const FeatureLines& lines) {
    return [positions = EndingScan(lines), trees = Trees{}, checkDist]() mutable {
      std::vector<STesk3DLaserLine> scan = pointerForm(positions.scan);
      qo_getEndingGrowingTrees_angleCheck(positions.endings, scan.data(), true, FEATURE_SEG_END,
                                          trees, kGrow, checkDist);
    };
  };
}

Prepared gaps(const FeatureLines& lines) {
  auto gapLines = converted<SQO_basicFeatureGap>(lines, [](const SQO_basicFeature1D& feature) {
    const STesk3DPosition side = {0, feature.jumpPos};
    return SQO_basicFeatureGap{feature.jumpPos2D.x, {}, side, side, {}};
  });
  return [gapLines, trees = std::vector<SQO_gapFeatureTree>{}]() mutable {
    int lineIdx = 0;
    for (std::vector<SQO_basicFeatureGap>& line : gapLines) {
      qo_lineGapsGrowing(lineIdx++, false, line, trees, kGrow);
    }
  };
}

Prepared semiCircles(const FeatureLines& lines) {
  auto circles = converted<SQO_featureSemiCircle>(lines, [](const SQO_basicFeature1D& feature) {
    return SQO_featureSemiCircle{0, feature.jumpPos2D.x, 0, 0, 0, feature.jumpPos, 0.0, 0.0};
  });
  using TreeList = std::vector<SQO_semiCircleFeatureTree>;
  return [circles, trees = TreeList{}, longTrees = TreeList{}, shortTrees = TreeList{}]() mutable {
    const int lineNum = static_cast<int>(circles.size());
    for (int l = 0; l < lineNum; ++l) {
      qo_getFeatureGrowingTrees_semiCircle(circles[l], l, lineNum, trees, longTrees, shortTrees,
                                           kGrow);
    }
  };
}

Prepared segments(const FeatureLines& lines) {
  auto segmentLines = converted<SJU_segFeature>(lines, [](const SQO_basicFeature1D& feature) {
    return SJU_segFeature{feature.jumpPos2D.x, 0, 0, 0, feature.jumpPos, feature.jumpPos, 0.0};
  });
  return [segmentLines, trees = std::vector<SJU_segFeatureTree>{}]() mutable {
    ju_getSegFeatureGrowingTrees(segmentLines, trees, kGrow);
  };
}

Prepared lv(const FeatureLines& lines) {
  std::vector<SQO_lineFeature> records = asRecords(lines);
  for (SQO_lineFeature& line : records) {
    line.endings.assign(1, featureAt(line.lineIdx, 0, 1e6));
  }
  return [records, trees = Trees{}, starts = std::vector<SQO_2DValueI>{},
          ends = std::vector<SQO_2DValueI>{}]() mutable {
    qo_LVFeatureGrowing(records, trees, {300.0, 500.0}, kGrow, starts, ends);
  };
}

template <typename Grow>
Case growing(const char* name,
             FeatureLines (*make)(int),
             Grow grow,
             Growth growth = Growth::kLinear) {
  return {name, growth, kFeatures, [=](int count) { return Prepared(grow(make(count))); }};
}

/// Trees of one node each, all too short for the object: each one is compared with all others.
Case shortTrees() {
  return {"trees/lv/short-trees", Growth::kQuadratic, 500, [](int count) {
            SQO_treeGrowParam keepAll = kGrow;
            keepAll.minLTypeTreeLen = -1.0;
            return [records = asRecords(spreadOnALine(count)), trees = Trees{}, keepAll]() mutable {
              std::vector<SQO_2DValueI> starts;
              std::vector<SQO_2DValueI> ends;
              qo_LVFeatureGrowing(records, trees, {300.0, 500.0}, keepAll, starts, ends);
            };
          }};
}

}  // namespace

std::vector<Case> treeCases() {
  return {
      growing("trees/whole-scan/equal-on-a-line", equalOnALine, wholeScan),
      growing("trees/whole-scan/close-on-a-line", closeOnALine, wholeScan),
      growing("trees/whole-scan/equal-on-two-lines", equalOnTwoLines, wholeScan),
      growing("trees/whole-scan/nan-y", withoutY, wholeScan),
      growing("trees/whole-scan/nan-y-on-a-line", withoutYOnALine, wholeScan),
      growing("trees/whole-scan/long-tree", longTree, wholeScan),
      growing("trees/whole-scan/far-apart", farApart, wholeScan),
      growing("trees/whole-scan/unmatched-types", unmatched, wholeScan, Growth::kQuadratic),
      growing("trees/whole-scan/wall", wall, wholeScan, Growth::kQuadratic),
      growing("trees/line-by-line/equal-on-a-line", equalOnALine, lineByLine),
      growing("trees/corners/equal-on-a-line", equalOnALine, byLists<qo_cornerFeaturesGrowing>),
      growing("trees/peaks/equal-on-a-line", equalOnALine, byLists<qo_peakFeatureGrowing>),
      growing("trees/type-free/equal-on-a-line", equalOnALine, typeFree),
      growing("trees/endings/equal-on-a-line", equalOnALine, endings),
      growing("trees/endings/nan-y", withoutY, endings),
      growing("trees/angle-check/equal-on-a-line", equalOnALine, endingsByDirection(10.0)),
      growing("trees/angle-check/anchor-at-start", longTree, endingsByDirection(0.5)),
      growing("trees/angle-check/check-beyond-tree", longTree, endingsByDirection(1e9)),
      growing("trees/angle-check/anchor-far-away", longTree, endingsByDirection(300.0)),
      growing("trees/gaps/equal-on-a-line", equalOnALine, gaps),
      growing("trees/gaps/nan-y-on-a-line", withoutYOnALine, gaps),
      growing("trees/semi-circles/equal-on-a-line", equalOnALine, semiCircles),
      growing("trees/semi-circles/equal-on-two-lines", equalOnTwoLines, semiCircles),
      growing("trees/segments/equal-on-a-line", equalOnALine, segments),
      growing("trees/segments/nan-y", withoutY, segments),
      growing("trees/lv/equal-on-a-line", equalOnALine, lv),
      growing("trees/lv/long-tree", longTree, lv),
      shortTrees(),
  };
}

}  // namespace cost
