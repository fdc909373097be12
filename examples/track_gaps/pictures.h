#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "gap_track.h"
#include "scan_types.h"

namespace examples {

/// A line with the most tracked gaps, in the middle of all such; without tracks the middle line.
int typicalLine(const std::vector<GapTrack>& tracks, std::size_t lines);

/// The levelled height map with the rims and centre lines of the gaps, and one line marked.
cv::Mat drawMap(const Scan& scan,
                const std::vector<GapTrack>& tracks,
                const SJU_pointCloudPara& cloud,
                int markedLine,
                const std::string& unit);

/// The part of one line that has the gaps, as a profile with their rims and widths.
cv::Mat drawProfile(const Scan& scan,
                    const std::vector<GapTrack>& tracks,
                    int lineIdx,
                    const std::string& unit);

}  // namespace examples
