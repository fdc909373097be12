#pragma once

/**
 * @file
 * Growing of feature trees across the lines of a scan.
 */

#include <vector>

#include "feature_records.h"
#include "scanline_export.h"

SCANLINE_API void qo_getFeatureGrowingTrees(std::vector<SQO_lineFeature>& lineFeatures,
                                            std::vector<SQO_featureTree>& trees,
                                            SQO_treeGrowParam growParam);
SCANLINE_API void qo_lineFeaturesGrowing(int lineIdx,
                                         bool isLastLine,
                                         std::vector<SQO_basicFeature1D>& features,
                                         std::vector<SQO_featureTree>& trees,
                                         SQO_treeGrowParam growParam);
SCANLINE_API void qo_cornerFeaturesGrowing(
    std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
    std::vector<SQO_featureTree>& trees,
    SQO_treeGrowParam growParam);
SCANLINE_API void qo_peakFeatureGrowing(std::vector<std::vector<SQO_basicFeature1D>>& lineFeatures,
                                        std::vector<SQO_featureTree>& trees,
                                        SQO_treeGrowParam growParam);
