#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include <scanline/calibration.h>
#include "builders.h"
#include "plain_calibration.h"

namespace {

using build::expectNear;
using build::lineOfZ;
using build::sample;
using build::surfaceScan;
using build::text;
using Values = std::vector<double>;

const Values kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};
const Values kHalfTurnAboutX = {1, 0, 0, 0, -1, 0, 0, 0, -1};
const Values kHalfTurnAboutY = {-1, 0, 0, 0, 1, 0, 0, 0, -1};

Values level(const SQO_planeCalibPara& record) {
  return {record.levelMatrix, record.levelMatrix + 9};
}

/// All values of a record.
Values all(const SQO_planeCalibPara& record) {
  Values values = level(record);
  values.push_back(record.planeHeight);
  values.insert(values.end(), record.invLevelMatrix, record.invLevelMatrix + 9);
  return values;
}

TEST(ComputeRTMatrix, NearlyParallelAndZeroDirections) {
  // Of length 1: at the thresholds exactly.
  const double sine = std::sqrt(1 - 0.9999999 * 0.9999999);
  const double nearOne = 1 - 5e-15;
  std::tuple<STesk3DPoint, STesk3DPoint, Values> cases[] = {
      {{0, 0, -5}, {0, 0, -1}, kIdentity},
      {{0, 0.00044, -1}, {0, 0, -1}, kIdentity},
      {{0, sine, -0.9999999}, {0, 0, -1}, {}},
      {{0.00044, 0, 1}, {0, 0, -1}, kHalfTurnAboutX},
      {{0, sine, 0.9999999}, {0, 0, -1}, {}},
      {{1, 1, 0}, {-1, -1, 0}, kHalfTurnAboutX},
      {{1, 0.9e-7, -0.9e-7}, {-1, 0, 0}, kHalfTurnAboutY},
      {{nearOne, 1e-7, 0}, {-1, 0, 0}, kHalfTurnAboutX},
      {{nearOne, 0, 1e-7}, {-1, 0, 0}, kHalfTurnAboutX},
      {{0.9e-7, 0, 0}, {0, 0, -1}, kIdentity},
      {{0, 1, 0}, {0, 0, 0.9e-7}, kIdentity},
      {{1e200, 0, 0}, {0, 0, -1}, kIdentity},  // The length overflows.
      {{1e-7, 0, 0}, {0, 1e-7, 0}, {0, -1, 0, 1, 0, 0, 0, 0, 1}}};
  for (auto& [from, to, turn] : cases) {
    const Values matrix = level(ju_computeRTMatrix(from, to));
    expectNear(turn.empty() ? matrix : turn, matrix, 1e-15);
    EXPECT_TRUE(!turn.empty() || (matrix != kIdentity && matrix != kHalfTurnAboutX));
  }
}

TEST(LineDataRT, EveryFormMatchesThePlainRule) {
  std::mt19937 random(1);
  const double grid[] = {0, 0.00009, 0.0001, 1, 2, std::nextafter(2, 3), 3, -1, NAN, 1e300};
  for (int round = 0; round < 300; ++round) {
    Values m(9);
    std::generate(m.begin(), m.end(), [&] { return static_cast<double>(random() % 3) - 1; });
    build::Line line;
    for (int i = 0; i < 20; ++i) {
      line.push_back(sample(grid[random() % 10], grid[random() % 10], grid[random() % 10], i));
    }
    const double cut = Values{-2, 0, 0.5, 2, 3}[round % 5];
    build::Line expected = line;
    build::Line form = line;
    plain::level(expected, m.data(), cut, true);
    HCamera_lineDataRT_vector(form, m.data(), cut);
    EXPECT_EQ(text(form), text(expected));
    plain::level(expected = line, m.data(), cut, false);
    lineDataRT_vector(form = line, m.data(), cut);
    EXPECT_EQ(text(form), text(expected));
    expected.back() = line.back();
    STesk3DLaserLine allButTheLast = {(form = line).data(), 19, 0};
    lineDataRT(&allButTheLast, m.data(), cut);
    EXPECT_EQ(text(form), text(expected));
  }
}

TEST(LineDataRTRgbd, ComputesInDoubleAndKeepsTheColour) {
  const Values yToZ = {1, 0, 0, 0, 0, -1, 0, 1, 0};
  Values stretch = kIdentity;
  stretch[8] = 1.0 + 1e-12;
  // The float nearest to 0.0001 lies below it.
  std::vector<STeskXYZRGBDPoint> points = {{1, 2, 100, 0x7FC00001U}, {5, 6, 0.0001F, 9U}};
  STeskXYZRGBDLaserLine line = {points.data(), 2};
  lineDataRT_RGBD(&line, yToZ.data(), 0.0);
  EXPECT_EQ(points[0].x, 1.0F);
  EXPECT_EQ(points[0].y, -100.0F);
  EXPECT_EQ(points[0].z, 2.0F);
  EXPECT_EQ(points[0].nRGB, 0x7FC00001U);
  EXPECT_EQ(points[1].y, 6.0F);
  line = {points.data(), 1};
  lineDataRT_RGBD(&line, stretch.data(), 2.0);
  EXPECT_EQ(points[0].z, 0.0F);
}

