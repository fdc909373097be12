#pragma once

#include <string>

namespace program {

/**
 * Refuses TIFF files that OpenCV reads without an error but not as they were meant: lossy encodings
 * of colours, several pages, palettes, and files shorter than their header states. Files that are
 * no TIFF pass.
 *
 * @throws Failure (badInput) with the reason and the remedy
 */
void refuseLossyTiff(const std::string& path);

}  // namespace program
