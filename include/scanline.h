#pragma once

/**
 * @file
 * The whole of the library in one include.
 */

#include "calibration.h"
#include "clustering.h"
#include "conditioning.h"
#include "feature_records.h"
#include "geometry.h"
#include "heightmap.h"
#include "line_features.h"
#include "scan_bounds.h"
#include "scan_records.h"
#include "trees.h"
#include "watershed.h"
