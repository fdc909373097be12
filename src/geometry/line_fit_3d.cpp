#include <Eigen/Eigenvalues>
#include <iostream>

#include <scanline/geometry.h>

namespace {

// The messages are GBK whatever the encoding of the source files, hence the escapes. A literal is
// split where the character behind an escape would be read as one more of its digits.

/// "The number of points must be greater than or equal to 2!"
constexpr const char* kTooFewPoints =
    "Error: \xb5\xe3\xbc\xaf\xca\xfd\xc1\xbf\xb1\xd8\xd0\xeb\xb4\xf3\xd3\xda\xb5\xc8\xd3\xda"
    "2\xa3\xa1";
/// "The eigenvalue decomposition failed!"
constexpr const char* kNoDecomposition =
    "Error: \xcc\xd8\xd5\xf7\xd6\xb5\xb7\xd6\xbd\xe2\xca\xa7\xb0\xdc\xa3\xa1";

Eigen::MatrixX3d toMatrix(const std::vector<STesk3DPoint>& points) {
  Eigen::MatrixX3d matrix(static_cast<Eigen::Index>(points.size()), 3);
  Eigen::Index row = 0;
  for (const STesk3DPoint& point : points) {
    matrix.row(row) << point.x, point.y, point.z;
    ++row;
  }
  return matrix;
}

}  // namespace

bool fitLine3DLeastSquares(const std::vector<STesk3DPoint>& points,
                           STesk3DPoint& center,
                           STesk3DPoint& direction) {
  if (points.size() < 2) {
    std::cerr << kTooFewPoints << '\n';
    return false;
  }
  Eigen::MatrixX3d centered = toMatrix(points);
  const Eigen::RowVector3d centroid = centered.colwise().mean();
  centered.rowwise() -= centroid;
  const Eigen::Matrix3d scatter = centered.transpose() * centered;
  center = {centroid.x(), centroid.y(), centroid.z()};
  const Eigen::SelfAdjointEigenSolver<Eigen::Matrix3d> solver(scatter);
  if (solver.info() != Eigen::Success) {
    std::cerr << kNoDecomposition << '\n';
    return false;
  }
  const Eigen::Vector3d axis = solver.eigenvectors().col(2).normalized();
  direction = {axis.x(), axis.y(), axis.z()};
  return true;
}
