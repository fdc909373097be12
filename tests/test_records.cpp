#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "builders.h"
#include "scanline.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

template <typename Field>
constexpr char kKind = std::is_floating_point_v<Field> ? 'f'
                       : std::is_signed_v<Field>       ? 'i'
                       : std::is_unsigned_v<Field>     ? 'u'
                       : std::is_pointer_v<Field>      ? 'p'
                       : std::is_array_v<Field>        ? 'a'
                                                       : 'r';

/// Kind, size and offset of each field in turn, then the size of the record.
template <typename Record, typename... Field>
std::string layout(Field Record::*... field) {
  static_assert(std::is_aggregate_v<Record>);
  if constexpr ((std::is_trivial_v<Field> && ...)) {
    static_assert(std::is_trivial_v<Record> && std::is_standard_layout_v<Record>);
  }
  const Record record = {};
  const auto place = [](const auto& object) { return reinterpret_cast<std::uintptr_t>(&object); };
  std::ostringstream out;
  ((out << kKind<Field> << sizeof(Field) << '@' << place(record.*field) - place(record) << ' '),
   ...);
  out << '/' << sizeof(Record);
  return out.str();
}

TEST(Layout, ScanRecords) {
  using P3 = STesk3DPoint;
  EXPECT_EQ(layout(&P3::x, &P3::y, &P3::z), "f8@0 f8@8 f8@16 /24");
  EXPECT_EQ(layout(&STesk2DPoint::x, &STesk2DPoint::y), "i4@0 i4@4 /8");
  EXPECT_EQ(layout(&STesk2DPointD::x, &STesk2DPointD::y), "f8@0 f8@8 /16");
  EXPECT_EQ(layout(&STesk3DPosition::nPointIdx, &STesk3DPosition::pt3D), "i4@0 r24@8 /32");
  using Line = STesk3DLaserLine;
  EXPECT_EQ(layout(&Line::p3DPosition, &Line::nPositionCnt, &Line::lineTag), "p8@0 i4@8 u8@16 /24");
  using Color = STeskXYZRGBDPoint;
  EXPECT_EQ(layout(&Color::x, &Color::y, &Color::z, &Color::nRGB), "f4@0 f4@4 f4@8 u4@12 /16");
  using ColorLine = STeskXYZRGBDLaserLine;
  EXPECT_EQ(layout(&ColorLine::pXYZRGBD, &ColorLine::nPointCnt), "p8@0 i4@8 /16");
  EXPECT_EQ(layout(&STeskRangeD::min, &STeskRangeD::max), "f8@0 f8@8 /16");
  using Box = STesk3DRangeD;
  EXPECT_EQ(layout(&Box::xRange, &Box::yRange, &Box::zRange), "r16@0 r16@16 r16@32 /48");
  using Rect = STeskRect;
  EXPECT_EQ(layout(&Rect::left, &Rect::right, &Rect::top, &Rect::bottom),
            "i4@0 i4@4 i4@8 i4@12 /16");
  using Value = SQO_2DValueI;
  EXPECT_EQ(layout(&Value::x, &Value::y, &Value::value, &Value::valueD, &Value::tag),
            "i4@0 i4@4 i4@8 f8@16 i4@24 /32");
  using Pair = SQO_intPair;
  EXPECT_EQ(layout(&Pair::first, &Pair::second, &Pair::third), "i4@0 i4@4 i4@8 /12");
  EXPECT_EQ(layout(&SQO_RUN::start, &SQO_RUN::len, &SQO_RUN::value), "i4@0 i4@4 i4@8 /12");
  using Para = SJU_pointCloudPara;
  EXPECT_EQ(layout(&Para::xRange, &Para::yRange, &Para::zRange, &Para::scanLineStep, &Para::ptStep),
            "r16@0 r16@16 r16@32 f8@48 f8@56 /64");
  using Calib = SQO_planeCalibPara;
  EXPECT_EQ(layout(&Calib::levelMatrix, &Calib::planeHeight, &Calib::invLevelMatrix),
            "a72@0 f8@72 a72@80 /152");
  using Euler = SQO_EulerAngles;
  EXPECT_EQ(layout(&Euler::roll, &Euler::pitch, &Euler::yaw), "f8@0 f8@8 f8@16 /24");
}

