#pragma once

#include <string>
#include <vector>

#include "output/report.h"
#include "plane/plane_choice.h"
#include "roads/arcs.h"

namespace program {

/// The followed arcs with their measures, numbered from 1 in the order given.
Table trackTable(const std::vector<ArcTrack>& tracks,
                 const PlaneChoice& plane,
                 const std::string& unit);

/// Every arc of every line; without a track if it was not followed.
Table arcTable(const FoundArcs& found,
               const std::vector<ArcTrack>& tracks,
               const PlaneChoice& plane);

}  // namespace program
