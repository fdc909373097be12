#pragma once

/**
 * @file
 * Bounds and mean spacing of scans and point lists.
 */

#include <vector>

#include "scan_records.h"
#include "scanline_export.h"

SCANLINE_API STesk3DRangeD qo_getScanDataROI(STesk3DLaserLine* lines, int lineNum);

SCANLINE_API STesk3DRangeD
qo_getScanDataROI_vector(std::vector<std::vector<STesk3DPosition>>& scan);

SCANLINE_API STesk3DRangeD ju_getPointCloudROI(std::vector<STesk3DPoint>& points);

SCANLINE_API SJU_pointCloudPara
ju_getPointCloudPara(std::vector<std::vector<STesk3DPosition>>& scan);
