#pragma once

/**
 * @file
 * Formulas on lines in the plane, and least-squares fits.
 *
 * A line occurs in two forms: the general form a x + b y + c = 0, which is not normalised, and the
 * slope form y = k x + b, which is the general form k x - y + b = 0.
 *
 * Nothing here checks for degenerate input unless told: a division by zero gives the infinity or
 * the not-a-number that floating point gives. The fits take points that are already chosen; only
 * computeMeanZ() knows the no-sample rule, and none rejects outliers.
 */

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

// ---------------------------------------------------------------------------------------------
// Lines through points and crossings
// ---------------------------------------------------------------------------------------------

/**
 * Finds the crossing of two lines in general form, by Cramer's rule.
 *
 * @param a1,b1,c1  The first line.
 * @param a2,b2,c2  The second line.
 * @return The crossing in x and y, with a z of 0.0. Parallel lines are not tested for: their x and
 *         y are not finite.
 */
SCANLINE_API STesk3DPoint
computeLineCrossPt_abs(double a1, double b1, double c1, double a2, double b2, double c2);

/**
 * Finds the general form of the line through two points, in x and y only.
 *
 * @param p1,p2        The points. Equal points give three zeros.
 * @param[out] a,b,c   The line: y2 - y1, x1 - x2, x2 y1 - x1 y2.
 */
SCANLINE_API void compute2ptLine(STesk3DPoint p1, STesk3DPoint p2, double* a, double* b, double* c);

/**
 * Finds the general form of the line through two points, as compute2ptLine() does.
 *
 * @param x1,y1        The first point.
 * @param x2,y2        The second point. Equal points give three zeros.
 * @param[out] a,b,c   The line.
 */
SCANLINE_API void compute2ptLine_2(
    double x1, double y1, double x2, double y2, double* a, double* b, double* c);

/**
 * Finds the line through a point that is turned clockwise by 45 degrees against a given line.
 *
 * @param a,b  Normal of the given line.
 * @param c    Not used: the point alone places the new line.
 * @param x,y  The point.
 * @param[out] newA,newB,newC  The new line. Its normal is longer than (a, b) by the square root
 *                             of 2.
 */
SCANLINE_API void rotateLine45Deg(
    double a, double b, double c, double x, double y, double* newA, double* newB, double* newC);

// ---------------------------------------------------------------------------------------------
// Angles, in degrees
// ---------------------------------------------------------------------------------------------

/**
 * Finds the smallest angle between two directions.
 *
 * @param theta1,theta2  The directions in degrees, at most 360 apart: a single turn is added to a
 *                       negative difference, and no more is done.
 * @return The angle in degrees, 0 to 180.
 */
SCANLINE_API double computeAngleDiff(double theta1, double theta2);

/**
 * Finds the angle of a line in general form.
 *
 * A slanting line gets its slope angle plus a quarter turn, whereas a line with a = 0 gets 0.0 and
 * one with b = 0 gets 90.0, neither of them turned.
 *
 * @param a,b  Normal of the line; a is looked at first, so that a = b = 0 gives 0.0.
 * @param c    Not used.
 * @return The angle in degrees, from 0 to 180; 180 itself only by rounding.
 */
SCANLINE_API double getLineAngle(double a, double b, double c);

// ---------------------------------------------------------------------------------------------
// Distances and feet of perpendiculars
// ---------------------------------------------------------------------------------------------

/**
 * Finds the distance of two points in x and y.
 *
 * @param p1,p2  The points; z is ignored.
 * @return The distance.
 */
SCANLINE_API double compute2DLen(STesk3DPoint p1, STesk3DPoint p2);

/**
 * Finds the distance of a point from a line in general form.
 *
 * @param x,y    The point.
 * @param a,b,c  The line. With a = b = 0 the result is not finite.
 * @return The distance, without a sign.
 */
SCANLINE_API double computePtDistToLine(double x, double y, double a, double b, double c);

/**
 * Finds the foot of the perpendicular from a point on a line in slope form.
 *
 * @param x,y  The point.
 * @param k,b  The line y = k x + b.
 * @return The foot.
 */
SCANLINE_API STesk2DPointD ny_getFootPoint(double x, double y, double k, double b);

/**
 * Finds the foot of the perpendicular from a point on a line in general form.
 *
 * @param x,y    The point.
 * @param a,b,c  The line. With a = b = 0 the result is not finite.
 * @return The foot.
 */
SCANLINE_API STesk2DPointD ny_getFootPoint_abc(double x, double y, double a, double b, double c);

