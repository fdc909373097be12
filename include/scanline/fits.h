#pragma once

/**
 * @file
 * Least-squares fits of lines, circles and parabolas to lists of points. geometry.h describes what
 * holds for degenerate input and which results are the same bits on every machine.
 *
 * The fits use all points that they are given. They reject no outliers and, except for
 * computeMeanZ(), do not look for missing samples.
 */

#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Fits a line in slope form, y = k x + b, by least squares of y on x.
 *
 * The divisor is D = n Sxx - Sx Sx, with n the number of points and S the sums that the indices
 * name.
 *
 * @param points     the points; z is ignored
 * @param[out] k,b   the line; always set. NaN for an empty list. If all points have the same x, D
 *                   is 0 in exact arithmetic: the results are then infinite or NaN, or, more often
 *                   than not, finite and meaningless because rounding leaves D different from 0.
 * @pre At least two points differ in x. Use lineFitting_abc() for lines that may be steep.
 *
 * Cost: linear in the points.
 *
 * Method: ordinary linear regression.
 */
SCANLINE_API void lineFitting(std::vector<STesk3DPoint>& points, double* k, double* b);

/**
 * Fits a line in general form, a x + b y + c = 0, by least squares along its flatter direction.
 *
 * Only the first and the last point decide which direction that is. With dx and dy their distances
 * in x and in y:
 *
 * | Case      | Regression | Result                      |
 * |-----------|------------|-----------------------------|
 * | dy > dx   | x on y     | a = 1, and x + b y + c = 0  |
 * | otherwise | y on x     | b = -1, and a x - y + c = 0 |
 *
 * So a or b shows which case it was; the two are not normalised to one another.
 *
 * @param points       the points; z is ignored
 * @param[out] a,b,c   the line; unchanged with fewer than 2 points. Infinite, NaN or meaningless,
 *                     as in lineFitting(), if all points agree in the coordinate regressed on:
 *                     equal points, or points of equal x of which the last returns to the first.
 *
 * Cost: linear in the points.
 *
 * Method: ordinary linear regression.
 */
SCANLINE_API void lineFitting_abc(std::vector<STesk3DPoint>& points,
                                  double* a,
                                  double* b,
                                  double* c);

/**
 * Fits a circle in the x-y plane by algebraic least squares.
 *
 * The returned error is one-sided: points inside the circle do not count.
 *
 * @param points       the points; z is ignored
 * @param[out] center  its x and y are set, its z is unchanged
 * @param[out] radius  the radius; NaN if its square comes out negative
 * @return the largest squared distance of a point from the center less the squared radius, but at
 *         least 0.0; points for which this is NaN do not count. With fewer than 3 points the
 *         largest double, and @p center and @p radius are unchanged.
 * @pre The points are not collinear. For collinear points the results are meaningless, and nearly
 *      always finite.
 *
 * Cost: linear in the points.
 *
 * Method: Kasa, "A circle fitting procedure and its error analysis" (1976). On short arcs it
 * underestimates the radius.
 */
SCANLINE_API double fitCircleByLeastSquare(const std::vector<STesk3DPoint>& points,
                                           STesk3DPoint& center,
                                           double& radius);

/**
 * Fits a parabola, y = a x^2 + b x + c, by least squares.
 *
 * @param points          the points
 * @param[out] a,b,c      the coefficients. With fewer than 3 different x, those of smallest norm.
 *                        NaN if an x or its square is not finite; not finite if a y is not finite.
 * @param[out] mse        the mean of the squared errors in y; NaN where a coefficient is not finite
 * @param[out] maxError   the largest absolute error in y; errors that are NaN do not count
 * @return false with fewer than 3 points, with all outputs unchanged; otherwise true
 * @throw std::bad_alloc  if memory runs out; all outputs are unchanged
 *
 * Cost: linear in the points.
 *
 * Method: singular value decomposition of the matrix of rows (x^2, x, 1), by Eigen. Shift x towards
 * 0 first if its values are large compared with their spread: the columns are nearly dependent
 * then.
 */
SCANLINE_API bool leastSquareParabolaFitEigen(const std::vector<cv::Point_<double>>& points,
                                              double& a,
                                              double& b,
                                              double& c,
                                              double& mse,
                                              double& maxError);

/**
 * Fits a line in space by total least squares: the centroid of the points and their principal axis.
 *
 * This is the only function of the library that prints: it writes a line, encoded in GBK, to the
 * standard error stream each time that it returns false.
 *
 * @param points          the points
 * @param[out] center     the centroid; unchanged with fewer than 2 points
 * @param[out] direction  the axis as a unit vector; unchanged if false is returned. Its sign is the
 *                        solver's choice. For equal points it is an arbitrary unit vector.
 * @return false with fewer than 2 points, and if the decomposition fails, as it does if a
 *         coordinate is not finite (@p center is then set, and not finite); otherwise true
 * @throw std::bad_alloc  if memory runs out; @p center and @p direction are unchanged
 *
 * Cost: linear in the points.
 *
 * Method: eigenvector of the largest eigenvalue of the scatter matrix of the points, by Eigen.
 */
SCANLINE_API bool fitLine3DLeastSquares(const std::vector<STesk3DPoint>& points,
                                        STesk3DPoint& center,
                                        STesk3DPoint& direction);

/**
 * Computes the mean z of the measured points (`z > 0.0001`).
 *
 * @param points  the points
 * @return the mean, or 0.0 if no point is measured
 *
 * Cost: linear in the points.
 */
SCANLINE_API double computeMeanZ(std::vector<STesk3DPoint>& points);
