#pragma once

#include <vector>

#include "heightmap/padded_plane.h"

namespace scanline::detail {

/**
 * The places of a square plane of markers in the order in which its pixels are flooded: ascending
 * by grey value, then by the value's column, then by its row. Rows and columns are crossed: the
 * value at row r and column c stands for the place at row c and column r.
 */
std::vector<Place> floodOrder(const PixelRows& gray, int side, const PaddedPlane& markers);

}  // namespace scanline::detail
