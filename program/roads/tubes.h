#pragma once

#include <vector>

#include "roads/arcs.h"

namespace program {

/// The runs of a cleaned line that the library takes for tubes.
std::vector<SQO_RUN> tubesOf(const Line& line, const ArcParams& params);

}  // namespace program
