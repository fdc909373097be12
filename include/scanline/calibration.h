#pragma once

/**
 * @file
 * Calibration of a scanner against a reference plane, and levelling of scan lines with it.
 *
 * A scan of a reference plane shows the plane at some tilt. A calibration finds the rotation that
 * levels it; from then on every line is levelled with one matrix product per sample, so that the
 * plane lies at one constant height and what lies beyond a chosen height can be cut away.
 *
 * All matrices are rotations of column vectors about the origin of the scan coordinates, stored
 * row by row. What cannot be found is told by the result, as each function says.
 */

#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Finds the rotation that turns the normal of a plane onto (0, 0, -1).
 *
 * It is the shortest rotation from the one direction to the other, so a normal (a, b, -1) is turned
 * by its tilt alone. `invLevelMatrix` is the rotation from (0, 0, -1) to the normal, found by
 * itself and not by transposing.
 *
 * Directions closer than a dot product of 0.9999999 count as equal and give the identity, as does a
 * normal shorter than 1e-7. Opposite ones, with a dot product below -0.9999999, give the half turn
 * about the x axis.
 *
 * @param a, b, c  The normal; its length does not matter.
 * @return The two rotations, with a `planeHeight` of 0.0 that stands for nothing: the caller sets
 * it.
 */
SCANLINE_API SQO_planeCalibPara adjustPlaneToXYPlane(double a, double b, double c);

/**
 * Finds the shortest rotation that turns one direction onto another.
 *
 * As adjustPlaneToXYPlane() with a target of the caller's. Opposite directions give the half turn
 * about the x axis whether or not it is perpendicular to them (if it is not, the rotation does not
 * take the one onto the other); only a source within 1e-7 of the x axis itself gives the half turn
 * about the y axis.
 *
 * @param from, to  The directions, of any length; neither is changed.
 * @return `levelMatrix` from `from` to `to`, `invLevelMatrix` from `to` to `from`, `planeHeight`
 * 0.0.
 */
SCANLINE_API SQO_planeCalibPara ju_computeRTMatrix(STesk3DPoint& from, STesk3DPoint& to);

/**
 * Levels a line in place and cuts away what lies beyond a height.
 *
 * Every sample is rotated; one whose new z is greater than the cut height becomes a no-sample: its
 * new z is 0.0, its new x and y are stored. A no-sample is left entirely as it is, and `nPointIdx`
 * of every sample stays. A new z that comes out below 0.0001 is stored as such.
 *
 * @param line       The line; a count of 0 or below leaves it untouched.
 * @param matrix     Nine doubles: the `levelMatrix` of a calibration, or its `invLevelMatrix` to go
 *                   back.
 * @param cutHeight  Upper limit of the levelled z, itself not cut; 0.0 or below cuts nothing.
 */
SCANLINE_API void lineDataRT(STesk3DLaserLine* line, const double* matrix, double cutHeight);

/**
 * Levels a line in place and cuts away what lies beyond a height: lineDataRT() for a vector.
 *
 * @param line       The line; an empty one is left as it is.
 * @param matrix     Nine doubles, as for lineDataRT().
 * @param cutHeight  Upper limit of the levelled z, itself not cut; 0.0 or below cuts nothing.
 */
SCANLINE_API void lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                    const double* matrix,
                                    double cutHeight);

/**
 * Levels a line in place and cuts away the ground and what lies beyond it in y.
 *
 * The counterpart of a ground calibration, whose levelled frame has the ground at a constant y. It
 * differs from lineDataRT_vector() in the cut alone, which tests the new y and also cuts at the
 * limit itself.
 *
 * @param line       The line; an empty one is left as it is.
 * @param matrix     Nine doubles, as for lineDataRT().
 * @param cutHeight  Limit of the levelled y: a sample at or beyond it gets z 0.0; 0.0 or below cuts
 *                   nothing.
 */
SCANLINE_API void HCamera_lineDataRT_vector(std::vector<STesk3DPosition>& line,
                                            const double* matrix,
                                            double cutHeight);

