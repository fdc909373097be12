#pragma once

#include <vector>

#include <scanline/watershed.h>

namespace binding {

/// A pixel up to `maxLevel` that the seeded flood of an image would not reach, so that it would
/// wait forever; or {-1, -1}. The arguments are as for ju_seedWatershed().
STesk2DPoint unreachedPixel(const SJU_waterShedImage& image,
                            const std::vector<SQO_2DValueI>& seeds,
                            int maxLevel,
                            int startLabel);

}  // namespace binding
