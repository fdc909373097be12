#pragma once

/**
 * @file
 * Searches for the reference plane of a scan, and the fit of a plane to points. calibration.h
 * describes the conventions for matrices and which results are the same bits on every machine.
 *
 * | Function                             | Samples that the plane is fitted to | Levelled height |
 * |--------------------------------------|-------------------------------------|-----------------|
 * | qo_getPlaneCalibPara()               | of the lowest strong peak in z      | smallest z      |
 * | qo_getPlaneCalibPara2()              | the same                            | mean z          |
 * | qo_getPlaneCalibPara2_ROI()          | in a region                         | smallest z      |
 * | qo_getPlaneCalibPara_ROIs()          | in any of several regions           | smallest z      |
 * | qo_getHolePlaneCalibPara()           | of all lines in one piece           | mean z          |
 * | qo_HCameraVScan_getGroundCalibPara() | of the steep ends of lines          | mean y          |
 *
 * All but the last turn the normal of the plane onto (0, 0, -1), as adjustPlaneToXYPlane() does; a
 * plane that is tilted by less than 0.026 degrees stays as it is. The plane is fitted by
 * teskCaculateLaserPlane(), for which coordinates are rounded to single precision.
 */

#include <opencv2/core/types.hpp>
#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Finds the reference plane of a scan by the distribution of its heights.
 *
 * The plane is the surface of smallest z that holds more than a tenth of the valid samples:
 * 1. The z of the valid samples are counted in bins 1.0 wide, from the smallest z on.
 * 2. The profile of a bin is the sum over the 11 bins around it. If the profile is the same in all
 *    bins, as it always is if the heights span less than 6.0, the counts themselves take its place.
 * 3. The profile is followed upwards. A peak is the last bin before the profile falls after a rise,
 *    a valley the last bin before it rises after a fall. The highest bin is a peak after a rise and
 *    a valley after a fall. The lowest bin is neither.
 * 4. The lowest peak of more than a tenth of all valid samples is the plane.
 * 5. The nearest valley to either side whose profile is less than half of the peak's, rounded down,
 *    bounds the heights of the plane; without one, the smallest or largest z of the scan does. The
 *    plane is fitted to all samples between these heights, inclusive.
 *
 * **Which scans it can level.** Since the lowest bin is no peak, a plane is only found if the
 * profile rises towards it. Its own tilt and noise must therefore spread its heights:
 *
 * | Heights of the valid samples, above the smallest one | Result                               |
 * |------------------------------------------------------|--------------------------------------|
 * | all below 2.0                                        | no plane, -1.0                       |
 * | all below 6.0                                        | the plane or -1.0, as the counts are |
 * | some from 6.0 to 11.0                                | the lowest strong peak               |
 * | some below 6.0, the others above 11.0                | a surface *above* the plane, or -1.0 |
 *
 * The first row is a bare, almost level plane with little noise, the last one such a plane with
 * objects on it. In the second row there is a peak if some bin other than the highest is fuller
 * than the bin below it.
 *
 * A plane whose heights spread evenly over 110 or more is not found, because 11 bins hold no more
 * than a tenth of it. Where the plane is known, or the scan shows nothing but the plane, use
 * qo_getPlaneCalibPara2_ROI() or qo_getPlaneCalibPara_ROIs(), which need no spread.
 *
 * @param lines    the scan; only read
 * @param lineNum  number of lines; below 1 the scan is empty
 * @return `levelMatrix` and `invLevelMatrix`, and as `planeHeight` the smallest levelled z of the
 *         samples of the plane. Without a plane (no valid sample, no peak that is strong enough, a
 *         smallest or largest z that is not finite) both matrices are the identity and
 *         `planeHeight` is -1.0: test it before levelling.
 * @throw std::length_error  if the heights span 2147483647 or more
 * @throw std::bad_alloc     if memory runs out; nothing of the caller's is changed
 *
 * Cost: linear in the samples, or n log n if the heights spread over more than 8 bins per sample;
 * the memory follows the number of samples, not the span of their heights.
 *
 * Method: peak of a histogram smoothed by a moving sum; linear least squares in z.
 *
 * @code
 * const int count = static_cast<int>(lines.size());
 * const SQO_planeCalibPara plane = qo_getPlaneCalibPara(lines.data(), count);
 * if (plane.planeHeight == -1.0) {
 *   // no plane: see above for which scans that is so
 * }
 * @endcode
 */
SCANLINE_API SQO_planeCalibPara qo_getPlaneCalibPara(STesk3DLaserLine* lines, int lineNum);

/**
 * Finds the reference plane of a scan by the distribution of its heights, and its mean height.
 *
 * As qo_getPlaneCalibPara(), with the same plane and the same matrices, except for `planeHeight`.
 *
 * @param scan  the scan; only read
 * @return as qo_getPlaneCalibPara(), with the mean levelled z of the samples of the plane as
 *         `planeHeight`; -1.0 likewise if there is no plane
 * @throw std::length_error  if the heights span 2147483647 or more
 * @throw std::bad_alloc     if memory runs out; @p scan is unchanged
 *
 * Cost: that of qo_getPlaneCalibPara().
 */
