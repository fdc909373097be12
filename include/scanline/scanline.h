#pragma once

/**
 * @file
 * The whole of the library in one include.
 */

#include <scanline/calibration.h>
#include <scanline/clustering.h>
#include <scanline/conditioning.h>
#include <scanline/feature_records.h>
#include <scanline/geometry.h>
#include <scanline/heightmap.h>
#include <scanline/line_features.h>
#include <scanline/scan_bounds.h>
#include <scanline/scan_records.h>
#include <scanline/trees.h>
#include <scanline/version.h>
#include <scanline/watershed.h>
