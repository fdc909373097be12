#pragma once

#include <string>

#include "output/report.h"

namespace program {

/// A table in text, with aligned columns: words on the left, numbers on the right.
std::string asText(const Table& table);

/// A cell in text; numbers with this many decimals.
std::string asText(const Cell& cell, int decimals);

}  // namespace program
