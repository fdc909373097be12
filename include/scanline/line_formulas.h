#pragma once

/**
 * @file
 * Formulas on lines and points in the plane, and raster lines. geometry.h describes what holds for
 * degenerate input and which results are the same bits on every machine.
 *
 * The plane is that of x and y, whatever the caller takes these to be. A line has two forms:
 *
 * | Form         | Equation          | As the other form                     |
 * |--------------|-------------------|---------------------------------------|
 * | general form | a x + b y + c = 0 | k = -a / b, b = -c / b, unless b is 0 |
 * | slope form   | y = k x + b       | a = k, b = -1, c = b                  |
 *
 * The general form is not normalised: multiples of (a, b, c) are the same line.
 *
 * Cost: constant, except for drawLine().
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Computes the crossing of two lines in general form.
 *
 * @param a1,b1,c1  the first line
 * @param a2,b2,c2  the second line
 * @return the crossing in x and y, with a z of 0.0
 * @pre The lines are not parallel. For parallel lines the divisor a1 b2 - b1 a2 is 0, and x and y
 *      are infinite or NaN, unless rounding leaves a tiny divisor: then they are finite and
 *      meaningless.
 *
 * Method: Cramer's rule.
 */
SCANLINE_API STesk3DPoint
computeLineCrossPt_abs(double a1, double b1, double c1, double a2, double b2, double c2);

/**
 * Computes the line through two points, in general form: a = y2 - y1, b = x1 - x2,
 * c = x2 y1 - x1 y2.
 *
 * @param p1,p2        the points; z is ignored. Equal points give a = b = c = 0.
 * @param[out] a,b,c   the line; always set
 */
SCANLINE_API void compute2ptLine(STesk3DPoint p1, STesk3DPoint p2, double* a, double* b, double* c);

/**
 * Computes the line through two points, as compute2ptLine() does.
 *
 * @param x1,y1        the first point
 * @param x2,y2        the second point. Equal points give a = b = c = 0.
 * @param[out] a,b,c   the line; always set
 */
SCANLINE_API void compute2ptLine_2(
    double x1, double y1, double x2, double y2, double* a, double* b, double* c);

/**
 * Computes the line through a point that is turned by 45 degrees against a given line.
 *
 * The turn is clockwise, seen with x to the right and y up. The new coefficients are not
 * normalised: the length of (newA, newB) is that of (a, b) times the square root of 2.
 *
 * @param a,b  normal of the given line
 * @param c    not used, since the point alone places the new line
 * @param x,y  the point
 * @param[out] newA,newB,newC  the new line: a + b, b - a, -newA x - newB y; always set
 */
SCANLINE_API void rotateLine45Deg(
    double a, double b, double c, double x, double y, double* newA, double* newB, double* newC);

/**
 * Computes the smallest angle between two directions.
 *
 * @param theta1,theta2  the directions in degrees
 * @return the angle in degrees, from 0 to 180
 * @pre The directions differ by at most 360. Only one full turn is ever added or removed: 370 and 0
 *      give -10.
 */
SCANLINE_API double computeAngleDiff(double theta1, double theta2);

/**
 * Computes an angle that identifies the direction of a line in general form.
 *
 * | Line               | Result in degrees                                                      |
 * |--------------------|------------------------------------------------------------------------|
 * | a = 0 (horizontal) | 0.0, also if b is 0                                                    |
 * | b = 0 (vertical)   | 90.0                                                                   |
 * | any other          | angle of the slope, atan(-a / b), plus 90: the direction of the normal |
 *
 * So an oblique line is turned by 90 degrees against the other two: nearly horizontal lines give
 * nearly 90, nearly vertical ones nearly 0 or nearly 180.
 *
 * @param a,b  normal of the line
 * @param c    not used
 * @return the angle in degrees, from 0 to 180; 180 itself only by rounding. NaN if a or b is NaN
 *         and neither is 0.
 */
SCANLINE_API double getLineAngle(double a, double b, double c);

/**
 * Computes the distance of two points in the x-y plane.
 *
 * @param p1,p2  the points; z is ignored
 * @return the distance
 */
SCANLINE_API double compute2DLen(STesk3DPoint p1, STesk3DPoint p2);

/**
 * Computes the distance of a point from a line in general form.
 *
 * @param x,y    the point
 * @param a,b,c  the line; with a = b = 0 the result is infinite, or NaN if c is 0 too
 * @return the distance, without a sign
 */
SCANLINE_API double computePtDistToLine(double x, double y, double a, double b, double c);

/**
 * Computes the foot of the perpendicular from a point to a line in slope form.
 *
 * @param x,y  the point
 * @param k,b  the line y = k x + b
 * @return the foot
 */
SCANLINE_API STesk2DPointD ny_getFootPoint(double x, double y, double k, double b);

/**
 * Computes the foot of the perpendicular from a point to a line in general form.
 *
 * @param x,y    the point
 * @param a,b,c  the line; with a = b = 0 the result is NaN
 * @return the foot
 */
SCANLINE_API STesk2DPointD ny_getFootPoint_abc(double x, double y, double a, double b, double c);

/**
 * Draws a raster line from one point to another.
 *
 * The points are in order from the start to the end, inclusive. Each step moves by one in x, in
 * y or in both, so that there are max(|x1 - x0|, |y1 - y0|) + 1 points; equal ends give one point.
 *
 * @param x0,y0           the start
 * @param x1,y1           the end
 * @param[in,out] points  the points are appended
 * @throw std::bad_alloc  if memory runs out; @p points is unchanged
 *
 * Cost: linear in the points of the line.
 *
 * Method: Bresenham's error rule.
 *
 * @code
 * std::vector<STesk2DPoint> points;
 * drawLine(0, 0, 3, 1, points);  // (0, 0), (1, 0), (2, 1), (3, 1)
 * @endcode
 */
SCANLINE_API void drawLine(int x0, int y0, int x1, int y1, std::vector<STesk2DPoint>& points);
