#pragma once

#include <string>

#include "compare.h"
#include "pipeline.h"

namespace examples {

/// What the report names besides the result.
struct ReportHead {
  std::string source;  ///< Where the scan comes from.
  std::string unit;    ///< Unit of length.
};

/// Prints what was found as tables on the standard output.
void printObjects(const SplitResult& result, const SplitParams& params, const ReportHead& head);

/// Prints how that compares with what was made.
void printComparison(const std::vector<Comparison>& comparisons,
                     const SplitResult& result,
                     const std::string& unit);

void printTimes(const SplitResult& result);

}  // namespace examples
