#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <scanline/scanline.h>
#include "builders.h"

namespace {

using build::sample;

std::string text(const STeskRangeD& x, const STeskRangeD& y, const STeskRangeD& z) {
  std::ostringstream out;
  out << x.min << ".." << x.max << ' ' << y.min << ".." << y.max << ' ' << z.min << ".." << z.max;
  return out.str();
}

TEST(Bounds, AgreeInAllFourFunctions) {
  const std::pair<build::Scan, const char*> cases[] = {
      {{{sample(1, 2, 0.0), sample(1, 3, -5.0), sample(1, 4, 0.000099)}, {}}, "0..-1 0..-1 0..-1"},
      {{{sample(7, -2, 0.0001)}}, "7..7 -2..-2 0.0001..0.0001"},
      {{{sample(30, 5, 9), sample(0, 0, 4)}, {sample(-1, 8, 0)}}, "0..30 0..5 4..9"},
      {{{sample(-0.0, 0.0, 1), sample(0.0, -0.0, 1)}}, "-0..-0 0..0 1..1"},
      // NaN stays if it is the first value, and has no effect later.
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
  build::Scan lone = {{sample(7, -2, 5)}};
  const SJU_pointCloudPara para = ju_getPointCloudPara(lone);
  EXPECT_TRUE(para.ptStep == -1.0 && para.scanLineStep == -1.0) << "no sample has a neighbour";
}

TEST(PointCloudPara, StepsAreMeanDistancesFromMeasuredNeighbours) {
  build::Scan scan = {
      {sample(0, 0, 5), sample(0, 2, 5), sample(0, 9, 0), sample(0, 10, 0.0001), sample(0, 40, 5)},
      {sample(3, 0, 5), sample(-1, 5, 5), sample(80, 1, 5), sample(70, 2, 5)}};
  const SJU_pointCloudPara para = ju_getPointCloudPara(scan);
  EXPECT_EQ(para.ptStep, (2.0 + 5.0 + 4.0 + 1.0) / 4);
  EXPECT_EQ(para.scanLineStep, (3.0 + 1.0) / 2);
}

}  // namespace
