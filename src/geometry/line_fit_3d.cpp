// Fits a line to points in space by the principal axis of their scatter matrix.
#include <Eigen/Eigenvalues>
#include <algorithm>
#include <iostream>

#include <scanline/geometry.h>

namespace {

// The messages are encoded in GBK, whatever the encoding of the source files, hence the escapes. A
// literal is split where the next character would be read as a digit of the escape.

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
    matrix(row, 0) = point.x;
    matrix(row, 1) = point.y;
    matrix(row, 2) = point.z;
    ++row;
  }
  return matrix;
}

/// The number of rows that Eigen sums in one block when it multiplies the transpose of a matrix of
/// `rows` rows and 3 columns by the matrix.
Eigen::Index rowsPerBlock(Eigen::Index rows) {
  Eigen::Index columns = 3;
  Eigen::Index otherColumns = 3;
  Eigen::internal::computeProductBlockingSizes<double, double, 1>(rows, columns, otherColumns);
  return rows;
}

/// The lower triangle of `m.transpose() * m`, summed in order over the rows from `first` up to but
/// not including `end`.
Eigen::Matrix3d sumProducts(const Eigen::MatrixX3d& m, Eigen::Index first, Eigen::Index end) {
  // Two sums share each packed addition.
  Eigen::Array2d xyTimesX = Eigen::Array2d::Zero();
  Eigen::Array2d xyTimesZ = xyTimesX;
  Eigen::Array2d yzTimesYz = xyTimesX;
  for (Eigen::Index i = first; i < end; ++i) {
    const Eigen::Array2d xy(m(i, 0), m(i, 1));
    const Eigen::Array2d yz(m(i, 1), m(i, 2));
    xyTimesX += xy * m(i, 0);
    xyTimesZ += xy * m(i, 2);
    yzTimesYz += yz * yz;
  }
  Eigen::Matrix3d sums;
  sums << xyTimesX[0], 0.0, 0.0,  //
      xyTimesX[1], yzTimesYz[0], 0.0, xyTimesZ[0], xyTimesZ[1], yzTimesYz[1];
  return sums;
}

/// The lower triangle of `m.transpose() * m`. On so narrow a matrix, Eigen's own product spends
/// most of its time on packing. This function sums the same products in the same order, in the same
/// blocks of rows, which Eigen chooses by the size of the caches.
Eigen::Matrix3d scatterMatrix(const Eigen::MatrixX3d& m) {
  if (m.rows() + 6 < EIGEN_GEMM_TO_COEFFBASED_THRESHOLD) {
    return m.transpose() * m;  // Eigen sums so few rows in a different order.
  }
  const Eigen::Index block = rowsPerBlock(m.rows());
  Eigen::Matrix3d scatter = Eigen::Matrix3d::Zero();
  for (Eigen::Index first = 0; first < m.rows(); first += block) {
    scatter += sumProducts(m, first, std::min(first + block, m.rows()));
  }
  return scatter;
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
  const Eigen::Matrix3d scatter = scatterMatrix(centered);
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
