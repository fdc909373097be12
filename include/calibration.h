#pragma once

/**
 * @file
 * Calibration of a scanner against a reference plane, and levelling of scan lines with it.
 */

#include <opencv2/core/types.hpp>
#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

SCANLINE_API SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c);
SCANLINE_API SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to);
SCANLINE_API void lineDataRT(STesk3DLaserLine* line, const double* matrix, double cutHeight);
SCANLINE_API void lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                    const double* matrix,
                                    double cutHeight);
SCANLINE_API void HCamera_lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                            const double* matrix,
                                            double cutHeight);
SCANLINE_API void lineDataRT_RGBD(STeskXYZRGBDLaserLine* line,
                                  const double* matrix,
                                  double cutHeight);
SCANLINE_API SQO_EulerAngles rotationMatrixToEulerZYX(const double R[3][3]);
SCANLINE_API void eulerToRotationMatrixZYX(const SQO_EulerAngles& angles, double R[3][3]);
SCANLINE_API SQO_planeCalibPara qo_getPlaneCalibPara(STesk3DLaserLine* lines, int lineNum);
SCANLINE_API void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points,
                                         std::vector<double>& res);
