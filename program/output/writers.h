#pragma once

#include <string>

#include "output/report.h"

namespace program {

/// The report as one JSON object with "schema", "schema_version" and "program" first. docs/json.md
/// describes it.
std::string asJson(const Report& report);

/// The table that the report names for CSV: a header, then a line for each row (RFC 4180).
std::string asCsv(const Report& report);

/// The report for people.
std::string asText(const Report& report);

}  // namespace program
