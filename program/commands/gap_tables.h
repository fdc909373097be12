#pragma once

#include <string>
#include <vector>

#include "output/report.h"
#include "plane/plane_choice.h"
#include "roads/gaps.h"

namespace program {

/// The gaps with their measures, numbered from 1 in the order given.
Table gapTable(const std::vector<GapTrack>& tracks, const std::string& unit);

/// The lines and parabolas through the middles of the gaps.
Table centreLineTable(const std::vector<GapTrack>& tracks,
                      const PlaneChoice& plane,
                      const std::string& unit);

/// Where gaps are missing between lines that have them.
Table interruptionTable(const std::vector<GapTrack>& tracks, const std::string& unit);

/// Every gap of every line, with both edges.
Table gapNodeTable(const std::vector<GapTrack>& tracks, const PlaneChoice& plane);

}  // namespace program