// ---------------------------------------------------------------------------------------------
// Raster
// ---------------------------------------------------------------------------------------------

/**
 * Draws a raster line by Bresenham's error rule.
 *
 * The points run from the start to the end, both included; where both axes are due they step in the
 * same round, so that there are max(|x1 - x0|, |y1 - y0|) + 1 points. Equal ends give one point.
 *
 * @param x0,y0           The start.
 * @param x1,y1           The end.
 * @param[in,out] points  The points are appended.
 * @throw std::bad_alloc  if memory runs out; @p points is unchanged.
 */
SCANLINE_API void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points);

// ---------------------------------------------------------------------------------------------
// Fits in the plane
// ---------------------------------------------------------------------------------------------

/**
 * Fits a line in slope form by ordinary least squares of y on x.
 *
 * @param points     The points; z is ignored.
 * @param[out] k,b   The line y = k x + b. They are written in any case, and not finite for an empty
 *                   list or points that all have one x.
 */
SCANLINE_API void lineFitting(std::vector<STesk3DPoint>& points, double* k, double* b);

/**
 * Fits a line in general form by ordinary least squares along its flatter direction.
 *
 * If the first and the last point are strictly farther apart in y than in x, x is fitted on y and
 * the line is 1 x + b y + c = 0; otherwise y is fitted on x and it is a x - 1 y + c = 0. The points
 * between have no say in the choice, and the two results are not normalised to one another.
 *
 * @param points       The points; z is ignored.
 * @param[out] a,b,c   The line; untouched with fewer than 2 points.
 */
SCANLINE_API void lineFitting_abc(std::vector<STesk3DPoint>& points,
                                  double* a,
                                  double* b,
                                  double* c);

/**
 * Fits a circle in x and y by algebraic least squares (the method of Kasa).
 *
 * @param points       The points; z is ignored. For collinear points the results mean nothing.
 * @param[out] center  Its x and y are set, its z is left alone.
 * @param[out] radius  The radius.
 * @return The error, a squared length: the largest squared distance of a point from the center less
 *         the squared radius, and at least 0.0. Points inside the circle, and points whose distance
 *         is not a number, count for nothing. With fewer than 3 points the largest double, and
 *         `center` and `radius` are untouched.
 */
SCANLINE_API double fitCircleByLeastSquare(const std::vector<STesk3DPoint>& points,
                                           STesk3DPoint& center,
                                           double& radius);

/**
 * Fits a parabola y = a x^2 + b x + c by least squares, through a singular value decomposition.
 *
 * @param points          The points.
 * @param[out] a,b,c      The coefficients; with too few different x those of smallest norm. They
 *                        are not numbers if an x, or the square of one, is not finite.
 * @param[out] mse        The mean of the squared errors in y.
 * @param[out] maxError   The largest absolute error in y; errors that are not numbers do not count.
 * @return False with fewer than 3 points, which leave all outputs untouched; otherwise true.
 * @throw std::bad_alloc  if memory runs out; all outputs are unchanged.
 */
SCANLINE_API bool leastSquareParabolaFitEigen(const std::vector<cv::Point_<double>>& points,
                                              double& a,
                                              double& b,
                                              double& c,
                                              double& mse,
                                              double& maxError);

// ---------------------------------------------------------------------------------------------
// Fits in space
// ---------------------------------------------------------------------------------------------

/**
 * Fits a line in space by total least squares: the centroid of the points and their principal axis.
 *
 * The axis is the eigenvector of the largest eigenvalue of the points' scatter matrix. Its sign is
 * the solver's choice, and so is the axis itself if all points are equal.
 *
 * This is the only function of the library that prints: each of its two failures writes a line in
 * GBK to the standard error stream.
 *
 * @param points          The points.
 * @param[out] center     The centroid; untouched with fewer than 2 points.
 * @param[out] direction  The axis as a unit vector; untouched on failure.
 * @return False with fewer than 2 points, and when the decomposition fails, as it does when a
 *         coordinate is not finite; otherwise true.
 * @throw std::bad_alloc  if memory runs out; @p center and @p direction are unchanged.
 */
SCANLINE_API bool fitLine3DLeastSquares(const std::vector<STesk3DPoint>& points,
                                        STesk3DPoint& center,
                                        STesk3DPoint& direction);

/**
 * Finds the mean z of the valid points.
 *
 * @param points  The points; those count whose z is strictly greater than 0.0001.
 * @return The mean, or 0.0 if no point counts.
 */
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
 * @throw std::exception  if memory runs out; @p R, @p T and the centers are unchanged.
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
