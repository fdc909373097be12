#pragma once

/**
 * @file
 * Rotations between directions, levelling of scan lines, and Euler angles. calibration.h describes
 * the conventions for matrices.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Computes the rotation that turns the normal of a plane onto (0, 0, -1).
 *
 * It is ju_computeRTMatrix() from (a, b, c) to (0, 0, -1). A normal (a, b, -1), as
 * teskCaculateLaserPlane() gives it, is turned by the tilt of the plane alone.
 *
 * @param a, b, c  the normal, of any length
 * @return the two rotations, with a `planeHeight` of 0.0 that has no meaning: set it if it is
 *         needed
 *
 * Cost: constant.
 */
SCANLINE_API SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c);

/**
 * Computes the shortest rotation that turns one direction onto another.
 *
 * With d the dot product of the two unit vectors, the first row that holds is the result:
 *
 * | Case                                                      | Rotation about               |
 * |-----------------------------------------------------------|------------------------------|
 * | a length below 1e-7                                       | identity                     |
 * | d > 0.9999999: one direction, within 0.03 degrees         | identity                     |
 * | d < -0.9999999: opposite directions, `from` on the x axis | the y axis, by 180 degrees   |
 * | d < -0.9999999: other opposite directions                 | the x axis, by 180 degrees   |
 * | otherwise                                                 | the cross product of the two |
 *
 * The half turn about the x axis takes a direction onto its opposite only if it is perpendicular to
 * that axis. For other opposite directions the result does not map the one onto the other: (1, 1,
 * 0) goes to (1, -1, 0), not to (-1, -1, 0). "On the x axis" means that y and z of the unit vector
 * are below 1e-7 in magnitude.
 *
 * `invLevelMatrix` is found by the same rules from `to` to `from`, not by transposing
 * `levelMatrix`. The two are inverse to each other, except for opposite directions of which only
 * one counts as on the x axis.
 *
 * @param from, to  the directions, of any length; only read
 * @return `levelMatrix` from @p from to @p to, `invLevelMatrix` from @p to to @p from, and a
 *         `planeHeight` of 0.0
 * @pre All coordinates are finite; otherwise elements of the matrices may be NaN.
 *
 * Cost: constant.
 *
 * Method: unit quaternion from half the angle and the normalised cross product.
 */
SCANLINE_API SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to);

/**
 * Levels a line in place and cuts away what lies beyond a height.
 *
 * Every valid sample is rotated. If its new z is strictly greater than the cut height, 0.0 is
 * stored in its place, so that the sample becomes missing; its new x and y are stored all the same.
 * Missing samples (`0.0001 > z`) stay as they are, and so does `nPointIdx` of all samples. A new z
 * that comes out below 0.0001 is stored, and the sample is missing from then on.
 *
 * @param line       the line; unchanged if its count is below 1
 * @param matrix     nine doubles, row by row: the `levelMatrix` of a calibration, or its
 *                   `invLevelMatrix` to go back
 * @param cutHeight  upper limit of the levelled z; 0.0 or below, or NaN, cuts nothing
 *
 * Cost: linear in the samples.
 */
SCANLINE_API void lineDataRT(STesk3DLaserLine* line, const double* matrix, double cutHeight);

/**
 * Levels a line in place and cuts away what lies beyond a height: lineDataRT() for a vector.
 *
 * @param line       the line
 * @param matrix     nine doubles, as for lineDataRT()
 * @param cutHeight  upper limit of the levelled z; 0.0 or below, or NaN, cuts nothing
 *
 * Cost: linear in the samples.
 *
 * @code
 * const SQO_planeCalibPara plane = qo_getPlaneCalibPara2(reference);
 * for (std::vector<STesk3DPosition>& line : scan) {
 *   lineDataRT_vector(line, plane.levelMatrix, plane.planeHeight - 2.0);  // keeps smaller z
 * }
 * @endcode
 */
SCANLINE_API void lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                    const double* matrix,
                                    double cutHeight);

/**
 * Levels a line in place and cuts away the ground and what lies beyond it in y.
 *
 * It is for the result of qo_HCameraVScan_getGroundCalibPara(), whose levelled frame has the ground
 * at a constant y. It differs from lineDataRT_vector() only in the cut, which tests the new y and
 * is inclusive.
 *
 * @param line       the line
 * @param matrix     nine doubles, as for lineDataRT()
 * @param cutHeight  limit of the levelled y: a sample at or beyond it gets a z of 0.0. 0.0 or
 *                   below, or NaN, cuts nothing.
 *
 * Cost: linear in the samples.
 */
SCANLINE_API void HCamera_lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                            const double* matrix,
                                            double cutHeight);

/**
 * Levels a colour line in place and cuts away what lies beyond a height: lineDataRT() for colour.
 *
 * The test for missing samples, the rotation and the cut are in double precision; the results are
 * rounded to single precision when they are stored. The colour word is unchanged.
 *
 * @param line       the line; unchanged if its count is below 1
 * @param matrix     nine doubles, as for lineDataRT()
 * @param cutHeight  upper limit of the levelled z; 0.0 or below, or NaN, cuts nothing
 *
 * Cost: linear in the samples.
 */
SCANLINE_API void lineDataRT_RGBD(STeskXYZRGBDLaserLine* line,
                                  const double* matrix,
                                  double cutHeight);

/**
 * Computes the Euler angles of a rotation matrix R = Rz(yaw) Ry(pitch) Rx(roll).
 *
 * Gimbal lock is where the cosine of the pitch is at most 1e-6 in magnitude: roll is 0.0 there, and
 * yaw has the whole turn about the z axis.
 *
 * @param R  a rotation matrix, which is not checked; an R[2][0] outside -1 to 1 gives a pitch of
 *           NaN and is treated as gimbal lock
 * @return the angles in degrees: pitch from -90 to 90, roll and yaw from -180 to 180
 *
 * Cost: constant.
 */
SCANLINE_API SQO_EulerAngles rotationMatrixToEulerZYX(const double R[3][3]);

/**
 * Computes the rotation matrix Rz(yaw) Ry(pitch) Rx(roll), in which the roll acts first.
 *
 * @param angles  roll, pitch and yaw in degrees
 * @param R       all nine elements are set
 *
 * Cost: constant.
 */
SCANLINE_API void eulerToRotationMatrixZYX(const SQO_EulerAngles& angles, double R[3][3]);
