#pragma once

/**
 * @file
 * Formulas on lines in the plane, and least-squares fits.
 */

#include <opencv2/core/types.hpp>
#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

SCANLINE_API STesk3DPoint
computeLineCrossPt_abs(double a1, double b1, double c1, double a2, double b2, double c2);
SCANLINE_API double computeAngleDiff(double theta1, double theta2);
SCANLINE_API void compute2ptLine(STesk3DPoint p1, STesk3DPoint p2, double* a, double* b, double* c);
SCANLINE_API void compute2ptLine_2(
    double x1, double y1, double x2, double y2, double* a, double* b, double* c);
SCANLINE_API void rotateLine45Deg(
    double a, double b, double c, double x, double y, double* newA, double* newB, double* newC);
SCANLINE_API double getLineAngle(double a, double b, double c);
SCANLINE_API double compute2DLen(STesk3DPoint p1, STesk3DPoint p2);
SCANLINE_API double computePtDistToLine(double x, double y, double a, double b, double c);
SCANLINE_API STesk2DPointD ny_getFootPoint(double x, double y, double k, double b);
SCANLINE_API STesk2DPointD ny_getFootPoint_abc(double x, double y, double a, double b, double c);
SCANLINE_API void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points);

SCANLINE_API void lineFitting(std::vector<STesk3DPoint>& points, double* k, double* b);
SCANLINE_API void lineFitting_abc(std::vector<STesk3DPoint>& points,
                                  double* a,
                                  double* b,
                                  double* c);
SCANLINE_API double fitCircleByLeastSquare(const std::vector<STesk3DPoint>& points,
                                           STesk3DPoint& center,
                                           double& radius);
SCANLINE_API bool leastSquareParabolaFitEigen(const std::vector<cv::Point_<double>>& points,
                                              double& a,
                                              double& b,
                                              double& c,
                                              double& mse,
                                              double& maxError);
SCANLINE_API bool fitLine3DLeastSquares(const std::vector<STesk3DPoint>& points,
                                        STesk3DPoint& center,
                                        STesk3DPoint& direction);
SCANLINE_API double computeMeanZ(std::vector<STesk3DPoint>& points);
