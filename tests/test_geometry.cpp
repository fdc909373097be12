#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include <scanline/geometry.h>
#include "builders.h"

namespace {

using Values = std::vector<double>;
using Points = std::vector<STesk3DPoint>;

Values valuesOf(const STesk3DPoint& point) {
  return {point.x, point.y, point.z};
}

TEST(LineFormulas, CrossingsDistancesAndFeet) {
  // x + 2 y - 8 = 0 and 3 x - y - 3 = 0 meet in (2, 3).
  EXPECT_EQ(valuesOf(computeLineCrossPt_abs(1, 2, -8, 3, -1, -3)), Values({2, 3, 0}));
  EXPECT_EQ(valuesOf(computeLineCrossPt_abs(1, 2, 3, 2, 4, 5)), Values({-HUGE_VAL, -HUGE_VAL, 0}));
  EXPECT_EQ(compute2DLen({1, 2, 0}, {4, -2, 99}), 5.0);
  EXPECT_EQ(computePtDistToLine(1, 1, 3, 4, -17), 2.0);
  EXPECT_EQ(computePtDistToLine(1, 1, 0, 0, 3), HUGE_VAL);
  // The foot of (3, 1) on y = 2 x + 5, in both forms.
  const auto foot = ny_getFootPoint(3, 1, 2, 5);
  const auto footAbc = ny_getFootPoint_abc(3, 1, 4, -2, 10);
  EXPECT_EQ(Values({foot.x, foot.y, footAbc.x, footAbc.y}), Values({-1, 3, -1, 3}));
}

TEST(LineFormulas, Angles) {
  const std::vector<Values> cases = {{350, 10, 20}, {-90, 90, 180}, {0, 181, 179}, {400, 0, -40}};
  for (const Values& v : cases) {
    EXPECT_EQ(computeAngleDiff(v[0], v[1]), v[2]) << v[0] << " and " << v[1];
    EXPECT_EQ(computeAngleDiff(v[1], v[0]), v[2]) << v[0] << " and " << v[1];
  }
  EXPECT_EQ(getLineAngle(0, 5, NAN), 0.0);
  EXPECT_EQ(getLineAngle(0, 0, 1), 0.0);
  EXPECT_EQ(getLineAngle(1, 0, 1), 90.0);
  EXPECT_DOUBLE_EQ(getLineAngle(1, -1, 0), 135.0);
  EXPECT_DOUBLE_EQ(getLineAngle(1, 1, 0), 45.0);
  EXPECT_EQ(getLineAngle(-1e30, 1e-30, 0), 180.0);  // reached by rounding only
}

TEST(LineFormulas, MakingLines) {
  Values line(3);
  compute2ptLine({1, 3, NAN}, {4, 8, NAN}, &line[0], &line[1], &line[2]);
  EXPECT_EQ(line, Values({5, -3, 4}));
  compute2ptLine_2(5, 7, 5, 7, &line[0], &line[1], &line[2]);
  EXPECT_EQ(line, Values({0, 0, 0}));
  rotateLine45Deg(2, 1, NAN, 10, 20, &line[0], &line[1], &line[2]);
  EXPECT_EQ(line, Values({3, -1, -10}));
}

TEST(DrawLine, AppendsByTheErrorRule) {
  const auto drawn = [](int x0, int y0, int x1, int y1) {
    std::vector<STesk2DPoint> points = {{7, 7}};
    drawLine(x0, y0, x1, y1, points);
    return build::text(points);
  };
  EXPECT_EQ(drawn(0, 0, 4, 2), "7,7 0,0 1,0 2,1 3,1 4,2 ");
  EXPECT_EQ(drawn(1, 3, 0, -1), "7,7 1,3 1,2 1,1 0,0 0,-1 ");
  EXPECT_EQ(drawn(INT_MAX, INT_MAX - 1, INT_MAX, INT_MAX),
            "7,7 2147483647,2147483646 2147483647,2147483647 ");
}

TEST(LineFitting, RegressesYOnX) {
  Points points = {{0, 1, NAN}, {1, 2, 0}, {2, 6, 0}};
  Values line(2);
  lineFitting(points, &line[0], &line[1]);
  EXPECT_EQ(line, Values({2.5, 0.5}));
}

TEST(LineFittingAbc, EndPointsChooseTheDirection) {
  const auto fit = [](Points points) {
    Values line = {7, 7, 7};
    lineFitting_abc(points, &line[0], &line[1], &line[2]);
    return line;
  };
  EXPECT_EQ(fit({{1, 1, 0}}), Values({7, 7, 7}));
  EXPECT_EQ(fit({{0, 1, 0}, {2, 5, 0}, {4, 9, 0}}), Values({1, -0.5, 0.5}));
  EXPECT_EQ(fit({{2, 5, 0}, {2, -5, 0}}), Values({1, 0, -2}));
  EXPECT_EQ(fit({{0, 1, 0}, {3, 4, 0}}), Values({1, -1, 1}));             // as far in y as in x
  EXPECT_EQ(fit({{0, 0, 0}, {1, 4, 0}, {0, 0, 0}}), Values({4, -1, 0}));  // equal ends
}

TEST(FitCircle, ErrorCountsPointsOutsideOnly) {
  constexpr double kNoFit = std::numeric_limits<double>::max();
  STesk3DPoint center = {1, 2, 42};
  double radius = 4;
  EXPECT_EQ(fitCircleByLeastSquare({{0, 0, 0}, {1, 0, 0}}, center, radius), kNoFit);
  EXPECT_EQ(valuesOf(center), Values({1, 2, 42}));
  EXPECT_EQ(radius, 4);
  EXPECT_NEAR(fitCircleByLeastSquare({{8, -2, 1}, {3, 3, 2}, {-2, -2, 3}}, center, radius), 0,
              1e-9);
  EXPECT_EQ(valuesOf(center), Values({3, -2, 42}));
  EXPECT_DOUBLE_EQ(radius, 5);
  const Points cross = {{2, 0, 0}, {-2, 0, 0}, {0, 1, 0}, {0, -1, 0}};
  EXPECT_DOUBLE_EQ(fitCircleByLeastSquare(cross, center, radius), 1.5);
  EXPECT_DOUBLE_EQ(radius, std::sqrt(2.5));
  EXPECT_EQ(fitCircleByLeastSquare({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}}, center, radius), 0.0);
  EXPECT_FALSE(std::isfinite(center.x) || std::isfinite(radius));
}

