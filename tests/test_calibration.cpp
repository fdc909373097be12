#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/calibration.h>
#include "builders.h"

namespace {

using build::expectNear;
using build::lineOfZ;
using build::sample;
using build::surfaceScan;
using build::text;
using Matrix = std::array<double, 9>;

constexpr Matrix kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};
constexpr Matrix kHalfTurnAboutX = {1, 0, 0, 0, -1, 0, 0, 0, -1};
constexpr Matrix kHalfTurnAboutY = {-1, 0, 0, 0, 1, 0, 0, 0, -1};
constexpr Matrix kYToZ = {1, 0, 0, 0, 0, -1, 0, 1, 0};

Matrix toArray(const double (&m)[9]) {
  Matrix copy;
  std::copy(m, m + 9, copy.begin());
  return copy;
}

TEST(ComputeRTMatrix, NearlyParallelDirections) {
  EXPECT_EQ(toArray(adjustPlaneToXYPlane(0, 0, 0.9e-7).levelMatrix), kIdentity);
  EXPECT_EQ(toArray(adjustPlaneToXYPlane(0, 0.0004, -1).invLevelMatrix), kIdentity);
  EXPECT_EQ(toArray(adjustPlaneToXYPlane(0, 0, 1).levelMatrix), kHalfTurnAboutX);
  STesk3DPoint points[4] = {{1, 0, 0}, {-1, 0, 0}, {1, 1, 0}, {-1, -1, 0}};
  EXPECT_EQ(toArray(ju_computeRTMatrix(points[0], points[1]).levelMatrix), kHalfTurnAboutY);
  EXPECT_EQ(toArray(ju_computeRTMatrix(points[2], points[3]).invLevelMatrix), kHalfTurnAboutX);
}

TEST(ComputeRTMatrix, TurnsOneDirectionOntoTheOther) {
  STesk3DPoint from = {3, 4, 12};
  STesk3DPoint to = {-26, 0, 0};
  const SQO_planeCalibPara record = ju_computeRTMatrix(from, to);
  build::Line line = {sample(3, 4, 12)};
  lineDataRT_vector(line, record.levelMatrix, 0.0);
  EXPECT_NEAR(line[0].pt3D.x, -13.0, 1e-12);
  EXPECT_EQ(record.planeHeight, 0.0);
}

TEST(LineDataRT, CutsStrictlyAboveInZAndLeavesNoSamplesAlone) {
  const double above = std::nextafter(5, 6);
  const build::Line line = {sample(1, 5, 0.0001), sample(2, above, 3), sample(3, 9, 0.00009),
                            sample(4, NAN, 3)};
  build::Line vectorForm = line;
  lineDataRT_vector(vectorForm, kYToZ.data(), 5.0);
  EXPECT_EQ(text(vectorForm), text({sample(1, -0.0001, 5), sample(2, -3, 0), sample(3, 9, 0.00009),
                                    sample(NAN, NAN, NAN)}));
  build::Line pointerForm = line;
  STesk3DLaserLine allButTheLast = {pointerForm.data(), 3, 0};
  lineDataRT(&allButTheLast, kYToZ.data(), -5.0);
  EXPECT_EQ(text(pointerForm), text({sample(1, -0.0001, 5), sample(2, -3, above),
                                     sample(3, 9, 0.00009), sample(4, NAN, 3)}));
}

TEST(HCameraLineDataRT, CutsFromTheLimitOnInY) {
  const double below = std::nextafter(5, 4);
  const build::Line line = {sample(1, 5, 50), sample(2, below, 50), sample(3, 6, 0)};
  build::Line cut = line;
  HCamera_lineDataRT_vector(cut, kIdentity.data(), 5.0);
  EXPECT_EQ(text(cut), text({sample(1, 5, 0), sample(2, below, 50), sample(3, 6, 0)}));
  HCamera_lineDataRT_vector(cut = line, kIdentity.data(), 0.0);
  EXPECT_EQ(text(cut), text(line));
}

TEST(LineDataRTRgbd, WorksInDoubleAndKeepsTheColour) {
  Matrix stretch = kIdentity;
  stretch[8] = 1.0 + 1e-12;
  // The float next to 0.0001 lies below it.
  std::vector<STeskXYZRGBDPoint> points = {{1, 2, 100, 0x7FC00001U}, {5, 6, 0.0001F, 9U}};
  STeskXYZRGBDLaserLine line = {points.data(), 2};
  lineDataRT_RGBD(&line, kYToZ.data(), 0.0);
  EXPECT_EQ(points[0].y, -100.0F);
  EXPECT_EQ(points[0].z, 2.0F);
  EXPECT_EQ(points[0].nRGB, 0x7FC00001U);
  EXPECT_EQ(points[1].y, 6.0F);
  lineDataRT_RGBD(&line, stretch.data(), 2.0);
  EXPECT_EQ(points[0].z, 0.0F);
}

