#pragma once

/**
 * @file
 * Extractors of features on one scan line.
 */

#include "feature_records.h"
#include "scan_records.h"
#include "scanline_export.h"

/** Tuning of the corner search. Lengths are in the unit of the samples, angles in degrees. */
struct SQO_cornerParam {
  double minEndingGap;    ///< Limit in y for joining two runs of samples.
  double minEndingGap_z;  ///< Step in z that breaks a run, and limit in z for joining two.
  double scale;           ///< Distance in the y-z plane over which the slopes are measured.
  double cornerTh;        ///< Smallest corner measure of a feature.
  double jumpCornerTh_1;  ///< Angle from which an arm counts as steep.
  double jumpCornerTh_2;  ///< Angle up to which an arm counts as flat.
};

SCANLINE_API void qo_getLineCornerFeature(STesk3DPosition* lineData,
                                          int dataSize,
                                          int lineIdx,
                                          SQO_cornerParam cornerPara,
                                          SQO_lineFeature* line_features);
