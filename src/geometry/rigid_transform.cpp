// Estimates the rigid transform between two lists of corresponding points, and applies it.
#include <Eigen/Core>
#include <Eigen/SVD>
#include <cassert>
#include <cstddef>
#include <limits>
#include <vector>

#include <scanline/geometry.h>
#include "records/new_image.h"

namespace {

using Points = std::vector<cv::Point3_<double>>;

/// The mean of the first `n` points.
Eigen::Vector3d centroid(const Points& points, std::size_t n) {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    x += points[i].x;
    y += points[i].y;
    z += points[i].z;
  }
  return Eigen::Vector3d(x, y, z) * (1.0 / static_cast<double>(n));
}

/// The sum of the outer products of corresponding points, each relative to the centroid of its
/// list.
Eigen::Matrix3d crossCovariance(const Points& pts1,
                                const Points& pts2,
                                const Eigen::Vector3d& center1,
                                const Eigen::Vector3d& center2) {
  // One vector per column, so that the sums stay in registers.
  Eigen::Vector3d wx = Eigen::Vector3d::Zero();
  Eigen::Vector3d wy = wx;
  Eigen::Vector3d wz = wx;
  for (std::size_t i = 0; i < pts1.size(); ++i) {
    const Eigen::Vector3d q1(pts1[i].x - center1.x(), pts1[i].y - center1.y(),
                             pts1[i].z - center1.z());
    wx += q1 * (pts2[i].x - center2.x());
    wy += q1 * (pts2[i].y - center2.y());
    wz += q1 * (pts2[i].z - center2.z());
  }
  Eigen::Matrix3d w;
  w << wx, wy, wz;
  return w;
}

/// Cofactor expansion along the first row.
double determinant(const Eigen::Matrix3d& m) {
  return m(0, 0) * (m(1, 1) * m(2, 2) - m(1, 2) * m(2, 1)) -
         m(0, 1) * (m(1, 0) * m(2, 2) - m(1, 2) * m(2, 0)) +
         m(0, 2) * (m(1, 0) * m(2, 1) - m(1, 1) * m(2, 0));
}

/// The proper rotation that best fits the cross-covariance `w`.
Eigen::Matrix3d bestRotation(const Eigen::Matrix3d& w) {
  if (!w.allFinite()) {
    // The decomposition of such a matrix leaves its factors unset.
    return Eigen::Matrix3d::Constant(std::numeric_limits<double>::quiet_NaN());
  }
  const Eigen::JacobiSVD<Eigen::Matrix3d> svd(w, Eigen::ComputeFullU | Eigen::ComputeFullV);
  const Eigen::Matrix3d& u = svd.matrixU();
  const Eigen::Matrix3d& v = svd.matrixV();
  const Eigen::Matrix3d uvt = u * v.transpose();
  Eigen::Matrix3d reflectionFix = Eigen::Matrix3d::Identity();
  reflectionFix(2, 2) = determinant(uvt);
  return v * reflectionFix * u.transpose();
}

/// Writes the elements of `m` into a matrix of the same size.
template <typename Matrix>
void store(const Matrix& m, cv::Mat& mat) {
  for (int r = 0; r < mat.rows; ++r) {
    for (int c = 0; c < mat.cols; ++c) {
      mat.at<double>(r, c) = m(r, c);
    }
  }
}

}  // namespace

void caculateRT(const std::vector<cv::Point3_<double>>& pts1,
                const std::vector<cv::Point3_<double>>& pts2,
                cv::Mat& R,
                cv::Mat& T,
                cv::Point3_<double>& center1,
                cv::Point3_<double>& center2) {
  assert(pts2.size() >= pts1.size());
  // The matrices are new, since other matrices may share the storage of the old ones.
  cv::Mat newR = scanline::detail::newImage(3, 3, CV_64F);
  cv::Mat newT = scanline::detail::newImage(3, 1, CV_64F);
  const Eigen::Vector3d mean1 = centroid(pts1, pts1.size());
  const Eigen::Vector3d mean2 = centroid(pts2, pts1.size());
  center1 = {mean1.x(), mean1.y(), mean1.z()};
  center2 = {mean2.x(), mean2.y(), mean2.z()};

  const Eigen::Matrix3d rotation = bestRotation(crossCovariance(pts1, pts2, mean1, mean2));
  const Eigen::Vector3d translation = mean2 - rotation * mean1;
  store(rotation, newR);
  store(translation, newT);
  R = newR;
  T = newT;
}

void pointRT(const cv::Mat& R,
             const cv::Mat& /*T*/,
             const cv::Point3_<double>& center1,
             const cv::Point3_<double>& center2,
             const cv::Point3_<double>& pt,
             cv::Point3_<double>& out) {
  assert(R.type() == CV_64F && R.rows >= 3 && R.cols >= 3);
  const double x = pt.x - center1.x;
  const double y = pt.y - center1.y;
  const double z = pt.z - center1.z;
  const auto rotated = [&](int row) {
    const auto* const r = R.ptr<double>(row);
    return r[0] * x + r[1] * y + r[2] * z;
  };
  out = {rotated(0) + center2.x, rotated(1) + center2.y, rotated(2) + center2.z};
}
