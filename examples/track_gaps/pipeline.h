#pragma once

#include <string>
#include <vector>

#include <scanline/scanline.h>
#include "progress.h"
#include "scan_types.h"

namespace examples {

/// What tunes the search for gaps.
struct GapParams {
  SQO_cornerParam corner;  ///< What makes a rim; angles of jumps play no part.
  STeskRangeD width;       ///< How wide a gap may be.
  SQO_treeGrowParam grow;  ///< How gaps of neighbouring lines are linked.
};

/// The gaps of each line.
using LineGaps = std::vector<std::vector<SQO_basicFeatureGap>>;

/// What a step of the pipeline took.
struct StepTime {
  std::string name;
  double seconds;
};

/// Finds the plane that much of the scan lies on. Without one the matrices change nothing.
SQO_planeCalibPara calibrate(Scan& scan);

/// Turns a scan so that the plane lies at one distance.
Scan levelled(Scan scan, const SQO_planeCalibPara& calibration);

/// Finds the gaps of each line by itself.
LineGaps findGaps(Scan& scan, const GapParams& params);

/// Follows the gaps from line to line.
std::vector<SQO_gapFeatureTree> followGaps(LineGaps& gaps, const SQO_treeGrowParam& grow);

}  // namespace examples
