#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include <scanline/scanline.h>
#include "builders.h"

namespace {

using build::lineOfZ;
using build::sample;
using Bytes = std::vector<std::size_t>;

template <typename... Record>
Bytes sizes() {
  static_assert(((std::is_trivial_v<Record> && std::is_standard_layout_v<Record>)&&...));
  static_assert((std::is_aggregate_v<Record> && ...));
  return {sizeof(Record)...};
}

/// The places of the fields of a record, and its size.
template <typename Record, typename... Field>
Bytes layout(Field Record::*... field) {
  static_assert(std::is_aggregate_v<Record>);
  const Record record = {};
  const auto place = [](const auto& object) { return reinterpret_cast<std::uintptr_t>(&object); };
  return {place(record.*field) - place(record)..., sizeof(Record)};
}

template <typename Tree>
Bytes layoutOfTree() {
  return layout(&Tree::treeState, &Tree::treeType, &Tree::sLineIdx, &Tree::eLineIdx,
                &Tree::treeValue, &Tree::xRange, &Tree::yRange, &Tree::treeNodes,
                &Tree::anchorNode);
}

// The records that are not listed by their fields are written by position and read by name
// somewhere, which holds their order.
TEST(Layout, IsFixed) {
  using Calib = SQO_planeCalibPara;
  using Gap = SQO_basicFeatureGap;
  using Seg = SJU_segFeature;
  using Semi = SQO_featureSemiCircle;
  using SegTree = SJU_segFeatureTree;
  using SemiTree = SQO_semiCircleFeatureTree;
  const std::pair<Bytes, Bytes> cases[] = {
      {sizes<STesk3DPoint, STesk2DPoint, STesk2DPointD, STesk3DPosition, STesk3DLaserLine,
             STeskXYZRGBDPoint, STeskXYZRGBDLaserLine, STeskRangeD, STesk3DRangeD, STeskRect,
             SQO_2DValueI, SQO_intPair, SQO_RUN, SJU_pointCloudPara, SQO_EulerAngles>(),
       {24, 8, 16, 32, 24, 16, 16, 16, 48, 16, 32, 12, 12, 64, 24}},
      {sizes<SQO_basicFeature1D, Gap, Seg, Semi, Calib, SQO_treeGrowParam, SQO_bagParam,
             SQO_cornerParam, SQO_outlierFilterParam, SQO_lineSegParam, SQO_slopeParam,
             SQO_VFeatureParam, SQO_lineRightAngleParam, SQO_gloveArcParam,
             SQO_raisedFeatureParam>(),
       {48, 128, 72, 64, 152, 48, 16, 48, 16, 24, 32, 16, 24, 24, 32}},
      {{sizeof(SQO_lineFeature)}, {56}},
      {layout(&Calib::levelMatrix, &Calib::planeHeight, &Calib::invLevelMatrix), {0, 72, 80, 152}},
      {layout(&Gap::lineIdx, &Gap::reserved1, &Gap::gapStart, &Gap::gapEnd, &Gap::reserved2),
       {0, 8, 32, 64, 96, 128}},
      {layout(&Seg::lineIdx, &Seg::startPtIdx, &Seg::endPtIdx, &Seg::featureType, &Seg::startPt,
              &Seg::endPt, &Seg::segValue),
       {0, 4, 8, 12, 16, 40, 64, 72}},
      {layout(&Semi::segState, &Semi::lineIdx, &Semi::startPtIdx, &Semi::endPtIdx, &Semi::midPtIdx,
              &Semi::midPt, &Semi::width, &Semi::height),
       {0, 4, 8, 12, 16, 24, 48, 56, 64}},
      {layoutOfTree<SQO_featureTree>(), {0, 4, 8, 12, 16, 24, 40, 56, 80, 88}},
      {layoutOfTree<SQO_gapFeatureTree>(), {0, 4, 8, 12, 16, 24, 40, 56, 80, 88}},
      {layout(&SegTree::treeState, &SegTree::sLineIdx, &SegTree::eLineIdx, &SegTree::treeValue,
              &SegTree::treeNodes),
       {0, 4, 8, 16, 24, 48}},
      {layout(&SemiTree::treeState, &SemiTree::treeType, &SemiTree::sLineIdx, &SemiTree::eLineIdx,
              &SemiTree::treeRange, &SemiTree::treeValue, &SemiTree::treeValue2, &SemiTree::treeTag,
              &SemiTree::treeNodes),
       {0, 4, 8, 12, 16, 64, 72, 80, 88, 112}}};
  for (const auto& [actual, expected] : cases) {
    EXPECT_EQ(actual, expected);
  }
}

TEST(Codes, KeepTheirNumbers) {
  static_assert(FEATURE_JUMP_RISE == 1 && FEATURE_JUMP_FALL == 2 && FEATURE_SLOPE_RISE == 3);
  static_assert(FEATURE_SLOPE_FALL == 4 && FEATURE_V == 5 && FEATURE_SEG_START == 6);
  static_assert(FEATURE_SEG_END == 7 && FEATURE_RIGHT_ANGLE_1 == 9 && FEATURE_RIGHT_ANGLE_2 == 10);
  static_assert(FEATURE_RIGHT_ANGLE_3 == 11 && FEATURE_RIGHT_ANGLE_4 == 12 && FEATURE_PEAK == 13);
  static_assert(FEATURE_VALLEY == 14 && FEATURE_CORNER_OTHER == 15);
  static_assert(TREE_GROWING == 1 && TREE_CLOSED == 2);
}

std::string text(const STeskRangeD& x, const STeskRangeD& y, const STeskRangeD& z) {
  std::ostringstream out;
  out << x.min << ".." << x.max << ' ' << y.min << ".." << y.max << ' ' << z.min << ".." << z.max;
  return out.str();
}

TEST(Bounds, AreTheSameFromAllFourFunctions) {
  const std::pair<build::Scan, const char*> cases[] = {
      {{{}, {sample(1, 2, 0.0), sample(1, 3, -5.0), sample(1, 4, 0.000099)}}, "0..-1 0..-1 0..-1"},
      {{{sample(7, -2, 0.0001)}}, "7..7 -2..-2 0.0001..0.0001"},
      {{{sample(30, 5, 9), sample(0, 0, 4)}, {sample(-1, 8, 0)}}, "0..30 0..5 4..9"},
      {{{sample(-0.0, 0.0, 1), sample(0.0, -0.0, 1)}}, "-0..-0 0..0 1..1"},
      // What is not a number stays if it comes first, and is passed over later.
      {{{sample(NAN, 1, 5), sample(2, NAN, NAN), sample(3, 0, 6)}}, "nan..nan 0..1 5..6"}};
  for (auto [scan, expected] : cases) {
    std::vector<STesk3DPoint> points;
    for (const build::Line& line : scan) {
      std::for_each(line.begin(), line.end(), [&](auto& at) { points.push_back(at.pt3D); });
    }
    const SJU_pointCloudPara para = ju_getPointCloudPara(scan);
    EXPECT_EQ(text(para.xRange, para.yRange, para.zRange), expected);
    for (const auto& [x, y, z] :
         {qo_getScanDataROI_vector(scan), ju_getPointCloudROI(points),
          qo_getScanDataROI(build::pointerForm(scan).data(), static_cast<int>(scan.size()))}) {
      EXPECT_EQ(text(x, y, z), expected);
    }
  }
  EXPECT_EQ(qo_getScanDataROI(nullptr, -1).xRange.max, -1.0);
}

TEST(CloudPara, StepsAreMeansOverDirectNeighbours) {
  const build::Line limits = lineOfZ({0.0001, 1}, 4.0);
  const std::tuple<build::Scan, double, double> cases[] = {
      // In-line steps 1, 3 and 5, steps between the lines 2 and 5.
      {{{sample(0, 0, 1), sample(0, 1, 1), sample(1, -2, 1), sample(0, 3, 1), sample(0, 9, 0)},
        {sample(2, 0, 1), sample(9, 7, 0), sample(-4, 3, 1), sample(9, 7, -1), sample(9, 7, 1)}},
       3.0,
       3.5},
      {{lineOfZ({1, 0, 1, 0, 1})}, -1.0, -1.0},
      // A sample at the limit has neighbours but is none.
      {{limits}, -1.0, -1.0},
      {{{sample(0, 0, 1), sample(9, 1, 0.0001)}, limits}, 1.0, 4.0}};
  for (auto [scan, ptStep, scanLineStep] : cases) {
    const SJU_pointCloudPara para = ju_getPointCloudPara(scan);
    EXPECT_EQ(para.ptStep, ptStep);
    EXPECT_EQ(para.scanLineStep, scanLineStep);
  }
}

}  // namespace
