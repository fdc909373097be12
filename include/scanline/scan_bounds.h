#pragma once

/**
 * @file
 * Bounds and mean spacing of scans and point lists.
 *
 * The functions only read their input. They skip a sample when 0.0001 is greater than its z; only
 * z decides, so that an x or y of 0.0 counts like any other. A z that is not a number passes the
 * test.
 */

#include <vector>

#include <scanline/export.h>
#include <scanline/scan_records.h>

/**
 * Finds the bounding box of a scan in pointer form.
 *
 * Lines and samples are folded into the box in their order, each axis by itself: the first value
 * sets both ends of its range, later ones move an end they lie strictly beyond. A range that began
 * with a value that is not a number therefore stays as it is.
 *
 * @param lines    The lines of the scan; lines without samples are passed over.
 * @param lineNum  Number of lines at `lines`, which is not looked at if the number is below 1.
 * @return The box; all three ranges are empty (0.0 to -1.0) if the scan holds no valid sample.
 */
SCANLINE_API STesk3DRangeD qo_getScanDataROI(STesk3DLaserLine* lines, int lineNum);

/**
 * Finds the bounding box of a scan in vector form, by the rules of qo_getScanDataROI().
 *
 * @param scan  The lines of the scan; they need not be of the same length.
 * @return The box; all three ranges are empty (0.0 to -1.0) if the scan holds no valid sample.
 */
SCANLINE_API STesk3DRangeD
qo_getScanDataROI_vector(std::vector<std::vector<STesk3DPosition>>& scan);

/**
 * Finds the bounding box of a point list, by the rules of qo_getScanDataROI().
 *
 * @param points  The points; those without a valid z are skipped.
 * @return The box; all three ranges are empty (0.0 to -1.0) if the list holds no valid point.
 */
SCANLINE_API STesk3DRangeD ju_getPointCloudROI(std::vector<STesk3DPoint>& points);

/**
 * Finds the bounding box of a scan and the mean spacing of its samples, in one pass.
 *
 * The box is that of qo_getScanDataROI_vector(). `ptStep` is the mean absolute difference in y of
 * a valid sample to the one before it on its line, `scanLineStep` that in x to the sample of equal
 * index on the line before. Only direct neighbours count, gaps are not bridged, and the neighbour's
 * z must be strictly greater than 0.0001, so that a sample at 0.0001 is in the box but is nobody's
 * neighbour.
 *
 * @param scan  The lines of the scan. No line may be longer than the line before it; this is not
 *              checked, and a longer one is read beyond the end of the line before.
 * @return The bounds, empty (0.0 to -1.0) without a valid sample, and the two steps, each -1.0
 *         without a pair of neighbours.
 */
SCANLINE_API SJU_pointCloudPara
ju_getPointCloudPara(std::vector<std::vector<STesk3DPosition>>& scan);
