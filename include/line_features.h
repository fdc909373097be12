#pragma once

/**
 * @file
 * Extractors of features on one scan line.
 *
 * They see a line as a profile in the y-z plane; x only travels along in the features. Outputs are
 * appended to and never cleared.
 */

#include "line_corners.h"
#include "line_peaks.h"
#include "line_shapes.h"
