#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include <scanline/calibration.h>
#include "base/failure.h"
#include "base/noise.h"
#include "draw/overlay_picture.h"
#include "input/point_pairs.h"
#include "roads/registration.h"

namespace program {
namespace {

constexpr SQO_EulerAngles kAngles = {3.0, -4.0, 25.0};
const cv::Point3d kShift(30.0, -20.0, 12.0);

cv::Matx33d rotation() {
  double r[3][3];
  eulerToRotationMatrixZYX(kAngles, r);
  return cv::Matx33d(&r[0][0]);
}

/// Pairs whose points of B are moved into A's frame by the rotation and the shift.
std::vector<PointPair> pairsOf(int count, double noise) {
  Noise random(1);
  std::vector<PointPair> pairs;
  for (int i = 0; i < count; ++i) {
    const cv::Point3d b(400.0 * random.unit(), 300.0 * random.unit(), 600.0 + 60.0 * random.unit());
    cv::Point3d a = rotation() * b + kShift;
    a.x += noise * random.bell();
    a.y += noise * random.bell();
    a.z += noise * random.bell();
    pairs.push_back({std::to_string(i + 1), a, b});
  }
  return pairs;
}

void expectMotion(const Motion& motion, double tolerance) {
  const SQO_EulerAngles angles = motion.angles();
  EXPECT_NEAR(angles.roll, kAngles.roll, tolerance);
  EXPECT_NEAR(angles.pitch, kAngles.pitch, tolerance);
  EXPECT_NEAR(angles.yaw, kAngles.yaw, tolerance);
  const cv::Point3d b(200.0, 150.0, 630.0);
  EXPECT_LT(cv::norm(motion.apply(b) - (rotation() * b + kShift)), 10.0 * tolerance);
}

int countOutliers(const Registration& found) {
  int count = 0;
  for (const Residual& residual : found.residuals) {
    count += residual.isOutlier ? 1 : 0;
  }
  return count;
}

TEST(Register, FindsTheMotionThatTookBToA) {
  for (const int count : {3, 4, 12, 40}) {
    SCOPED_TRACE(count);
    const std::vector<PointPair> pairs = pairsOf(count, 0.0);
    const Registration found = registerPairs(pairs, 0.01, true);
    expectMotion(found.motion, 1e-6);
    EXPECT_LT(found.rms, 1e-6);
    EXPECT_EQ(countOutliers(found), 0);
    EXPECT_NEAR(found.motion.degrees(), 25.59, 0.01);
  }
}

TEST(Register, FlagsWrongPairsAndFitsWithoutThemWhenAsked) {
  for (const int count : {8, 40}) {
    SCOPED_TRACE(count);
    std::vector<PointPair> pairs = pairsOf(count, 0.02);
    pairs[1].a.x += 9.0;
    pairs[4].b.z -= 30.0;
    const double limit = 3.0 * consensusSpread(pairs);
    const Registration kept = registerPairs(pairs, limit, true);
    EXPECT_GT(kept.rms, 1.0);
    EXPECT_EQ(kept.fitted, pairs.size());
    const Registration dropped = registerPairs(pairs, limit, false);
    expectMotion(dropped.motion, 0.05);
    EXPECT_LT(dropped.rms, 0.06);
    EXPECT_EQ(dropped.fitted, pairs.size() - 2);
    for (const Registration& found : {kept, dropped}) {
      EXPECT_EQ(countOutliers(found), 2);
      EXPECT_TRUE(found.residuals[1].isOutlier);
      EXPECT_TRUE(found.residuals[4].isOutlier);
    }
  }
}

TEST(Register, NoPairOfFourIsCalledWrong) {
  std::vector<PointPair> pairs = pairsOf(4, 0.0);
  pairs[2].a.x += 50.0;
  EXPECT_EQ(consensusSpread(pairs), 0.0);
  EXPECT_EQ(countOutliers(registerPairs(pairs, 0.01, true)), 0);
}

TEST(Register, StatesWhyPairsDetermineNoMotion) {
  std::vector<PointPair> pairs = pairsOf(3, 0.0);
  EXPECT_EQ(whyNoMotion(pairs), "");
  EXPECT_NE(whyNoMotion({pairs[0], pairs[1]}).find("2 pairs"), std::string::npos);
  EXPECT_NE(whyNoMotion({}).find("0 pairs"), std::string::npos);
  pairs[2].b = 0.25 * pairs[0].b + 0.75 * pairs[1].b;
  EXPECT_NE(whyNoMotion(pairs).find("points of B lie on a line"), std::string::npos);
  pairs[0].a = pairs[1].a = pairs[2].a;
  EXPECT_NE(whyNoMotion(pairs).find("points of A"), std::string::npos);
}

TEST(Register, RecognisesAMirrorImageAndAnotherScale) {
  std::vector<PointPair> pairs = pairsOf(8, 0.01);
  EXPECT_FALSE(isMirrored(pairs, registerPairs(pairs, 0.1, true), 0.1));
  EXPECT_NEAR(scaleBetween(pairs), 1.0, 0.001);
  for (PointPair& pair : pairs) {
    pair.b *= 0.1;
    pair.b.y = -pair.b.y;
  }
  EXPECT_NEAR(scaleBetween(pairs), 10.0, 0.01);
  for (PointPair& pair : pairs) {
    pair.b *= 10.0;
  }
  EXPECT_TRUE(isMirrored(pairs, registerPairs(pairs, 0.1, true), 0.1));
}

/// A folder for the files of one test.
class PointFiles : public ::testing::Test {
 protected:
  PointFiles() {
    std::filesystem::create_directories(folder_);
  }
  ~PointFiles() override {
    std::filesystem::remove_all(folder_);
  }