TEST(EulerZYX, RoundTrip) {
  // 1e-6 is the cosine of a pitch of 89.9999427 degrees.
  const SQO_EulerAngles cases[][2] = {{{10, 20, 30}, {10, 20, 30}},
                                      {{5, 100, 7}, {-175, 80, -173}},
                                      {{30, 89.99994, 50}, {30, 89.99994, 50}},
                                      {{30, 89.999945, 50}, {0, 89.999945, 20}},
                                      {{30, -90, 50}, {0, -90, 80}}};
  for (const auto& [angles, expected] : cases) {
    double matrix[3][3];
    eulerToRotationMatrixZYX(angles, matrix);
    const auto [roll, pitch, yaw] = rotationMatrixToEulerZYX(matrix);
    expectNear({roll, pitch, yaw}, {expected.roll, expected.pitch, expected.yaw}, 1e-6);
  }
}

SQO_planeCalibPara calibrate(build::Scan scan) {
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  return qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
}

TEST(GetPlaneCalibPara, MatchesThePlainSearch) {
  std::mt19937 engine(3);
  const auto random = [&](int end) { return static_cast<int>(engine() % end); };
  const int gaps[] = {1, 1, 1, 2, 3, 5, 6, 10, 11, 12, 13, 14, 40, 700};
  for (int round = 0; round < 3000; ++round) {
    build::Scan scan(1);
    double z = 100;
    for (int levels = 1 + random(12); levels > 0; --levels) {
      z += gaps[random(round % 2 == 0 ? 9 : 14)];
      for (int count = 1 + random(levels % 3 == 0 ? 40 : 6); count > 0; --count) {
        scan[0].push_back(sample(random(8), random(8), z + 0.25 * random(3)));
      }
    }
    std::shuffle(scan[0].begin(), scan[0].end(), engine);
    scan[0].insert(scan[0].begin() + 1, {sample(0, 0, NAN), sample(0, 0, 9e-5)});
    EXPECT_EQ(all(calibrate(scan)), all(plain::planeCalib(scan[0], false))) << round;
    EXPECT_EQ(all(qo_getPlaneCalibPara2(scan)), all(plain::planeCalib(scan[0], true))) << round;
  }
}

TEST(GetPlaneCalibPara, NonFiniteAndFarApartHeights) {
  const auto heightOf = [](double z1, double z2) {
    return calibrate({build::Line(5, sample(1, 2, z1)), build::Line(5, sample(3, 4, z2))})
        .planeHeight;
  };
  EXPECT_EQ(heightOf(100, 150), 150.0);
  EXPECT_EQ(heightOf(NAN, 150), -1.0);
  EXPECT_EQ(heightOf(HUGE_VAL, 150), -1.0);
  EXPECT_EQ(qo_getPlaneCalibPara(nullptr, -1).planeHeight, -1.0);
  EXPECT_EQ(heightOf(1, 2147483647), 0.0);
  EXPECT_THROW(heightOf(1, 2147483648), std::length_error);
  // In single precision the valley at bin 2^28 + 15 is rounded down to below the plane, that at bin
  // 2^28 + 17 up to above it.
  EXPECT_EQ(heightOf(1, 268435478), 268435488.0);
  EXPECT_EQ(heightOf(1, 268435480), 0.0);
}

TEST(RegionCalibration, LimitsAreInclusive) {
  // One sample determines no plane. The height is its z if it is selected, and 0.0 otherwise.
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
      EXPECT_EQ(level(record), kIdentity);
    }
  }
}

TEST(GetHolePlaneCalibPara, UsesOnlyLinesInOnePiece) {
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
}

TEST(GetGroundCalibPara, MarksTheSteepEndOfALine) {
  const std::vector<std::pair<build::Line, int>> cases = {
      {lineOfZ({40, 40, 40, 40, 34, 28, 22}), 4},
      {lineOfZ({9, 9, 9, 15, 21, 27}), 0},
      {lineOfZ({40, 34, 28, 28, 28, 28}), 0},
      {lineOfZ({40, 34, 28, 90, 84}), 0},
      {lineOfZ({40, 34, 28, 0.0001, 22, 0}), 4},
      {lineOfZ({40, 39, 38, 37}), 0},
      {lineOfZ({50, 40, 34, 28}), 3},
      {lineOfZ({40, 34, 28, 22}, 0, 0.0), 4},
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
  build::Scan scan =
      surfaceScan(20, 60, [](double x, double y) { return y < 30 ? 400 : 490 + 0.5 * x - 3 * y; });
  for (build::Line& line : scan) {
    std::for_each(line.begin(), line.end(), [=](auto& sample) { sample.pt3D.y -= 300.0; });
  }
  SQO_planeCalibPara record = qo_HCameraVScan_getGroundCalibPara(scan);
  EXPECT_NEAR(record.planeHeight, 410.0 / std::sqrt(10.25), 1e-3);
  lineDataRT_vector(scan[5], record.levelMatrix, 0.0);
  EXPECT_NEAR(scan[5][59].pt3D.y, record.planeHeight, 1e-3);
  scan.clear();
  record = qo_HCameraVScan_getGroundCalibPara(scan);
  EXPECT_EQ(record.planeHeight, 0.0);
  EXPECT_NEAR(record.levelMatrix[5], -1.0, 1e-15);
}

}  // namespace