/**
 * Levels a colour line in place and cuts away what lies beyond a height: lineDataRT() for colour.
 *
 * No-sample test, rotation and cut are in double; the results are rounded to single precision when
 * they are stored. The colour word stays bit for bit.
 *
 * @param line       The line; a count of 0 or below leaves it untouched.
 * @param matrix     Nine doubles, as for lineDataRT().
 * @param cutHeight  Upper limit of the levelled z, itself not cut; 0.0 or below cuts nothing.
 */
SCANLINE_API void lineDataRT_RGBD(STeskXYZRGBDLaserLine* line,
                                  const double* matrix,
                                  double cutHeight);

/**
 * Finds the Euler angles of a rotation matrix: R = Rz(yaw) Ry(pitch) Rx(roll).
 *
 * At gimbal lock, where the cosine of the pitch is not above 1e-6, roll is 0.0 and yaw carries the
 * whole turn about the vertical.
 *
 * @param R  A rotation matrix, not checked; an R[2][0] beyond -1 to 1 makes the pitch NaN.
 * @return The angles in degrees, pitch from -90 to 90, roll and yaw from -180 to 180.
 */
SCANLINE_API SQO_EulerAngles rotationMatrixToEulerZYX(const double R[3][3]);

/**
 * Writes the rotation matrix Rz(yaw) Ry(pitch) Rx(roll), in which the roll acts first.
 *
 * @param angles  Roll, pitch and yaw in degrees.
 * @param R       All nine elements are written.
 */
SCANLINE_API void eulerToRotationMatrixZYX(const SQO_EulerAngles& angles, double R[3][3]);

/**
 * Finds the reference plane of a scan by the distribution of its heights.
 *
 * A histogram of z in bins 1.0 wide is smoothed by a sliding sum over 11 bins. Of the peaks of that
 * profile with more than a tenth of all samples, the one of the smallest z is taken to be the
 * plane. The nearest valleys on its two sides that reach below half of it bound the plane's
 * samples, which go through teskCaculateLaserPlane() and adjustPlaneToXYPlane().
 *
 * A surface at the very lowest heights of the scan whose profile does not rise first is no peak. In
 * particular heights that span less than 2.0 give no plane.
 *
 * @param lines    The scan, which is only read.
 * @param lineNum  Number of lines; 0 or below is an empty scan.
 * @return `levelMatrix` and `invLevelMatrix`, and as `planeHeight` the smallest levelled z of the
 *         plane's samples. Without a plane (no samples, no peak that is strong enough, heights that
 *         are not finite) both matrices are the identity and `planeHeight` is -1.0.
 * @throw std::length_error  if the heights span 2147483647 or more, which an int cannot number.
 * @throw std::bad_alloc  if memory runs out; nothing of the caller's is changed. The memory needed
 *        follows the number of samples, not the span of their heights.
 */
SCANLINE_API SQO_planeCalibPara qo_getPlaneCalibPara(STesk3DLaserLine* lines, int lineNum);

/**
 * Finds the reference plane of a scan by the distribution of its heights, its height as a mean.
 *
 * As qo_getPlaneCalibPara(), of the same plane and with the same matrices, but for `planeHeight`.
 *
 * @param scan  The scan, which is only read.
 * @return As qo_getPlaneCalibPara(), with the mean instead of the smallest levelled z of the
 *         plane's samples; -1.0 likewise if there is no plane.
 * @throw std::length_error  as qo_getPlaneCalibPara().
 * @throw std::bad_alloc  if memory runs out; @p scan is unchanged.
 */
