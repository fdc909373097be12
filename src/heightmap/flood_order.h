#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "heightmap/padded_plane.h"

namespace scanline::detail {

/// Position of a pixel in an image whose sides have 16 bits.
struct PixelPosition {
  std::uint16_t row;
  std::uint16_t column;
};

/**
 * The pixels of a square in the order in which they are flooded: ascending by grey value, then by
 * the column of the value, then by its row. Rows and columns are crossed: the value at row r and
 * column c stands for the pixel at row c and column r.
 *
 * `side` is from 1 to 65535. Returns `side` * `side` positions.
 */
std::unique_ptr<PixelPosition[]> floodOrder(const PixelRows& gray, int side);

}  // namespace scanline::detail
