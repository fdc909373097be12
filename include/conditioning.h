#pragma once

/**
 * @file
 * Cleaning of single scan lines: smoothing and the removal of outliers.
 */

#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

/** What counts as an outlier on a line. */
struct SQO_outlierFilterParam {
  /// Two consecutive measured samples belong to one stretch if they differ by less than this.
  double continuityTh;
  /// A stretch of fewer measured samples than this is blanked; a count, kept as a double.
  double outlierTh;
};

SCANLINE_API void qo_lineDataSmoothing(std::vector<STesk3DPosition>& input,
                                       int smoothWin,
                                       std::vector<STesk3DPosition>& lineDataOut);
SCANLINE_API void qo_lineSegSmoothing(std::vector<STesk3DPosition>& input,
                                      double seg_y_deltaTh,
                                      double seg_z_deltaTh,
                                      int smoothWin,
                                      std::vector<STesk3DPosition>& lineDataOut);
SCANLINE_API void qo_lineDataRemoveOutlier(STesk3DPosition* lineData,
                                           int dataSize,
                                           SQO_outlierFilterParam outlierPara,
                                           std::vector<STesk3DPosition>& filteredData,
                                           std::vector<int>& noisePts);
SCANLINE_API void qo_lineDataRemoveOutlier_changeOriginData(STesk3DPosition* lineData,
                                                            int dataSize,
                                                            SQO_outlierFilterParam outlierPara);
SCANLINE_API void ju_vectorDataRemoveOutlier_overwrite(std::vector<STesk3DPosition>& lineData,
                                                       SQO_outlierFilterParam outlierPara);
SCANLINE_API void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                                        int dataSize,
                                                        SQO_outlierFilterParam outlierPara,
                                                        std::vector<STesk3DPosition>& filteredData,
                                                        std::vector<int>& noisePts);