TEST(Layout, Features) {
  using Basic = SQO_basicFeature1D;
  EXPECT_EQ(layout(&Basic::featureType, &Basic::jumpPos2D, &Basic::jumpPos, &Basic::featureValue),
            "i4@0 r8@4 r24@16 f8@40 /48");
  using LineF = SQO_lineFeature;
  EXPECT_EQ(layout(&LineF::lineIdx, &LineF::features, &LineF::endings), "i4@0 r24@8 r24@32 /56");
  using Gap = SQO_basicFeatureGap;
  EXPECT_EQ(layout(&Gap::lineIdx, &Gap::reserved1, &Gap::gapStart, &Gap::gapEnd, &Gap::reserved2),
            "i4@0 a24@8 r32@32 r32@64 a32@96 /128");
  using Seg = SJU_segFeature;
  EXPECT_EQ(layout(&Seg::lineIdx, &Seg::startPtIdx, &Seg::endPtIdx, &Seg::featureType,
                   &Seg::startPt, &Seg::endPt, &Seg::segValue),
            "i4@0 i4@4 i4@8 i4@12 r24@16 r24@40 f8@64 /72");
  using Semi = SQO_featureSemiCircle;
  EXPECT_EQ(layout(&Semi::segState, &Semi::lineIdx, &Semi::startPtIdx, &Semi::endPtIdx,
                   &Semi::midPtIdx, &Semi::midPt, &Semi::width, &Semi::height),
            "i4@0 i4@4 i4@8 i4@12 i4@16 r24@24 f8@48 f8@56 /64");
}

template <typename Tree>
std::string layoutOfTree() {
  return layout(&Tree::treeState, &Tree::treeType, &Tree::sLineIdx, &Tree::eLineIdx,
                &Tree::treeValue, &Tree::xRange, &Tree::yRange, &Tree::treeNodes,
                &Tree::anchorNode);
}

TEST(Layout, Trees) {
  const char* expected = "i4@0 i4@4 i4@8 i4@12 f8@16 r16@24 r16@40 r24@56 i4@80 /88";
  EXPECT_EQ(layoutOfTree<SQO_featureTree>(), expected);
  EXPECT_EQ(layoutOfTree<SQO_gapFeatureTree>(), expected);
  using Seg = SJU_segFeatureTree;
  EXPECT_EQ(
      layout(&Seg::treeState, &Seg::sLineIdx, &Seg::eLineIdx, &Seg::treeValue, &Seg::treeNodes),
      "i4@0 i4@4 i4@8 f8@16 r24@24 /48");
  using Semi = SQO_semiCircleFeatureTree;
  EXPECT_EQ(
      layout(&Semi::treeState, &Semi::treeType, &Semi::sLineIdx, &Semi::eLineIdx, &Semi::treeRange,
             &Semi::treeValue, &Semi::treeValue2, &Semi::treeTag, &Semi::treeNodes),
      "i4@0 i4@4 i4@8 i4@12 r48@16 f8@64 f8@72 i4@80 r24@88 /112");
}

TEST(Layout, Parameters) {
  using Grow = SQO_treeGrowParam;
  EXPECT_EQ(layout(&Grow::yDeviation_max, &Grow::zDeviation_max, &Grow::maxLineSkipNum,
                   &Grow::maxSkipDistance, &Grow::minLTypeTreeLen, &Grow::minVTypeTreeLen),
            "f8@0 f8@8 i4@16 f8@24 f8@32 f8@40 /48");
  EXPECT_EQ(layout(&SQO_bagParam::bagWidth, &SQO_bagParam::bagLength), "f8@0 f8@8 /16");
  using Corner = SQO_cornerParam;
  EXPECT_EQ(layout(&Corner::minEndingGap, &Corner::minEndingGap_z, &Corner::scale,
                   &Corner::cornerTh, &Corner::jumpCornerTh_1, &Corner::jumpCornerTh_2),
            "f8@0 f8@8 f8@16 f8@24 f8@32 f8@40 /48");
  using Outlier = SQO_outlierFilterParam;
  EXPECT_EQ(layout(&Outlier::continuityTh, &Outlier::outlierTh), "f8@0 f8@8 /16");
}