struct Parabola {
  double a = 7, b = 7, c = 7, mse = 7, maxError = 7;
  bool ok;
  explicit Parabola(const std::vector<cv::Point_<double>>& points)
      : ok(leastSquareParabolaFitEigen(points, a, b, c, mse, maxError)) {}
};

TEST(FitParabola, FindsCoefficientsAndErrors) {
  // x^2 - 2 x + 4 with errors along the third difference, which no parabola takes up.
  const Parabola fit({{-3, 18}, {-1, 10}, {1, 0}, {3, 8}});
  EXPECT_TRUE(fit.ok);
  build::expectNear({fit.a, fit.b, fit.c, fit.mse, fit.maxError}, {1, -2, 4, 5, 3}, 1e-12);
  const Parabola two({{0, 0}, {1, 1}});
  EXPECT_FALSE(two.ok);
  EXPECT_EQ(Values({two.a, two.b, two.c, two.mse, two.maxError}), Values(5, 7.0));
  for (const double x : Values{NAN, HUGE_VAL, 1e200}) {
    const Parabola wild({{0, 0}, {1, 1}, {x, 2}, {3, 3}});
    EXPECT_TRUE(wild.ok && std::isnan(wild.a) && std::isnan(wild.mse) && wild.maxError == 0.0);
  }
}

struct Axis {
  STesk3DPoint center = {7, 7, 7};
  STesk3DPoint direction = {7, 7, 7};
  bool ok;
  std::string words;
  explicit Axis(const Points& points) {
    testing::internal::CaptureStderr();
    ok = fitLine3DLeastSquares(points, center, direction);
    words = testing::internal::GetCapturedStderr();
  }
};

TEST(FitLine3D, FindsThePrincipalAxis) {
  // Along (2, -1, 2) through (1, 1, 5), with a small spread across.
  const Axis axis({{7, -2, 11}, {-5, 4, -1}, {1.1, 1.2, 5}, {0.9, 0.8, 5}});
  EXPECT_TRUE(axis.ok && axis.words.empty());
  EXPECT_EQ(valuesOf(axis.center), Values({1, 1, 5}));
  const STesk3DPoint& d = axis.direction;
  EXPECT_NEAR(std::abs(2 * d.x - d.y + 2 * d.z), 3, 1e-9);
  EXPECT_TRUE(Axis({{1, 2, 3}, {1, 2, 3}}).ok);
}

