#pragma once

/**
 * @file
 * Records of scan data, of ranges and of the calibration result, and the rules they share.
 *
 * All records are plain aggregates that the caller owns. Arrays of them cross the boundary of the
 * library, so the order and the widths of their fields are fixed.
 *
 * Vectors of the standard library cross the boundary too. Its debug modes change their layout, so a
 * program must use the same mode as the library: `_GLIBCXX_DEBUG` of libstdc++,
 * `_ITERATOR_DEBUG_LEVEL` and the kind of run-time library of Visual C++.
 *
 * **Axes and units.** A scan is a sequence of lines, a line a sequence of samples. Along a line the
 * samples follow y, from line to line the scan advances in x, and z is the measured value. All
 * lengths are in the unit of the samples and are never converted. Angles are in degrees.
 *
 * **Two forms of a scan.** The pointer form is an array of `STesk3DLaserLine` with a count, the
 * vector form a vector of vectors of `STesk3DPosition`.
 *
 * **The no-sample rule.** A sample whose z is below 0.0001 holds no measurement: it keeps its place
 * on the line and takes part in nothing else. Only z decides; x and y of 0.0 are values like any
 * other. A sample is deleted by writing 0.0 into its z. Functions apply the rule by one of three
 * tests, which differ only at 0.0001 itself and at NaN:
 *
 * | Test          | A sample that passes is | One that fails is | z = 0.0001   | z = NaN      |
 * |---------------|-------------------------|-------------------|--------------|--------------|
 * | `0.0001 > z`  | *missing*               | *valid*           | valid        | valid        |
 * | `z > 0.0001`  | *measured*              | not measured      | not measured | not measured |
 * | `z <= 0.0001` | a *hole*                | not a hole        | hole         | not a hole   |
 *
 * The documentation of each function uses exactly these words, so "skips missing samples" and
 * "takes measured samples" are different statements.
 *
 * **The empty-range rule.** A range whose `min` is greater than its `max` is empty; a new one is
 * 0.0 to -1.0.
 *
 * **The word of a sample.** `nPointIdx` is not kept up to date. It holds what the caller or one of
 * these functions wrote last:
 * - the index of the sample on its line: qo_getLineGapFeature(), ju_getLineCorerFeature(),
 *   qo_getLineLocalPeaks(), qo_getLineDownJumps(), ju_getRingArcFeature() and
 *   ju_getLineRaisedFeature();
 * - its index inside a run: qo_getLineUpperSemiCircleFeature();
 * - 0: ju_getLineDataIntervals(), ju_surfaceLineSegment() and qo_getHolePlaneCalibPara();
 * - 1 on the ground and 0 elsewhere: qo_HCameraVScan_getGroundCalibPara();
 * - marks: qo_getFlatLineLocalPeaks_vector(), and by a bitwise or with what it held
 *   qo_getLineCornerFeature_BQ() and ju_getLineCornerFeature_PSM().
 */

#include <cstdint>

/** A point in space. */
struct STesk3DPoint {
  double x;  ///< Position across the lines: the scan advances in x from line to line.
  double y;  ///< Position along a scan line.
  double z;  ///< The measured value. Feature names read it as a distance: a small z is high.
};

/** A two-dimensional integer position: a grid cell, a pixel or a point of a raster line. */
struct STesk2DPoint {
  int x;  ///< First index: column, or line index.
  int y;  ///< Second index: row, or index of a sample on its line.
};

/** A two-dimensional point. */
struct STesk2DPointD {
  double x;  ///< First coordinate.
  double y;  ///< Second coordinate.
};

/** One sample of a scan line. */
struct STesk3DPosition {
  /// Working word: an index, a mark or a set of flags. Functions that read or write it are
  /// documented as doing so.
  int nPointIdx;
  STesk3DPoint pt3D;  ///< The measured point.
};

/** One scan line as pointer and count: an element of the pointer form of a scan. */
struct STesk3DLaserLine {
  STesk3DPosition* p3DPosition;  ///< First sample; the memory belongs to the caller.
  int nPositionCnt;              ///< Number of samples at `p3DPosition`.
  std::uint64_t lineTag;         ///< For the caller's use; neither read nor written.
};

