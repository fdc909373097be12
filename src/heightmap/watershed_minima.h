#pragma once

#include <scanline/watershed.h>

namespace scanline::detail {

/// Labels the pixels off the border of the image that have no smaller value in their window. If
/// std::bad_alloc is thrown, the image is unchanged.
void markMinima(SJU_waterShedImage& image);

}  // namespace scanline::detail
