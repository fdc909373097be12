#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <vector>

#include "geometry.h"

namespace {

using Point = cv::Point3_<double>;
using Points = std::vector<Point>;

const Points kPoints = {{0, 0, 0}, {4, 0, 1}, {0, 3, -2}, {1, 1, 5}, {-2, 7, 1}};
const cv::Matx33d kQuarterTurn = {0, -1, 0, 1, 0, 0, 0, 0, 1};
const cv::Matx33d kOblique = {0.36, 0.48, -0.8, -0.8, 0.6, 0, 0.48, 0.64, 0.6};
const cv::Matx33d kMirror = {1, 0, 0, 0, 1, 0, 0, 0, -1};

const cv::Mat kEye = cv::Mat::eye(3, 3, CV_64F);

struct Transform {
  Transform(const Points& from, const Points& to) {
    caculateRT(from, to, R, T, center1, center2);
  }
  cv::Mat R, T;
  Point center1, center2;
};

TEST(RigidTransform, MapsOntoTheOtherList) {
  for (const cv::Matx33d& turn : {kQuarterTurn, kOblique, kMirror}) {
    const Point shift(5, -6, 70);
    Points to;
    for (const Point& p : kPoints) {
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
    Point out = kPoints[1];
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
