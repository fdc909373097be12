#pragma once

/**
 * @file
 * Extractors of features on one scan line.
 *
 * They see a line as a profile in the y-z plane; x only travels along in the features. Outputs are
 * appended to and never cleared.
 */

#include <scanline/line_corners.h>
#include <scanline/line_peaks.h>
#include <scanline/line_shapes.h>
