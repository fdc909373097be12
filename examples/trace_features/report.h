#pragma once

#include <string>

#include "pipeline.h"

namespace examples {

/// What the report names besides the result.
struct ReportHead {
  std::string source;  ///< Where the scan comes from.
  std::string unit;    ///< Unit of length.
  double lineStep;     ///< Distance of the lines.
  double ptStep;       ///< Distance of the samples on a line.
};

/// Prints what was found as a few tables on the standard output.
void printReport(const TraceResult& result, const ReportHead& head);

}  // namespace examples