SCANLINE_API SQO_planeCalibPara
qo_getPlaneCalibPara2(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Fits the reference plane to the samples of a region that is known to show it.
 *
 * A valid sample is in the region if all of these hold, inclusively:
 * - its x is in `xRange` and its y is in `yRange`;
 * - its z is at least `zRange.min`;
 * - its *y*, not its z, is at most `zRange.max`. z has no upper limit.
 *
 * @param scan  the scan; only read
 * @param roi   the region. Set `zRange.max` to `yRange.max` or above if it is not meant to limit y.
 * @return the two matrices, and as `planeHeight` the smallest levelled z of the samples of the
 *         region. Without a sample in it both matrices are the identity and `planeHeight` is 0.0;
 *         no result marks a failure.
 * @throw std::bad_alloc  if memory runs out; @p scan is unchanged
 *
 * Cost: linear in the samples.
 *
 * @code
 * // Levels by a scan of the bare plane, however little its heights spread.
 * STesk3DRangeD region = qo_getScanDataROI_vector(reference);
 * region.zRange.max = region.yRange.max;
 * const SQO_planeCalibPara plane = qo_getPlaneCalibPara2_ROI(reference, region);
 * @endcode
 */
SCANLINE_API SQO_planeCalibPara
qo_getPlaneCalibPara2_ROI(std::vector<std::vector<STesk3DPosition>>& scan, STesk3DRangeD roi);

/**
 * Fits the reference plane to the samples of several regions together.
 *
 * A sample is used if it is in at least one region, by the rules of qo_getPlaneCalibPara2_ROI():
 * here too the upper end of `zRange` limits y. A sample in several regions counts once.
 *
 * @param lines    the scan; only read
 * @param lineNum  number of lines; below 1 the scan is empty
 * @param rois     the regions; only read. An empty list holds no sample.
 * @return as qo_getPlaneCalibPara2_ROI()
 * @throw std::bad_alloc  if memory runs out; @p lines and @p rois are unchanged
 *
 * Cost: linear in the samples; each is compared with the regions until one holds it.
 */
SCANLINE_API SQO_planeCalibPara qo_getPlaneCalibPara_ROIs(STesk3DLaserLine* lines,
                                                          int lineNum,
                                                          std::vector<STesk3DRangeD>& rois);

/**
 * Fits the reference plane to the lines that no hole in the plane interrupts.
 *
 * A line is used if it is one run of ju_getLineDataIntervals() with limits of 1.0 in y and in z:
 * each measured sample differs from the measured sample before it by less than 1.0 in both. Missing
 * samples alone do not interrupt a line. Of such a line every valid sample is used, whatever its
 * height; so are a z of exactly 0.0001, and a z of NaN, which makes the fit NaN.
 *
 * @param scan  the scan; `nPointIdx` of every sample becomes 0, nothing else is changed
 * @return the two matrices, and as `planeHeight` the mean levelled z of the samples used. If no
 *         line is in one piece both matrices are the identity and `planeHeight` is 0.0; no result
 *         marks a failure.
 * @throw std::bad_alloc  if memory runs out; `nPointIdx` of the samples of @p scan is valid but
 *        incomplete, nothing else is changed
 *
 * Cost: linear in the samples.
 */
SCANLINE_API SQO_planeCalibPara
qo_getHolePlaneCalibPara(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Finds the ground on which the lines of a scan end, and the rotation that brings it to a constant
 * y.
 *
 * Of each line:
 * 1. The last run is taken (ju_getLineDataIntervals(), with limits of 5.0 in y and 10.0 in z).
 * 2. It is divided into straight pieces (split(), with a distance of 2.0), and the last piece is
 *    taken.
 * 3. The piece is ground if z falls along it at more than 60 degrees to the y axis (strict).
 *
 * Lines without a run, and runs without a piece, have no ground. The plane through the measured
 * samples of all ground pieces is turned onto (0, 1, 0), or onto (0, -1, 0) if that leaves the
 * ground at a negative y. HCamera_lineDataRT_vector() levels and cuts lines with the result.
 *
 * @param scan  the scan; `nPointIdx` becomes 1 in the measured samples of the ground and 0 in all
 *              others, nothing else is changed
 * @return the two matrices, and as `planeHeight` the mean levelled y of the ground, which is not
 *         negative. Without ground the rotation is the quarter turn from (0, 0, -1) to (0, 1, 0)
 *         and `planeHeight` is 0.0; no result marks a failure.
 * @throw std::bad_alloc  if memory runs out; `nPointIdx` of the samples of @p scan is valid but
 *        incomplete, nothing else is changed
 *
 * Cost: linear in the samples, and that of split() for the last run of each line.
 */
SCANLINE_API SQO_planeCalibPara
qo_HCameraVScan_getGroundCalibPara(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Fits the plane z = a x + b y + c to points by linear least squares in z.
 *
 * All points are used, whatever their z. The points should determine a plane that is not parallel
 * to the z axis, which is not checked:
 * - No points give a = b = c = 0.
 * - For points that are collinear in x and y (fewer than 3 points, a line, a wall) the matrix of
 *   the normal equations is singular in exact arithmetic. If it comes out exactly singular, as it
 *   does for small whole numbers, a = b = c = 0. More often rounding leaves it regular, and the
 *   result is arbitrary.
 * - If a coordinate is not finite, the result is not finite.
 *
 * @param points  the points
 * @param res     a, b, -1.0 and c are appended: the coefficients of a x + b y - z + c = 0
 * @throw std::bad_alloc  if memory runs out; @p res is unchanged
 *
 * Cost: linear in the points, which are copied.
 *
 * Method: normal equations, summed in double precision. Their matrix is inverted explicitly
 * (`cv::invert` with `DECOMP_LU`) and the inverse is multiplied by the right side.
 *
 * @code
 * std::vector<double> plane;
 * teskCaculateLaserPlane({{0, 0, 4}, {1, 0, 6}, {0, 1, 7}, {1, 1, 9}}, plane);  // 2, 3, -1, 4
 * @endcode
 */
SCANLINE_API void teskCaculateLaserPlane(std::vector<cv::Point3_<float>> points,
                                         std::vector<double>& res);
