#pragma once

#include <string>
#include <vector>

#include "commands/session.h"
#include "roads/arcs.h"

namespace program {

/// The map with the followed arcs, numbered as in the table; `colours` as in MapContent.
Picture arcMap(const InputOptions& input,
               const PreparedScan& scan,
               const std::vector<ArcTrack>& tracks,
               const std::optional<STeskRangeD>& colours);

/// The line with the most arcs, with their circles.
Picture arcProfile(const InputOptions& input, const PreparedScan& scan, const FoundArcs& found);

/// Writes the scan with both ends and the centres of the followed arcs.
bool writeArcsAsPly(const std::string& path, const Scan& scan, const std::vector<ArcTrack>& tracks);

}  // namespace program