  std::string file(const std::string& name, const std::string& content) {
    const std::string path = (folder_ / name).string();
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }

  std::string failureOf(const std::string& content) {
    const std::string path = file("bad.csv", content);
    try {
      readPairs(path);
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.code(), ExitCode::badInput);
      return failure.what();
    }
    return "none";
  }

 private:
  std::filesystem::path folder_ = std::filesystem::path(::testing::TempDir()) /
                                  (std::string("scanline_points_") +
                                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(PointFiles, HoldPairsWithAnyUsualSeparator) {
  for (const char* content :
       {"x1,y1,z1,x2,y2,z2\r\n1,2,3,4,5,6.5\r\n\r\n-1,0,1e2,+4,5,6\r\n",
        "1;2;3;4;5;6.5\n-1; 0;100;4;5;6", "  1 2\t3  4 5 6.5\n-1 0 100 4 5 6 \n",
        "\xEF\xBB\xBFx1, y1, z1, x2, y2, z2\n1,2,3,4,5,6.5\n-1,0,100,4,5,6\n"}) {
    SCOPED_TRACE(content);
    const std::vector<PointPair> pairs = readPairs(file("good.csv", content));
    ASSERT_EQ(pairs.size(), 2U);
    EXPECT_EQ(pairs[0].a, cv::Point3d(1.0, 2.0, 3.0));
    EXPECT_EQ(pairs[0].b, cv::Point3d(4.0, 5.0, 6.5));
    EXPECT_EQ(pairs[1].a, cv::Point3d(-1.0, 0.0, 100.0));
    EXPECT_EQ(pairs[1].id, "2");
  }
}

TEST_F(PointFiles, NameTheLineThatIsWrong) {
  EXPECT_NE(failureOf("1,2,3,4,5,6\n1,2,3,4,5\n").find(":2: has 5 columns"), std::string::npos);
  EXPECT_NE(failureOf("1,2,3,4,5,nan\n").find(":1: 'nan' is not a number"), std::string::npos);
  EXPECT_NE(failureOf("1,2,3,4,,6\n").find(":1: '' is not a number"), std::string::npos);
  EXPECT_NE(failureOf("x2,y2,z2,x1,y1,z1\n").find(":1: its header must be"), std::string::npos);
  EXPECT_NE(failureOf("1,2,3,4,5,6\nx1,y1,z1,x2,y2,z2\n").find(":2: 'x1'"), std::string::npos);
}

TEST_F(PointFiles, PairMarksByTheirIds) {
  Messages messages(true);
  const std::string a = file("a.csv", "id,x,y,z\nleft,1,2,3\n7,4,5,6\nonly a,7,8,9\n");
  const std::string b = file("b.csv", "7,40,50,60\nleft,10,20,30\nonly b,0,0,1\n");
  const std::vector<PointPair> pairs = readMarks(a, b, messages);
  ASSERT_EQ(pairs.size(), 2U);
  EXPECT_EQ(pairs[0].id, "left");
  EXPECT_EQ(pairs[0].b, cv::Point3d(10.0, 20.0, 30.0));
  EXPECT_EQ(pairs[1].b, cv::Point3d(40.0, 50.0, 60.0));
  ASSERT_EQ(messages.warnings().size(), 1U);
  EXPECT_NE(messages.warnings()[0].text.find("only b, only a"), std::string::npos);
  EXPECT_THROW(readMarks(file("twice.csv", "m,1,2,3\nm,1,2,3\n"), b, messages), Failure);
}

/// A scan of the plane z = `z` that begins at `x`, 20 lines of 20 samples 1 apart.
Scan planeAt(double x, double z) {
  Scan scan(20, Line(20));
  for (int l = 0; l < 20; ++l) {
    for (int i = 0; i < 20; ++i) {
      scan[static_cast<std::size_t>(l)][static_cast<std::size_t>(i)] = {i, {x + l, 1.0 * i, z}};
    }
  }
  return scan;
}

TEST(Overlay, MeasuresTheOverlapAndTheDifference) {
  const Scan a = planeAt(0.0, 100.0);
  const Scan b = planeAt(10.0, 100.5);
  const Extent extentA = extentOf(a);
  const Extent extentB = extentOf(b);
  const Agreement agreement = agreementOf(overlaid({a, extentA}, {b, extentB}));
  EXPECT_NEAR(agreement.overlap, 0.5, 0.05);
  EXPECT_NEAR(agreement.median, 0.5, 1e-4);
  EXPECT_NEAR(agreement.mostOfThem, 0.5, 1e-4);
  const Scan beside = planeAt(100.0, 100.0);
  const Extent extentBeside = extentOf(beside);
  const Agreement none = agreementOf(overlaid({a, extentA}, {beside, extentBeside}));
  EXPECT_EQ(none.overlap, 0.0);
  EXPECT_TRUE(std::isnan(none.median));
}

}  // namespace
}  // namespace program
