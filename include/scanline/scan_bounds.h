#pragma once

/**
 * @file
 * Bounds and mean spacing of scans and point lists.
 *
 * All functions only read their input and skip missing samples (`0.0001 > z`); scan_records.h
 * defines the terms. Each takes one pass over its input and allocates nothing.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Finds the bounding box of the valid samples of a scan in pointer form.
 *
 * Samples are taken line by line in their order, each axis by itself: the first value sets both
 * ends of the range, a later one moves an end only if it is strictly beyond it. So a range whose
 * first value is NaN stays NaN, and a later NaN has no effect.
 *
 * @param lines    the lines of the scan; lines without samples are skipped
 * @param lineNum  number of lines; below 1 the scan is empty and @p lines is not read
 * @return the box; all three ranges are empty (0.0 to -1.0) if no sample is valid
 *
 * Cost: linear in the samples.
 */
SCANLINE_API STesk3DRangeD qo_getScanDataROI(STesk3DLaserLine* lines, int lineNum);

/**
 * Finds the bounding box of the valid samples of a scan in vector form, by the rules of
 * qo_getScanDataROI().
 *
 * @param scan  the lines of the scan; they may differ in length
 * @return the box; all three ranges are empty (0.0 to -1.0) if no sample is valid
 *
 * Cost: linear in the samples.
 */
SCANLINE_API STesk3DRangeD
qo_getScanDataROI_vector(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Finds the bounding box of a list of points, by the rules of qo_getScanDataROI().
 *
 * @param points  the points; those with a z below 0.0001 are skipped, as missing samples are
 * @return the box; all three ranges are empty (0.0 to -1.0) if no point is left
 *
 * Cost: linear in the points.
 */
SCANLINE_API STesk3DRangeD ju_getPointCloudROI(std::vector<STesk3DPoint>& points);

/**
 * Finds the bounding box of a scan and the mean spacing of its samples.
 *
 * The box is that of qo_getScanDataROI_vector(). The two steps are means over pairs of a valid
 * sample and a measured neighbour:
 *
 * | Step           | Neighbour                                       | Mean of       |
 * |----------------|-------------------------------------------------|---------------|
 * | `ptStep`       | the sample before it on the line                | distance in y |
 * | `scanLineStep` | the sample of equal index on the line before it | distance in x |
 *
 * Only these direct neighbours count; no gap is bridged. The neighbour must be measured
 * (`z > 0.0001`), so a sample at exactly 0.0001 is in the box but is no one's neighbour.
 *
 * @param scan  the lines of the scan
 * @return the bounds, empty (0.0 to -1.0) if no sample is valid, and the two steps, each -1.0 if it
 *         has no pair
 * @pre No line is longer than the line before it. Otherwise the line before it is read beyond its
 *      end.
 *
 * Cost: linear in the samples.
 *
 * @code
 * const SJU_pointCloudPara cloud = ju_getPointCloudPara(scan);
 * if (cloud.ptStep < 0.0 || cloud.scanLineStep < 0.0) {
 *   // too few samples to know the spacing
 * }
 * @endcode
 */
SCANLINE_API SJU_pointCloudPara
ju_getPointCloudPara(std::vector<std::vector<STesk3DPosition>>& scan);