SCANLINE_API SQO_planeCalibPara
qo_getPlaneCalibPara2(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Fits the reference plane to the samples of a region that is known to show it.
 *
 * A sample is in the region if its x and y are in `xRange` and `yRange`, its z is at least
 * `zRange.min` and, the odd one, its y is at most `zRange.max`: the upper end of `zRange` is a
 * second upper limit of y, and z has none. All limits belong to the region. Its samples go through
 * teskCaculateLaserPlane() and adjustPlaneToXYPlane().
 *
 * @param scan  The scan, which is only read.
 * @param roi   The region.
 * @return The two matrices, and as `planeHeight` the smallest levelled z of the region's samples.
 *         Without a sample both matrices are the identity and `planeHeight` is 0.0. There is no
 *         record for a failure.
 * @throw std::bad_alloc  if memory runs out; @p scan is unchanged.
 */
SCANLINE_API SQO_planeCalibPara
qo_getPlaneCalibPara2_ROI(std::vector<std::vector<STesk3DPosition>>& scan, STesk3DRangeD roi);

/**
 * Fits the reference plane to the samples of several regions together.
 *
 * As qo_getPlaneCalibPara2_ROI(), with the samples that are in at least one of the regions, the
 * upper end of each `zRange` being a limit of y here too. A sample that is in several counts once.
 *
 * @param lines    The scan, which is only read.
 * @param lineNum  Number of lines; 0 or below is an empty scan.
 * @param rois     The regions; none at all hold no sample. Not changed.
 * @return As qo_getPlaneCalibPara2_ROI().
 * @throw std::bad_alloc  if memory runs out; @p lines and @p rois are unchanged.
 */
SCANLINE_API SQO_planeCalibPara qo_getPlaneCalibPara_ROIs(STesk3DLaserLine* lines,
                                                          int lineNum,
                                                          std::vector<STesk3DRangeD>& rois);

/**
 * Fits the reference plane to the lines that no hole in it breaks.
 *
 * A line is used if ju_getLineDataIntervals() finds it to be one run, with steps from measured
 * sample to measured sample below 1.0 in y and in z; of such a line every measured sample is
 * used, whatever its height. They go through teskCaculateLaserPlane() and adjustPlaneToXYPlane().
 *
 * @param scan  The scan; `nPointIdx` of every sample becomes 0, nothing else is changed.
 * @return The two matrices, and as `planeHeight` the mean levelled z of the samples used. If no
 *         line is in one piece both matrices are the identity and `planeHeight` is 0.0; it is
 *         never a mark that no plane was found.
 * @throw std::bad_alloc  if memory runs out; `nPointIdx` of the samples of @p scan is valid but
 *        incomplete, nothing else is changed.
 */
SCANLINE_API SQO_planeCalibPara
qo_getHolePlaneCalibPara(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Finds the ground that scan lines end on, and the rotation that brings it to a constant y.
 *
 * The last run of each line (steps below 5.0 in y and 10.0 in z, see ju_getLineDataIntervals()) is
 * divided into straight pieces by split(), less than 2.0 from their chords. The last piece is
 * ground if z falls along it at more than 60 degrees to the y axis. A line without a run, or whose
 * last run gives no piece, has no ground. The plane of all ground samples, by
 * teskCaculateLaserPlane(), is turned onto (0, 1, 0), or onto (0, -1, 0) if the first leaves the
 * ground at a negative y. HCamera_lineDataRT_vector() levels and cuts lines with the result.
 *
 * @param scan  The scan; `nPointIdx` becomes 1 in the measured samples (z above 0.0001) of the
 *              ground and 0 in all others. Nothing else is changed.
 * @return The two matrices, and as `planeHeight` the mean levelled y, not z, of the ground's
 *         samples. Without ground the rotation is the quarter turn from (0, 0, -1) to (0, 1, 0) and
 *         `planeHeight` is 0.0; it is never a mark that no ground was found.
 * @throw std::bad_alloc  if memory runs out; `nPointIdx` of the samples of @p scan is valid but
 *        incomplete, nothing else is changed.
 */
SCANLINE_API SQO_planeCalibPara
qo_HCameraVScan_getGroundCalibPara(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Fits the plane z = a x + b y + c to points by linear least squares in z.
 *
 * The matrix of the normal equations is inverted by OpenCV (`cv::invert` with `DECOMP_LU`) and the
 * inverse is multiplied by their right side. If the matrix is singular, as for no points, points on
 * one line, or a plane that contains the z direction, the inverse is zero, and so are a, b and c.
 * Rounding may leave the matrix of such points regular; the result is then what the inverse gives.
 * No point is left out; the no-sample rule is not applied.
 *
 * @param points  The points.
 * @param res     The four doubles a, b, -1.0, c are appended, which are the coefficients of
 *                a x + b y - z + c = 0; what it holds before stays.
 * @throw std::bad_alloc  if memory runs out; @p res is unchanged.
 */
SCANLINE_API void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points,
                                         std::vector<double>& res);
