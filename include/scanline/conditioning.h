#pragma once

/**
 * @file
 * Conditioning of scan lines and whole scans: smoothing.h, removal of outliers (outliers.h) and
 * segmentation of lines (line_segments.h).
 *
 * Measured sample, missing sample and hole are defined in scan_records.h. No function writes an
 * error message; ju_noiseFilter() alone has an error code.
 */

#include <scanline/line_segments.h>
#include <scanline/outliers.h>
#include <scanline/smoothing.h>