TEST(EulerZYX, RollsFirstAndConvertsBack) {
  double matrix[3][3];
  eulerToRotationMatrixZYX({90, 0, 60}, matrix);
  expectNear({matrix[0][2], matrix[1][2], matrix[2][1]}, {std::sqrt(0.75), -0.5, 1}, 1e-15);
  const SQO_EulerAngles cases[][2] = {{{10, 20, 30}, {10, 20, 30}},
                                      {{5, 100, 7}, {-175, 80, -173}},
                                      {{30, 90, 50}, {0, 90, 20}},
                                      {{30, -90, 50}, {0, -90, 80}}};
  for (const auto& [angles, expected] : cases) {
    eulerToRotationMatrixZYX(angles, matrix);
    const auto [roll, pitch, yaw] = rotationMatrixToEulerZYX(matrix);
    expectNear({roll, pitch, yaw}, {expected.roll, expected.pitch, expected.yaw}, 1e-6);
  }
}

TEST(CaculateLaserPlane, AppendsThePlaneOrAFlatOne) {
  std::vector<double> res = {42.0};
  teskCaculateLaserPlane({{0, 0, 4}, {1, 0, 6}, {0, 1, 7}, {5, 3, 23}}, res);
  teskCaculateLaserPlane({{0, 1, 1}, {0, 2, 5}, {0, 3, 1}, {0, 4, 9}}, res);
  expectNear(res, {42, 2, 3, -1, 4, 0, 0, -1, 0}, 1e-12);
}

SQO_planeCalibPara calibrate(build::Scan scan) {
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  return qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
}

/// `count` samples of one height, spread evenly over the corners of a square.
build::Line level(double z, int count) {
  build::Line line;
  for (int i = 0; i < count; ++i) {
    line.push_back(sample(i % 2 == 0 ? -10 : 10, i % 4 < 2 ? -10 : 10, z));
  }
  return line;
}

TEST(GetPlaneCalibPara, ChoosesAndBoundsThePeak) {
  // The numbers of samples are by bin.
  const std::tuple<const char*, std::vector<std::pair<int, int>>, double> cases[] = {
      {"no scan", {}, -1},
      {"one bin", {{0, 1000}}, -1},
      {"three bins, all in the window", {{0, 10}, {1, 100}, {2, 10}}, 100},
      {"window includes its lower end", {{0, 20}, {1, 5}, {2, 100}, {3, 5}, {4, 20}}, 101},
      {"a tenth of the samples is too weak", {{0, 4}, {20, 100}, {60, 896}}, 160},
      {"no strong peak", {{0, 900}, {30, 100}}, -1},
      {"valley of half", {{0, 4}, {20, 100}, {31, 98}, {42, 196}, {90, 604}}, 120},
      {"valley below half", {{0, 4}, {20, 100}, {31, 97}, {42, 196}, {90, 604}}, 142},
      {"half is an integer", {{0, 4}, {20, 100}, {31, 98}, {42, 197}, {90, 604}}, 120},
      {"level profile of many bins", {{0, 100}, {11, 100}, {22, 100}}, 111},
  };
  for (const auto& [situation, counts, planeHeight] : cases) {
    build::Scan scan;
    for (const auto& [bin, count] : counts) {
      scan.push_back(level(100.0 + bin, count));
    }
    EXPECT_NEAR(calibrate(scan).planeHeight, planeHeight, 0.5) << situation;
  }
  EXPECT_EQ(qo_getPlaneCalibPara(nullptr, -1).planeHeight, -1.0);
}

TEST(GetPlaneCalibPara, WindowIncludesItsUpperEnd) {
  for (const double high : {103.0, 103.25}) {
    build::Scan scan = {level(100, 20), level(101, 4), level(102, 100), level(104, 20)};
    scan.push_back(build::Line(5, sample(10, 0, high)));
    EXPECT_EQ(calibrate(scan).levelMatrix[2] != 0.0, high == 103.0);
  }
}

