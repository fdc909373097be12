#pragma once

#include <scanline/line_features.h>
#include "features/corner_stages.h"

namespace scanline::detail {

/// Selects the peaks among the bends towards the sensor (`posPeaks`) and away from it (`negPeaks`),
/// by their magnitudes within `peakWin` in y. Both lists are appended to.
void ju_selectCornerPeaks(const Slopes& slopes,
                          const Samples& validPoints,
                          const SQO_cornerParam& cornerPara,
                          double peakWin,
                          Slopes& posPeaks,
                          Slopes& negPeaks);

}  // namespace scanline::detail
