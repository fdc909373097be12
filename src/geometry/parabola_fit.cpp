#include <Eigen/SVD>
#include <cmath>
#include <limits>

#include <scanline/geometry.h>

namespace {

Eigen::Vector3d solveCoefficients(const std::vector<cv::Point_<double>>& points) {
  const auto n = static_cast<Eigen::Index>(points.size());
  Eigen::MatrixXd design(n, 3);
  Eigen::VectorXd ordinates(n);
  Eigen::Index row = 0;
  for (const cv::Point_<double>& point : points) {
    design.row(row) << point.x * point.x, point.x, 1.0;
    ordinates(row) = point.y;
    ++row;
  }
  const Eigen::BDCSVD<Eigen::MatrixXd> svd(design, Eigen::ComputeThinU | Eigen::ComputeThinV);
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