TEST(GetPlaneCalibPara, HeightsWithoutAHistogram) {
  for (const double first : std::vector<double>{NAN, HUGE_VAL}) {
    build::Scan scan = {level(100, 500), level(150, 500)};
    scan[1].push_back(sample(0, 0, NAN));
    EXPECT_EQ(calibrate(scan).planeHeight, 150.0) << "passed over later";
    scan[0][0].pt3D.z = first;
    const SQO_planeCalibPara record = calibrate(scan);
    EXPECT_EQ(record.planeHeight, -1.0);
    EXPECT_EQ(toArray(record.levelMatrix), kIdentity);
  }
  EXPECT_THROW(calibrate({level(1, 5), level(1e300, 5)}), std::length_error) << "too far apart";
}

TEST(GetPlaneCalibPara, FormsLevelATiltedPlaneToTheLowestOrTheMean) {
  build::Scan scan = surfaceScan(60, 60, [](double x, double y) {
    return 200 + 0.3 * x - 0.2 * y + (static_cast<int>(x + y) % 2 == 0 ? 0.4 : -0.4);
  });
  const SQO_planeCalibPara lowest = calibrate(scan);
  const SQO_planeCalibPara mean = qo_getPlaneCalibPara2(scan);
  EXPECT_EQ(toArray(mean.levelMatrix), toArray(lowest.levelMatrix));
  EXPECT_NEAR(mean.planeHeight, 200 / std::sqrt(1.13), 5e-3);
  EXPECT_NEAR(mean.planeHeight - lowest.planeHeight, 0.4 / std::sqrt(1.13), 5e-3);
  for (build::Line& line : scan) {
    const double x = line[20].pt3D.x;
    lineDataRT_vector(line, mean.levelMatrix, 0.0);
    EXPECT_NEAR(std::abs(line[20].pt3D.z - mean.planeHeight), 0.4 / std::sqrt(1.13), 5e-3);
    lineDataRT_vector(line, mean.invLevelMatrix, 0.0);
    EXPECT_NEAR(line[20].pt3D.x, x, 1e-9);
  }
  build::Scan empty;
  EXPECT_EQ(qo_getPlaneCalibPara2(empty).planeHeight, -1.0);
}

TEST(RegionCalibration, LimitsBelongToTheRegion) {
  // One sample determines no plane: its z is the height if it is selected, which 0.0 denies.
  const STesk3DRangeD narrow = {{0, 10}, {0, 20}, {5, 15}};
  const STesk3DRangeD shallow = {{0, 10}, {0, 20}, {-1, 30}};
  const std::vector<std::tuple<STesk3DPoint, STesk3DRangeD, bool>> cases = {
      {{0, 0, 5}, narrow, true},      {{10, 15, 5}, narrow, true},
      {{5, 5, 1e6}, narrow, true},    {{5, 15.5, 9}, narrow, false},
      {{5, 20, 9}, shallow, true},    {{5, 20.5, 9}, shallow, false},
      {{-0.5, 5, 9}, narrow, false},  {{10.5, 5, 9}, narrow, false},
      {{5, -0.5, 9}, narrow, false},  {{5, 5, 4.5}, narrow, false},
      {{5, NAN, 9}, narrow, false},   {{5, 5, NAN}, narrow, false},
      {{5, 5, 9e-5}, shallow, false}, {{5, 5, 0.0001}, shallow, true}};
  for (const auto& [point, roi, isSelected] : cases) {
    build::Scan scan = {{sample(point.x, point.y, point.z)}};
    std::vector<STesk3DRangeD> rois = {roi};
    const double height = isSelected ? static_cast<double>(static_cast<float>(point.z)) : 0.0;
    for (const SQO_planeCalibPara& record :
         {qo_getPlaneCalibPara2_ROI(scan, roi),
          qo_getPlaneCalibPara_ROIs(build::pointerForm(scan).data(), 1, rois)}) {
      EXPECT_EQ(record.planeHeight, height) << point.x << " " << point.y << " " << point.z;
      EXPECT_EQ(toArray(record.invLevelMatrix), kIdentity);
    }
  }
}

