#pragma once

/**
 * @file
 * Extractors of features on one scan line.
 *
 * They see a line as a profile in the y-z plane; x only travels along in the features. Outputs are
 * appended to and never cleared.
 */

#include "feature_records.h"
#include "scan_records.h"
#include "scanline_export.h"

/**
 * Tuning of the corner search. Lengths are in the unit of the samples, angles in degrees.
 */
struct SQO_cornerParam {
  double minEndingGap;    ///< Two runs of samples are joined if their facing ends are closer in y.
  double minEndingGap_z;  ///< Step in z that breaks a run of samples; limit in z for joining two.
  double scale;           ///< Distance in the y-z plane over which slopes are measured.
  double cornerTh;        ///< Smallest corner measure of a feature.
  double jumpCornerTh_1;  ///< Angle beyond which an arm of a corner counts as steep.
  double jumpCornerTh_2;  ///< Angle up to which an arm may run against the direction of a jump.
};

/**
 * Finds the corners of a line, typed by their arms, and the ends of its data segments.
 *
 * At each valid sample (z above 0.0001) the chords to the nearest samples at least `scale` away,
 * one on either side, give a backward and a forward angle; holes do not stop the search for them.
 * The corner measure is the backward angle minus the forward angle, so a place where z turns from
 * growing to shrinking has a large one. A local maximum of it becomes a feature unless it is below
 * `cornerTh` or a greater maximum lies within 2 * `scale` in y; equal ones both stay. With a the
 * backward and f the forward angle its type is
 * - `FEATURE_JUMP_RISE` if a > `jumpCornerTh_1` and f > -`jumpCornerTh_2`,
 * - `FEATURE_JUMP_FALL` if f < -`jumpCornerTh_1` and a < `jumpCornerTh_2`,
 * - `FEATURE_CORNER_OTHER` otherwise.
 *
 * A data segment is a run of valid samples without a step in z above `minEndingGap_z`. Segments on
 * the two sides of a hole are joined if their facing ends differ by less than `minEndingGap` in y
 * and less than `minEndingGap_z` in z.
 *
 * Costs the number of samples times the neighbours within one `scale`.
 *
 * @param lineData      the samples of the line in order; only read
 * @param dataSize      number of samples; below 1 nothing is appended
 * @param lineIdx       index of the line, stored in the record and in all features
 * @param cornerPara    tuning
 * @param line_features `lineIdx` is set in any case. Corners are appended to `features` in line
 *                      order, with `featureValue` 0; to `endings` a `FEATURE_SEG_START` and a
 *                      `FEATURE_SEG_END` for each segment.
 */
SCANLINE_API void qo_getLineCornerFeature(STesk3DPosition* lineData,
                                          int dataSize,
                                          int lineIdx,
                                          SQO_cornerParam cornerPara,
                                          SQO_lineFeature* line_features);