TEST(FitLine3D, FailuresSayWhyInGbk) {
  const Axis single({{1, 2, 3}});
  EXPECT_FALSE(single.ok);
  EXPECT_EQ(valuesOf(single.center), Values({7, 7, 7}));
  EXPECT_EQ(single.words,
            "Error: \265\343\274\257\312\375\301\277\261\330\320\353\264\363\323\332"
            "\265\310\323\332\062\243\241\n");
  const Axis wild({{1, NAN, 3}, {1, 2, 5}});
  EXPECT_FALSE(wild.ok);
  EXPECT_EQ(wild.center.z, 4);
  EXPECT_EQ(wild.direction.z, 7);
  EXPECT_EQ(wild.words,
            "Error: \314\330\325\367\326\265\267\326\275\342\312\247\260\334\243\241\n");
}

TEST(MeanZ, TakesPointsAboveTheLimitOnly) {
  const auto meanOf = [](Points points) { return computeMeanZ(points); };
  EXPECT_EQ(meanOf({{0, 0, 0.0001}, {0, 0, -3}, {0, 0, NAN}}), 0.0);
  EXPECT_EQ(meanOf({{0, 0, 2}, {0, 0, 0.0001}, {0, 0, 3}}), 2.5);
}

using CvPoint = cv::Point3_<double>;
using CvPoints = std::vector<CvPoint>;

const CvPoints kPoints = {{0, 0, 0}, {4, 0, 1}, {0, 3, -2}, {1, 1, 5}, {-2, 7, 1}};
const cv::Matx33d kQuarterTurn = {0, -1, 0, 1, 0, 0, 0, 0, 1};
const cv::Matx33d kOblique = {0.36, 0.48, -0.8, -0.8, 0.6, 0, 0.48, 0.64, 0.6};
const cv::Matx33d kMirror = {1, 0, 0, 0, 1, 0, 0, 0, -1};

const cv::Mat kEye = cv::Mat::eye(3, 3, CV_64F);

struct Transform {
  Transform(const CvPoints& from, const CvPoints& to) {
    caculateRT(from, to, R, T, center1, center2);
  }
  cv::Mat R, T;
  CvPoint center1, center2;
};

TEST(RigidTransform, MapsOntoTheOtherList) {
  for (const cv::Matx33d& turn : {kQuarterTurn, kOblique, kMirror}) {
    const CvPoint shift(5, -6, 70);
    CvPoints to;
    for (const CvPoint& p : kPoints) {
      to.push_back(turn * p + shift);
    }
    to.emplace_back(99, 99, 99);  // One without a partner.
    const Transform t(kPoints, to);
    EXPECT_LT(cv::norm(t.R * t.R.t(), kEye), 1e-14);
    EXPECT_NEAR(cv::determinant(t.R), 1.0, 1e-14);
    if (turn == kMirror) {
      continue;  // The rotation is a proper one, and fits no better than it can.
    }
    EXPECT_LT(cv::norm(t.R, cv::Mat(turn)), 1e-14);
    EXPECT_LT(cv::norm(t.T, cv::Mat(shift)), 1e-13);

    cv::Mat part = cv::Mat(5, 7, CV_64F)(cv::Rect(2, 1, 3, 3));
    t.R.copyTo(part);
    CvPoint out = kPoints[1];
    pointRT(part, cv::Mat(), t.center1, t.center2, out, out);
    EXPECT_LT(cv::norm(out - to[1]), 1e-13);
  }
}

TEST(RigidTransform, TakesWhateverComes) {
  Transform none({}, kPoints);
  EXPECT_EQ(cv::norm(none.R, kEye), 0.0);
  EXPECT_TRUE(std::isnan(none.center1.x) && std::isnan(none.T.at<double>(2)));
  EXPECT_TRUE(std::isnan(Transform({{HUGE_VAL, 0, 0}}, kPoints).R.at<double>(1, 1)));

  const cv::Mat before = none.R;
  caculateRT({{1, 2, 3}, {1, 2, 4}}, {{5, 5, 5}, {5, 6, 5}}, none.R, none.T, none.center1,
             none.center2);
  EXPECT_EQ(cv::norm(before, kEye), 0.0) << "storage was not new";
}

}  // namespace