TEST(RegionCalibration, SamplesOfOverlappingRegionsCountOnce) {
  build::Scan scan = surfaceScan(
      30, 30, [](double x, double y) { return 50 + 0.1 * x + 0.01 * y * y + 0.02 * x * y; });
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  const SQO_planeCalibPara whole = qo_getPlaneCalibPara2_ROI(scan, {{0, 20}, {0, 9}, {0, 99}});
  std::vector<STesk3DRangeD> rois = {{{8, 20}, {0, 9}, {0, 99}}, {{0, 15}, {0, 9}, {0, 99}}};
  const SQO_planeCalibPara united = qo_getPlaneCalibPara_ROIs(lines.data(), 30, rois);
  EXPECT_EQ(toArray(united.levelMatrix), toArray(whole.levelMatrix));
  EXPECT_EQ(united.planeHeight, whole.planeHeight);
  rois.clear();
  EXPECT_EQ(qo_getPlaneCalibPara_ROIs(lines.data(), 30, rois).planeHeight, 0.0);
}

TEST(GetHolePlaneCalibPara, TakesLinesInOnePieceAlone) {
  const std::vector<std::pair<build::Line, double>> cases = {
      {lineOfZ({5, 5.75, 5}, 0, 0.5), 5.25},
      {lineOfZ({5, 6, 5}, 0, 0.5), 0},
      {lineOfZ({5, 5, 5}), 0},
      {lineOfZ({5, 0, 5}, 0, 0.25), 5},
      {lineOfZ({5, 0, 5}, 0, 0.5), 0},
      {lineOfZ({0, 0, 0.0001}), 0},
      {lineOfZ({0.0001, 5}), (5.0 + static_cast<double>(0.0001F)) / 2}};
  for (const auto& [line, height] : cases) {
    build::Scan scan = {line};
    scan[0][0].nPointIdx = 7;
    EXPECT_EQ(qo_getHolePlaneCalibPara(scan).planeHeight, height) << text(line);
    EXPECT_EQ(scan[0][0].nPointIdx, 0);
  }
  build::Scan tilted = {lineOfZ({5, 5.75, 5}, 0, 0.5), lineOfZ({7, 7.75, 7}, 1, 0.5)};
  EXPECT_NEAR(qo_getHolePlaneCalibPara(tilted).planeHeight, 5.25 / std::sqrt(5.0), 1e-3);
}

TEST(GetGroundCalibPara, MarksTheSteepFallThatALineEndsOn) {
  const std::vector<std::pair<build::Line, int>> cases = {
      {lineOfZ({40, 40, 40, 40, 34, 28, 22}), 4},
      {lineOfZ({9, 9, 9, 15, 21, 27}), 0},
      {lineOfZ({40, 34, 28, 28, 28, 28}), 0},
      {lineOfZ({40, 34, 28, 90, 84}), 0},
      {lineOfZ({40, 34, 28, 0.0001, 22, 0}), 4},
      {lineOfZ({40, 39, 38, 37}), 0},
      {lineOfZ({50, 40, 34, 28}), 3},
      {lineOfZ({0, 0, 0}), 0}};
  for (const auto& [line, groundSamples] : cases) {
    build::Scan scan = {line};
    qo_HCameraVScan_getGroundCalibPara(scan);
    const std::vector<int> marks = build::stampsOf(scan[0]);
    EXPECT_EQ(std::count(marks.begin(), marks.end(), 1), groundSamples)
        << line[0].pt3D.z << " " << line[1].pt3D.z;
  }
}

TEST(GetGroundCalibPara, BringsTheGroundToAPositiveY) {
  for (const double yOffset : {0.0, -300.0}) {
    build::Scan scan = surfaceScan(
        20, 60, [](double x, double y) { return y < 30 ? 400 : 490 + 0.5 * x - 3 * y; });
    for (build::Line& line : scan) {
      std::for_each(line.begin(), line.end(), [=](auto& sample) { sample.pt3D.y += yOffset; });
    }
    const SQO_planeCalibPara record = qo_HCameraVScan_getGroundCalibPara(scan);
    EXPECT_NEAR(record.planeHeight, std::abs(490 + 3 * yOffset) / std::sqrt(10.25), 1e-3);
    EXPECT_EQ(scan[5][20].nPointIdx, 0);
    EXPECT_EQ(scan[5][59].nPointIdx, 1);
    lineDataRT_vector(scan[5], record.levelMatrix, 0.0);
    EXPECT_NEAR(scan[5][59].pt3D.y, record.planeHeight, 1e-3);
  }
  build::Scan empty;
  const SQO_planeCalibPara record = qo_HCameraVScan_getGroundCalibPara(empty);
  EXPECT_EQ(record.planeHeight, 0.0);
  EXPECT_NEAR(record.levelMatrix[5], -1.0, 1e-15);
}

}  // namespace
