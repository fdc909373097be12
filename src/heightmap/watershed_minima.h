#pragma once

#include "heightmap/padded_plane.h"

namespace scanline::detail {

/// Labels the pixels whose value nothing in their window undercuts, off the border of the image.
void ju_findWatershedMinima(const PixelRows& gray, int height, int width, PaddedPlane& labels);

}  // namespace scanline::detail
