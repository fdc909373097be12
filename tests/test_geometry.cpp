#include <gtest/gtest.h>

#include <Eigen/Eigenvalues>
#include <cfloat>
#include <climits>
#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include <scanline/geometry.h>
#include "builders.h"

namespace {

using Values = std::vector<double>;
using Points = std::vector<STesk3DPoint>;

Values valuesOf(const STesk3DPoint& point) {
  return {point.x, point.y, point.z};
}

TEST(LineFormulas, Angles) {
  const std::vector<Values> cases = {
      {350, 10, 20}, {-90, 90, 180}, {0, 180.5, 179.5}, {180.5, 0, 179.5}, {400, 0, -40}};
  for (const Values& v : cases) {
    EXPECT_EQ(computeAngleDiff(v[0], v[1]), v[2]) << v[0] << " and " << v[1];
  }
  EXPECT_EQ(getLineAngle(0, 5, NAN), 0.0);
  EXPECT_EQ(getLineAngle(1, 0, 1), 90.0);
  EXPECT_EQ(getLineAngle(-1e30, 1e-30, 0), 180.0);  // by rounding only
}

TEST(LineFormulas, DegenerateLines) {
  EXPECT_EQ(valuesOf(computeLineCrossPt_abs(1, 2, 3, 2, 4, 5)), Values({-HUGE_VAL, -HUGE_VAL, 0}));
  EXPECT_EQ(computePtDistToLine(1, 1, 0, 0, 3), HUGE_VAL);
  Values line(3, 7.0);
  compute2ptLine_2(5, 7, 5, 7, &line[0], &line[1], &line[2]);
  EXPECT_EQ(line, Values({0, 0, 0}));
}

TEST(DrawLine, AppendsPointsByTheErrorRule) {
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

TEST(LineFittingAbc, EndPointsChooseTheAbscissa) {
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
  STesk3DPoint center = {1, 2, 42};
  double radius = 4;
  const auto fit = [&](const Points& points) {
    const double error = fitCircleByLeastSquare(points, center, radius);
    return Values({error, center.x, center.y, center.z, radius});
  };
  EXPECT_EQ(fit({{0, 0, 0}, {1, 0, 0}}), Values({DBL_MAX, 1, 2, 42, 4}));
  build::expectNear(fit({{8, -2, 1}, {3, 3, 2}, {-2, -2, 3}}), {0, 3, -2, 42, 5}, 1e-9);
  EXPECT_EQ(fit({{0, 0, 0}, {1, 1, 0}, {2, 2, 0}})[0], 0.0);
  EXPECT_FALSE(std::isfinite(center.x) || std::isfinite(radius));
}

Values fitParabola(const std::vector<cv::Point_<double>>& points) {
  Values v(5, 7.0);
  const bool ok = leastSquareParabolaFitEigen(points, v[0], v[1], v[2], v[3], v[4]);
  EXPECT_EQ(ok, points.size() > 2);
  return v;
}

TEST(FitParabola, NeedsThreeFinitePoints) {
  build::expectNear(fitParabola({{1, 3}, {2, 4}, {4, 12}}), {1, -2, 4, 0, 0}, 1e-12);
  EXPECT_EQ(fitParabola({{0, 0}, {1, 1}}), Values(5, 7.0));
  for (const double x : Values{NAN, HUGE_VAL, 1e200}) {
    const Values wild = fitParabola({{0, 0}, {1, 1}, {x, 2}, {3, 3}});
    EXPECT_TRUE(std::isnan(wild[0]) && std::isnan(wild[3]) && wild[4] == 0.0);
  }
}

/// The centre and the direction of a fit, and 1 or 0 for success or failure.
Values fitAxis(const Points& points) {
  STesk3DPoint c = {7, 7, 7};
  STesk3DPoint d = c;
  const double ok = fitLine3DLeastSquares(points, c, d) ? 1 : 0;
  return {c.x, c.y, c.z, d.x, d.y, d.z, ok};
}

TEST(FitLine3D, NeedsTwoFinitePoints) {
  EXPECT_EQ(fitAxis({{1, 2, 3}, {1, 2, 3}}).back(), 1);
  EXPECT_EQ(fitAxis({{1, 2, 3}}), Values({7, 7, 7, 7, 7, 7, 0}));
  const Values fit = fitAxis({{1, NAN, 3}, {1, 2, 5}});
  EXPECT_EQ(Values(fit.begin() + 2, fit.end()), Values({4, 7, 7, 7, 0}));
}

TEST(FitLine3D, AgreesWithEigensOwnProductInEveryBit) {
  build::Random random(3);
  for (int count = 2; count < 3000; count += count < 40 ? 1 : 977) {
    Eigen::MatrixX3d matrix(count, 3);
    Points points;
    for (int i = 0; i < count; ++i) {
      points.push_back({random.grid(-9, 9), random.grid(1, 5), random.grid(20, 60)});
      matrix.row(i) << points[i].x, points[i].y, points[i].z;
    }
    const Eigen::RowVector3d centre = matrix.colwise().mean();
    matrix.rowwise() -= centre;
    const Eigen::Matrix3d scatter = matrix.transpose() * matrix;
    const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(scatter);
    const Eigen::Vector3d axis = solver.eigenvectors().col(2).normalized();
    ASSERT_EQ(fitAxis(points),
              Values({centre[0], centre[1], centre[2], axis[0], axis[1], axis[2], 1}))
        << count;
  }
}

using CvPoint = cv::Point3_<double>;
using CvPoints = std::vector<CvPoint>;

const CvPoints kPoints = {{0, 0, 0}, {4, 0, 1}, {0, 3, -2}, {1, 1, 5}, {-2, 7, 1}};
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
  for (const cv::Matx33d& turn : {kOblique, kOblique.t(), kMirror}) {
    const CvPoint shift(5, -6, 70);
    CvPoints to;
    for (const CvPoint& p : kPoints) {
      to.push_back(turn * p + shift);
    }
    to.emplace_back(99, 99, 99);  // A surplus point.
    const Transform t(kPoints, to);
    EXPECT_LT(cv::norm(t.R * t.R.t(), kEye), 1e-14);
    EXPECT_NEAR(cv::determinant(t.R), 1.0, 1e-14);
    EXPECT_LT(cv::norm(t.center1 - CvPoint(0.6, 2.2, 1)), 1e-15);
    EXPECT_LT(cv::norm(t.center2 - turn * t.center1 - shift), 1e-13);
    if (turn != kMirror) {  // No rotation maps onto a mirror image.
      EXPECT_LT(cv::norm(t.R, cv::Mat(turn)), 1e-14);
      EXPECT_LT(cv::norm(t.T, cv::Mat(shift)), 1e-13);
    }
  }
}

TEST(RigidTransform, DegenerateInput) {
  Transform none({}, kPoints);
  EXPECT_EQ(cv::norm(none.R, kEye), 0.0);
  EXPECT_TRUE(std::isnan(none.center1.x) && std::isnan(none.T.at<double>(2)));
  EXPECT_TRUE(std::isnan(Transform({{HUGE_VAL, 0, 0}}, kPoints).R.at<double>(1, 1)));
  const cv::Mat before = none.R;
  caculateRT(kPoints, {5, {5, 5, 5}}, none.R, none.T, none.center1, none.center2);
  EXPECT_NE(before.data, none.R.data) << "the storage is not new";
}

}  // namespace
