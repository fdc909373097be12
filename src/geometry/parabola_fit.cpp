// Fits a parabola to points in a plane by least squares.
#include <Eigen/SVD>
#include <cmath>
#include <limits>

#include <scanline/geometry.h>

namespace {

/// The rows (x^2, x, 1). The bound on the columns makes this a type of its own, which the
/// specialisation below needs; 8 is the smallest bound with which Eigen forms products in the order
/// of an unbounded matrix.
using Design =
    Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::ColMajor, Eigen::Dynamic, 8>;

}  // namespace

// These are internals of Eigen 3.4. Later versions have a different interface here and use their
// own forms.
#if !EIGEN_VERSION_AT_LEAST(3, 4, 90)
/// Never runs, since a design has at least as many rows as columns. Eigen's own form takes long to
/// compile.
template <>
class Eigen::internal::qr_preconditioner_impl<Design,
                                              Eigen::ColPivHouseholderQRPreconditioner,
                                              Eigen::internal::PreconditionIfMoreColsThanRows,
                                              true> {
 public:
  void allocate(const JacobiSVD<Design>& /*svd*/) {}

  bool run(JacobiSVD<Design>& /*svd*/, const Design& /*matrix*/) {
    return false;
  }
};

/// The reduction to a square matrix, with the steps of Eigen's own form. That form destroys a
/// member and constructs it again in place; if memory runs out then, the member is destroyed twice.
template <>
class Eigen::internal::qr_preconditioner_impl<Design,
                                              Eigen::ColPivHouseholderQRPreconditioner,
                                              Eigen::internal::PreconditionIfMoreRowsThanCols,
                                              true> {
 public:
  void allocate(const JacobiSVD<Design>& /*svd*/) {}

  bool run(JacobiSVD<Design>& svd, const Design& matrix) {
    const ColPivHouseholderQR<Design> qr(matrix);
    svd.m_workMatrix = qr.matrixQR().topRows(matrix.cols()).template triangularView<Upper>();
    svd.m_matrixU.setIdentity(matrix.rows(), matrix.cols());
    qr.householderQ().applyThisOnTheLeft(svd.m_matrixU);
    svd.m_matrixV = qr.colsPermutation();
    return true;
  }
};
#endif

namespace {

Eigen::Vector3d solveCoefficients(const std::vector<cv::Point_<double>>& points) {
  const auto n = static_cast<Eigen::Index>(points.size());
  Design design(n, 3);
  Eigen::VectorXd ordinates(n);
  Eigen::Index row = 0;
  for (const cv::Point_<double>& point : points) {
    design.row(row) << point.x * point.x, point.x, 1.0;
    ordinates(row) = point.y;
    ++row;
  }
  // The class to which BDCSVD delegates matrices of so few columns.
  const Eigen::JacobiSVD<Design> svd(design, Eigen::ComputeThinU | Eigen::ComputeThinV);
  if (svd.info() == Eigen::InvalidInput) {
    // The solver leaves its rank unset for a matrix that is not finite, and solve() would use it.
    return Eigen::Vector3d::Constant(std::numeric_limits<double>::quiet_NaN());
  }
  return svd.solve(ordinates);
}

}  // namespace

bool leastSquareParabolaFitEigen(const std::vector<cv::Point_<double>>& points,
                                 double& a,
                                 double& b,
                                 double& c,
                                 double& mse,
                                 double& maxError) {
  if (points.size() < 3) {
    return false;
  }
  const Eigen::Vector3d coefficients = solveCoefficients(points);
  a = coefficients(0);
  b = coefficients(1);
  c = coefficients(2);
  mse = 0.0;
  maxError = 0.0;
  for (const cv::Point_<double>& point : points) {
    const double error = a * point.x * point.x + b * point.x + c - point.y;
    mse += error * error;
    if (std::abs(error) > maxError) {
      maxError = std::abs(error);
    }
  }
  mse /= static_cast<double>(points.size());
  return true;
}
