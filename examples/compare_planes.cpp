/**
 * @file
 * Levels a tilted table with a box on it by two calibrations, and compares tilt and height.
 */

#include <cmath>
#include <cstdio>
#include <vector>

#include <scanline/scanline.h>

namespace {

using Scan = std::vector<std::vector<STesk3DPosition>>;

constexpr double kDegrees = 180.0 / 3.141592653589793;

/// z is a height here: the table is the surface of smallest z.
Scan makeScan() {
  Scan scan(200, std::vector<STesk3DPosition>(400));
  for (int l = 0; l < 200; ++l) {
    for (int i = 0; i < 400; ++i) {
      const double x = 0.5 * l;
      const double y = 0.25 * i;
      const bool isOnBox = x > 60.0 && y > 60.0;
      scan[l][i] = {i, {x, y, 100.0 + 0.05 * x + 0.04 * y + (isOnBox ? 30.0 : 0.0)}};
    }
  }
  return scan;
}

void print(const char* name, const SQO_planeCalibPara& plane, Scan scan) {
  for (std::vector<STesk3DPosition>& line : scan) {
    lineDataRT_vector(line, plane.levelMatrix, 0.0);
  }
  std::printf("%-8s tilt %.2f deg, height %.2f; opposite corners of the table at %.3f and %.3f\n",
              name, std::acos(plane.levelMatrix[8]) * kDegrees, plane.planeHeight,
              scan.front().front().pt3D.z, scan.front().back().pt3D.z);
}

}  // namespace

int main() {
  Scan scan = makeScan();
  print("heights", qo_getPlaneCalibPara2(scan), scan);
  // Where the table is known to be bare. The last limit is a second one of y.
  print("region", qo_getPlaneCalibPara2_ROI(scan, {{0.0, 50.0}, {0.0, 100.0}, {0.0, 100.0}}), scan);

  const SQO_planeCalibPara plane = qo_getPlaneCalibPara2(scan);
  double rotation[3][3];
  for (int k = 0; k < 9; ++k) {
    rotation[k / 3][k % 3] = plane.levelMatrix[k];
  }
  const SQO_EulerAngles angles = rotationMatrixToEulerZYX(rotation);
  std::printf("roll %.2f, pitch %.2f, yaw %.2f deg\n", angles.roll, angles.pitch, angles.yaw);
}