TEST(Codes, KeepTheirNumbers) {
  EXPECT_EQ(
      std::vector<int>({FEATURE_JUMP_RISE, FEATURE_JUMP_FALL, FEATURE_SLOPE_RISE,
                        FEATURE_SLOPE_FALL, FEATURE_V, FEATURE_SEG_START, FEATURE_SEG_END,
                        FEATURE_RIGHT_ANGLE_1, FEATURE_RIGHT_ANGLE_2, FEATURE_RIGHT_ANGLE_3,
                        FEATURE_RIGHT_ANGLE_4, FEATURE_PEAK, FEATURE_VALLEY, FEATURE_CORNER_OTHER}),
      std::vector<int>({1, 2, 3, 4, 5, 6, 7, 9, 10, 11, 12, 13, 14, 15}));
  EXPECT_EQ(TREE_GROWING, 1);
  EXPECT_EQ(TREE_CLOSED, 2);
}

std::string text(const STesk3DRangeD& box) {
  std::ostringstream out;
  out << box.xRange.min << ".." << box.xRange.max << ' ' << box.yRange.min << ".." << box.yRange.max
      << ' ' << box.zRange.min << ".." << box.zRange.max;
  return out.str();
}

/// The box of a scan, which must be the same for all four functions that find it.
std::string boundsOf(build::Scan scan) {
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  std::vector<STesk3DPoint> points;
  for (const build::Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      points.push_back(sample.pt3D);
    }
  }
  const SJU_pointCloudPara para = ju_getPointCloudPara(scan);
  std::string box = text(qo_getScanDataROI_vector(scan));
  EXPECT_EQ(text(qo_getScanDataROI(lines.data(), static_cast<int>(lines.size()))), box);
  EXPECT_EQ(text(ju_getPointCloudROI(points)), box);
  EXPECT_EQ(text({para.xRange, para.yRange, para.zRange}), box);
  return box;
}

TEST(Bounds, TakeEverySampleThatIsNotBelowTheLimit) {
  using build::sample;
  const std::string empty = "0..-1 0..-1 0..-1";
  EXPECT_EQ(boundsOf({}), empty);
  EXPECT_EQ(boundsOf({{}, {}}), empty);
  EXPECT_EQ(boundsOf({{sample(1, 2, 0.0), sample(1, 3, -5.0), sample(1, 4, 0.000099)}}), empty);
  EXPECT_EQ(boundsOf({{sample(7, -2, 0.0001)}}), "7..7 -2..-2 0.0001..0.0001");
  EXPECT_EQ(boundsOf({{sample(30, 5, 9), sample(0, 0, 4)}, {sample(-1, 8, 0)}}), "0..30 0..5 4..9");
  EXPECT_EQ(qo_getScanDataROI(nullptr, -1).xRange.max, -1.0);
}

TEST(Bounds, KeepTheFirstOfValuesThatAreNotLess) {
  using build::sample;
  EXPECT_EQ(boundsOf({{sample(-0.0, 0.0, 1), sample(0.0, -0.0, 1)}}), "-0..-0 0..0 1..1");
  // What is not a number stays if it comes first, and is passed over later.
  EXPECT_EQ(boundsOf({{sample(kNaN, 1, 5), sample(2, kNaN, kNaN), sample(3, 0, 6)}}),
            "nan..nan 0..1 5..6");
}

/// The steps in the lines and between them.
std::pair<double, double> stepsOf(build::Scan scan) {
  const SJU_pointCloudPara para = ju_getPointCloudPara(scan);
  return {para.ptStep, para.scanLineStep};
}

TEST(CloudPara, StepsAreMeansOverDirectNeighbours) {
  using build::sample;
  // In-line steps 1, 3 and 2, steps between the lines 2 and 5.
  EXPECT_EQ(stepsOf({{sample(0, 0, 1), sample(0, 1, 1), sample(1, -2, 1), sample(0, 0, 1),
                      sample(0, 9, 0)},
                     {sample(2, 0, 1), sample(9, 7, 0), sample(-4, 3, 1), sample(9, 7, -1),
                      sample(9, 7, 1)}}),
            std::make_pair(2.0, 3.5));
  EXPECT_EQ(stepsOf({build::lineOfZ({1, 0, 1, 0, 1})}), std::make_pair(-1.0, -1.0));
}

TEST(CloudPara, SampleAtTheLimitHasNeighboursButIsNone) {
  const build::Line before = {build::sample(0, 0, 1), build::sample(9, 1, 0.0001)};
  const build::Line line = build::lineOfZ({0.0001, 1}, 4.0);
  EXPECT_EQ(stepsOf({line}), std::make_pair(-1.0, -1.0));
  EXPECT_EQ(stepsOf({before, line}), std::make_pair(1.0, 4.0));
}

}  // namespace
