#pragma once

/**
 * @file
 * Formulas on lines in the plane, and least-squares fits.
 */

#include <opencv2/core/mat.hpp>
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

// Rigid transforms

/**
 * Estimates the rotation and the translation that map one list of points onto another best in the
 * least-squares sense (the method of Kabsch).
 *
 * `pts2[i]` is close to R `pts1[i]` + T. The rotation is always proper: of a mirror image it is the
 * best fit without the mirror. Nothing is checked. Fewer than 3 points, or points on one line, give
 * one of the rotations that fit. Empty lists give centroids and a T of NaN and the identity as R;
 * coordinates that are not finite give an R of NaN.
 *
 * @param pts1    Points to map from; their number counts.
 * @param pts2    The corresponding points to map to; at least as many, the rest is not looked at.
 * @param R       Replaced by a new 3 x 3 matrix of `CV_64F`: the rotation.
 * @param T       Replaced by a new 3 x 1 matrix of `CV_64F`: `center2` - R `center1`.
 * @param center1 Receives the centroid of `pts1`.
 * @param center2 Receives the centroid of the points used of `pts2`.
 */
SCANLINE_API void caculateRT(const std::vector<cv::Point3_<double>>& pts1,
                             const std::vector<cv::Point3_<double>>& pts2,
                             cv::Mat& R,
                             cv::Mat& T,
                             cv::Point3_<double>& center1,
                             cv::Point3_<double>& center2);

/**
 * Maps a point with a result of caculateRT(): rotates it about the first centroid and shifts that
 * to the second, R (`pt` - `center1`) + `center2`.
 *
 * @param R       The rotation, 3 x 3 of `CV_64F` (not checked); may be part of a larger matrix.
 * @param T       Not read: the centroids carry the translation.
 * @param center1 Centroid of the points mapped from.
 * @param center2 Centroid of the points mapped to.
 * @param pt      The point.
 * @param out     Receives the mapped point; may be `pt`.
 */
SCANLINE_API void pointRT(const cv::Mat& R,
                          const cv::Mat& T,
                          const cv::Point3_<double>& center1,
                          const cv::Point3_<double>& center2,
                          const cv::Point3_<double>& pt,
                          cv::Point3_<double>& out);
