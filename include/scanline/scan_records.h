#pragma once

/**
 * @file
 * Records of scan data, of ranges and of the calibration result.
 *
 * All records are plain aggregates that the caller owns. Arrays of them cross the library's
 * boundary, so the order and the widths of their fields are fixed.
 *
 * Vectors of the standard library cross the boundary too. Its debug modes change their layout, so a
 * program must use the same as the library: `_GLIBCXX_DEBUG` of libstdc++, `_ITERATOR_DEBUG_LEVEL`
 * and the kind of runtime of Visual C++.
 *
 * A scan is an ordered sequence of lines, a line an ordered sequence of samples. Along a line the
 * samples follow y, from line to line the scan advances in x, and z is the measured value. All
 * lengths are in the unit of the incoming samples, which is never converted; angles are in degrees.
 *
 * The no-sample rule: a sample whose z is below 0.0001 holds no measurement. It keeps its place on
 * its line and takes part in nothing else. A sample is deleted by writing 0.0 into its z.
 *
 * The empty-range rule: a range whose `min` is greater than its `max` is empty; a fresh one is
 * 0.0 to -1.0.
 */

#include <cstdint>

/** One point in space. */
struct STesk3DPoint {
  double x;  ///< Position across the scan lines: what advances from line to line.
  double y;  ///< Position along a scan line.
  double z;  ///< The measured value. Feature names treat it as a distance: a small z is high.
};

/** A two-dimensional integer position: a grid cell, a pixel, a raster step. */
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
  /// Working word of the sample: its place on the line, a mark, or a set of flags. Functions that
  /// write or read it say so.
  int nPointIdx;
  STesk3DPoint pt3D;  ///< The measured point.
};

/** One scan line as pointer and count: an element of the pointer form of a scan. */
struct STesk3DLaserLine {
  STesk3DPosition* p3DPosition;  ///< First sample; the memory belongs to the caller.
  int nPositionCnt;              ///< Number of samples at `p3DPosition`.
  std::uint64_t lineTag;  ///< The caller's own word; the library neither reads nor writes it.
};

/** One element of a colour line. Its coordinates are single precision. */
struct STeskXYZRGBDPoint {
  float x;             ///< As in STesk3DPoint.
  float y;             ///< As in STesk3DPoint.
  float z;             ///< As in STesk3DPoint; the no-sample rule holds after widening to double.
  std::uint32_t nRGB;  ///< Colour word, carried along bit for bit and never looked into.
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

/** A box: one range per axis, each empty or not by itself. */
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
 * An integer position with values: a peak, seed or contour point on a scan (`x` the line, `y` the
 * sample) or on a height map (`x`, `y` the pixel).
 */
struct SQO_2DValueI {
  int x;          ///< First index.
  int y;          ///< Second index.
  int value;      ///< 0 for a peak, the point type on a contour, the label of a seed.
  double valueD;  ///< Height at the position: the sample's z, or the map's value.
  int tag;        ///< A caller's tag, 0 where no function is told to write it.
};

/** A pair of edge labels. */
struct SQO_intPair {
  int first;   ///< First label of the pair.
  int second;  ///< Second label of the pair.
  int third;   ///< The caller's own word; the library does not read it.
};

/** A run of samples on one line. */
struct SQO_RUN {
  int start;  ///< Index of the run's first sample on the line.
  int len;    ///< Length of the run; each function says what it counts.
  int value;  ///< Label, state or end index of the run; each function says which.
};

/** Bounds and mean spacing of a scan. */
struct SJU_pointCloudPara {
  STeskRangeD xRange;   ///< Bounds of all samples in x.
  STeskRangeD yRange;   ///< Bounds in y.
  STeskRangeD zRange;   ///< Bounds in z.
  double scanLineStep;  ///< Mean distance in x between neighbouring lines; -1.0 if unknown.
  double ptStep;        ///< Mean distance in y between neighbouring samples; -1.0 if unknown.
};

/** Result of a plane calibration, and what the line transforms level a scan with. */
struct SQO_planeCalibPara {
  /// Rotation, row by row, from scan coordinates to the levelled frame, in which the reference
  /// plane is horizontal.
  double levelMatrix[9];
  /// Height of the reference plane in the levelled frame, as a z (for a ground calibration as a
  /// y); -1.0 if a search by heights found none.
  double planeHeight;
  /// Rotation, row by row, from levelled coordinates back to scan coordinates.
  double invLevelMatrix[9];
};

/** The rotation Rz(yaw) Ry(pitch) Rx(roll), each angle in degrees. */
struct SQO_EulerAngles {
  double roll;   ///< Rotation about x.
  double pitch;  ///< Rotation about y.
  double yaw;    ///< Rotation about z.
};
