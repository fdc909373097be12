#include "checks.h"
#include "define.h"
#include "functions.h"

namespace binding {

namespace {

using Points = std::vector<cv::Point3_<double>>;
using Scan = std::vector<std::vector<STesk3DPosition>>;

void checkBounds(Scan& scan) {
  for (std::size_t i = 1; i < scan.size(); ++i) {
    require(scan[i].size() <= scan[i - 1].size(), "scan", "no line longer than the line before it",
            std::to_string(scan[i].size()) + " samples in line " + std::to_string(i));
  }
}

void checkPairs(const Points& pts1,
                const Points& pts2,
                cv::Mat& /*R*/,
                cv::Mat& /*T*/,
                cv::Point3_<double>& /*center1*/,
                cv::Point3_<double>& /*center2*/) {
  require(pts2.size() >= pts1.size(), "pts2",
          "at least as many points as pts1, which has " + std::to_string(pts1.size()),
          std::to_string(pts2.size()));
}

void checkRotation(const cv::Mat& R,
                   const cv::Mat& /*T*/,
                   const cv::Point3_<double>& /*center1*/,
                   const cv::Point3_<double>& /*center2*/,
                   const cv::Point3_<double>& /*pt*/,
                   cv::Point3_<double>& /*out*/) {
  require(R.rows >= 3 && R.cols >= 3, "R", "a matrix of 3 x 3",
          std::to_string(R.rows) + " x " + std::to_string(R.cols));
}

void defineCalibration(py::module_& m) {
  SCANLINE_DEFINE(m, adjustPlaneToXYPlane, In, In, In);
  SCANLINE_DEFINE(m, ju_computeRTMatrix, In, In);
  SCANLINE_DEFINE(m, lineDataRT, OneLine, In, In);
  SCANLINE_DEFINE(m, lineDataRT_vector, InOut, In, In);
  SCANLINE_DEFINE(m, HCamera_lineDataRT_vector, InOut, In, In);
  SCANLINE_DEFINE(m, lineDataRT_RGBD, OneLine, In, In);
  SCANLINE_DEFINE(m, rotationMatrixToEulerZYX, In);
  SCANLINE_DEFINE(m, eulerToRotationMatrixZYX, In, Out);
  SCANLINE_DEFINE(m, qo_getPlaneCalibPara, In, Count);
  SCANLINE_DEFINE(m, qo_getPlaneCalibPara2, In);
  SCANLINE_DEFINE(m, qo_getPlaneCalibPara2_ROI, In, In);
  SCANLINE_DEFINE(m, qo_getPlaneCalibPara_ROIs, In, Count, In);
  SCANLINE_DEFINE(m, qo_getHolePlaneCalibPara, InOut);
  SCANLINE_DEFINE(m, qo_HCameraVScan_getGroundCalibPara, InOut);
  SCANLINE_DEFINE(m, teskCaculateLaserPlane, In, Out);
}

}  // namespace

void defineGeometry(py::module_& m) {
  SCANLINE_DEFINE(m, qo_getScanDataROI, In, Count);
  SCANLINE_DEFINE(m, qo_getScanDataROI_vector, In);
  SCANLINE_DEFINE(m, ju_getPointCloudROI, In);
  SCANLINE_DEFINE_CHECKED(m, ju_getPointCloudPara, checkBounds, In);

  SCANLINE_DEFINE(m, computeLineCrossPt_abs, In, In, In, In, In, In);
  SCANLINE_DEFINE(m, compute2ptLine, In, In, Out, Out, Out);
  SCANLINE_DEFINE(m, compute2ptLine_2, In, In, In, In, Out, Out, Out);
  SCANLINE_DEFINE(m, rotateLine45Deg, In, In, In, In, In, Out, Out, Out);
  SCANLINE_DEFINE(m, computeAngleDiff, In, In);
  SCANLINE_DEFINE(m, getLineAngle, In, In, In);
  SCANLINE_DEFINE(m, compute2DLen, In, In);
  SCANLINE_DEFINE(m, computePtDistToLine, In, In, In, In, In);
  SCANLINE_DEFINE(m, ny_getFootPoint, In, In, In, In);
  SCANLINE_DEFINE(m, ny_getFootPoint_abc, In, In, In, In, In);
  SCANLINE_DEFINE(m, drawLine, In, In, In, In, Out);

  SCANLINE_DEFINE(m, lineFitting, In, Out, Out);
  SCANLINE_DEFINE(m, lineFitting_abc, In, Out, Out, Out);
  SCANLINE_DEFINE(m, fitCircleByLeastSquare, In, Out, Out);
  SCANLINE_DEFINE(m, leastSquareParabolaFitEigen, In, Out, Out, Out, Out, Out);
  SCANLINE_DEFINE(m, fitLine3DLeastSquares, In, Out, Out);
  SCANLINE_DEFINE(m, computeMeanZ, In);
  SCANLINE_DEFINE_CHECKED(m, caculateRT, checkPairs, In, In, Out, Out, Out, Out);
  SCANLINE_DEFINE_CHECKED(m, pointRT, checkRotation, Image<CV_64F>, Image<CV_64F>, In, In, In, Out);
  defineCalibration(m);
}

}  // namespace binding
