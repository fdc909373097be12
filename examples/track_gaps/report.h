#pragma once

#include <string>
#include <vector>

#include "gap_track.h"
#include "pipeline.h"

namespace examples {

/// What the report tells besides the tracks.
struct ReportHead {
  std::string source;        ///< Where the scan comes from.
  std::string unit;          ///< Unit of length.
  SJU_pointCloudPara cloud;  ///< Spacing of the scan.
  std::size_t lines;
  long long samples;
  double levelledBy;  ///< Degrees that the levelling turned by; 0 if it did not.
};

/// Prints what was found as a few tables on the standard output.
void printReport(const std::vector<GapTrack>& tracks, const LineGaps& gaps, const ReportHead& head);

/// Prints what each step took, in all and for each line and sample.
void printTimes(const std::vector<StepTime>& times, const ReportHead& head);

}  // namespace examples
