#pragma once

#include <vector>

#include "make/made_scan.h"
#include "output/report.h"

namespace program {

/// What is known of a made scan: only the tables that its kind has.
std::vector<Table> tablesOf(const MadeScan& made);

}  // namespace program
