#pragma once

#include <scanline/watershed.h>

namespace scanline::detail {

/// Labels the minima of an image, as watershed() documents. If std::bad_alloc is thrown, the image
/// is unchanged.
void markMinima(SJU_waterShedImage& image);

}  // namespace scanline::detail
