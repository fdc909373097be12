// Levels lines in place by a rotation, and cuts away what lies beyond a limit.
#include <Eigen/Core>
#include <cassert>

#include <scanline/calibration.h>
#include "calibration/rotation.h"
#include "records/sample_rules.h"

namespace {

using scanline::detail::isMissing;
using scanline::detail::rowTimesPoint;

/// A rotation matrix, stored so that each packed operation serves the new x and the new y.
class Rotation {
 public:
  explicit Rotation(const double* m)
      : xyOfX_(m[0], m[3]), xyOfY_(m[1], m[4]), xyOfZ_(m[2], m[5]), zRow_{m[6], m[7], m[8]} {}

  [[nodiscard]] STesk3DPoint apply(double x, double y, double z) const {
    const Eigen::Array2d xy = xyOfX_ * x + xyOfY_ * y + xyOfZ_ * z;
    return {xy[0], xy[1], rowTimesPoint(zRow_, x, y, z)};
  }

 private:
  Eigen::Array2d xyOfX_;
  Eigen::Array2d xyOfY_;
  Eigen::Array2d xyOfZ_;
  double zRow_[3];
};

enum class CutAxis { kZ, kY };

/// Which levelled samples are cut away. A ground calibration levels the ground to a constant y, and
/// samples at that y or beyond are cut. Otherwise samples are cut whose z is beyond the limit.
struct CutRule {
  CutAxis axis;
  double height;  ///< The limit; 0.0 or below, or NaN, cuts nothing.

  [[nodiscard]] bool cuts(const STesk3DPoint& levelled) const {
    return height > 0.0 && (axis == CutAxis::kY ? levelled.y >= height : levelled.z > height);
  }
};

STesk3DPoint pointOf(const STesk3DPosition& sample) {
  return {sample.pt3D.x, sample.pt3D.y, sample.pt3D.z};
}

STesk3DPoint pointOf(const STeskXYZRGBDPoint& sample) {
  return {static_cast<double>(sample.x), static_cast<double>(sample.y),
          static_cast<double>(sample.z)};
}

void storePoint(STesk3DPosition& sample, double x, double y, double z) {
  sample.pt3D.x = x;
  sample.pt3D.y = y;
  sample.pt3D.z = z;
}

void storePoint(STeskXYZRGBDPoint& sample, double x, double y, double z) {
  sample.x = static_cast<float>(x);
  sample.y = static_cast<float>(y);
  sample.z = static_cast<float>(z);
}

template <typename Sample>
void levelSamples(Sample* samples, int count, const double* matrix, CutRule cut) {
  if (count <= 0) {
    return;
  }
  assert(samples != nullptr && matrix != nullptr);
  const Rotation rotation(matrix);
  Sample discarded = {};
  for (int i = 0; i < count; ++i) {
    const STesk3DPoint point = pointOf(samples[i]);
    // Missing samples follow no pattern: a branch on them costs more than the work that it saves.
    Sample* const target = isMissing(point.z) ? &discarded : &samples[i];
    const STesk3DPoint levelled = rotation.apply(point.x, point.y, point.z);
    storePoint(*target, levelled.x, levelled.y, cut.cuts(levelled) ? 0.0 : levelled.z);
  }
}

}  // namespace

void lineDataRT(STesk3DLaserLine* line, const double* matrix, double cutHeight) {
  levelSamples(line->p3DPosition, line->nPositionCnt, matrix, {CutAxis::kZ, cutHeight});
}

void lineDataRT_vector(std::vector<STesk3DPosition>& line, const double* matrix, double cutHeight) {
  levelSamples(line.data(), static_cast<int>(line.size()), matrix, {CutAxis::kZ, cutHeight});
}

void HCamera_lineDataRT_vector(std::vector<STesk3DPosition>& line,
                               const double* matrix,
                               double cutHeight) {
  levelSamples(line.data(), static_cast<int>(line.size()), matrix, {CutAxis::kY, cutHeight});
}

void lineDataRT_RGBD(STeskXYZRGBDLaserLine* line, const double* matrix, double cutHeight) {
  levelSamples(line->pXYZRGBD, line->nPointCnt, matrix, {CutAxis::kZ, cutHeight});
}