/** One element of a colour line. Its coordinates are single precision. */
struct STeskXYZRGBDPoint {
  float x;             ///< As in STesk3DPoint.
  float y;             ///< As in STesk3DPoint.
  float z;             ///< As in STesk3DPoint; tested after conversion to double.
  std::uint32_t nRGB;  ///< Colour word; copied bit for bit and never interpreted.
};

/** One colour scan line as pointer and count. */
struct STeskXYZRGBDLaserLine {
  STeskXYZRGBDPoint* pXYZRGBD;  ///< First element; the memory belongs to the caller.
  int nPointCnt;                ///< Number of elements at `pXYZRGBD`.
};

/** A closed interval; empty when `min` is greater than `max`. */
struct STeskRangeD {
  double min;  ///< Lower end.
  double max;  ///< Upper end.
};

/** A box: one range per axis, each of which may be empty by itself. */
struct STesk3DRangeD {
  STeskRangeD xRange;  ///< Extent in x.
  STeskRangeD yRange;  ///< Extent in y.
  STeskRangeD zRange;  ///< Extent in z.
};

/** An integer rectangle, inclusive at both ends. */
struct STeskRect {
  int left;    ///< Smallest first index.
  int right;   ///< Largest first index.
  int top;     ///< Smallest second index.
  int bottom;  ///< Largest second index.
};

/**
 * An integer position with values: a peak, a seed or a contour point.
 *
 * | On           | `x`                 | `y`                              |
 * |--------------|---------------------|----------------------------------|
 * | a scan       | index of the line   | index of the sample on that line |
 * | a height map | column of the pixel | row of the pixel                 |
 */
struct SQO_2DValueI {
  int x;          ///< First index.
  int y;          ///< Second index.
  int value;      ///< 0 for a peak, the point type on a contour, the label of a seed.
  double valueD;  ///< Value at the position: z of the sample, or the value of the map.
  int tag;        ///< The tag given to qo_contourPostProc(); 0 from all other functions.
};

/** A pair of edge labels. */
struct SQO_intPair {
  int first;   ///< First label of the pair.
  int second;  ///< Second label of the pair.
  int third;   ///< For the caller's use; not read.
};

/** A run: consecutive samples of one line with one property. */
struct SQO_RUN {
  int start;  ///< Index of the run's first sample on the line.
  int len;    ///< Number of indices from `start` to the last sample, inclusive.
  int value;  ///< Label or end index of the run; see ju_getLineDataIntervals().
};

/** Bounds and mean spacing of a scan. */
struct SJU_pointCloudPara {
  STeskRangeD xRange;   ///< Bounds of all valid samples in x.
  STeskRangeD yRange;   ///< Bounds in y.
  STeskRangeD zRange;   ///< Bounds in z.
  double scanLineStep;  ///< Mean distance in x of neighbouring lines; -1.0 if unknown.
  double ptStep;        ///< Mean distance in y of neighbouring samples; -1.0 if unknown.
};

/** Result of a plane calibration, with which the line transforms level a scan. */
struct SQO_planeCalibPara {
  /// Rotation, row by row, from scan coordinates to the levelled frame. There the reference plane
  /// has a constant z; after a ground calibration the ground has a constant y.
  double levelMatrix[9];
  /// That constant z or y; -1.0 if qo_getPlaneCalibPara() or qo_getPlaneCalibPara2() found no
  /// plane. No other function uses -1.0 as a mark.
  double planeHeight;
  /// Rotation, row by row, from levelled coordinates back to scan coordinates.
  double invLevelMatrix[9];
};

/** The rotation Rz(yaw) Ry(pitch) Rx(roll) of column vectors; angles in degrees. */
struct SQO_EulerAngles {
  double roll;   ///< Rotation about x.
  double pitch;  ///< Rotation about y.
  double yaw;    ///< Rotation about z.
};
