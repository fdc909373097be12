#include "report.h"

#include <algorithm>
#include <cstdio>

#include "text_table.h"

namespace examples {
namespace {

const char* const kSideNames[kSides] = {"low y", "high y", "low x", "high x"};

/// The sides on which most of the rim is that of a higher neighbour.
std::string coveredSides(const Outline& outline) {
  std::string sides;
  for (std::size_t side = 0; side < kSides; ++side) {
    if (!outline.points[side].empty() && !outline.isFree[side]) {
      sides += (sides.empty() ? "" : ", ") + std::string(kSideNames[side]);
    }
  }
  return sides.empty() ? "-" : sides;
}

std::string pointCounts(const Outline& outline) {
  std::string counts;
  for (const std::vector<SQO_2DValueI>& side : outline.points) {
    counts += (counts.empty() ? "" : " + ") + std::to_string(side.size());
  }
  return counts;
}

std::vector<std::string> objectRow(std::size_t number, const FoundObject& object) {
  return {std::to_string(number),         fixed(object.placeOnBelt.x, 1),
          fixed(object.placeOnBelt.y, 1), fixed(object.length, 1),
          fixed(object.width, 1),         fixed(object.height, 1),
          pointCounts(object.outline),    coveredSides(object.outline)};
}

std::vector<std::string> comparisonRow(const Comparison& comparison, const SplitResult& result) {
  const BeltObject& truth = comparison.truth;
  std::vector<std::string> row = {truth.kind == ObjectKind::bag ? "bag" : "box",
                                  fixed(truth.centre.x, 1), fixed(truth.centre.y, 1)};
  if (!comparison.found) {
    row.insert(row.end(), {"not found", "-", "-", "-", "-"});
    return row;
  }
  const FoundObject& found = result.objects[*comparison.found];
  row.insert(row.end(), {std::to_string(*comparison.found + 1), fixed(comparison.positionError, 1),
                         fixed(found.length - 2.0 * truth.halfLength, 1),
                         fixed(found.width - 2.0 * truth.halfWidth, 1),
                         fixed(found.height - truth.base - truth.thickness, 1)});
  return row;
}

}  // namespace

void printObjects(const SplitResult& result, const SplitParams& params, const ReportHead& head) {
  std::printf("Scan: %s\n", head.source.c_str());
  std::printf("  %zu lines x %zu samples, %s %s between lines, %s %s between samples\n",
              result.scan.size(), result.scan.front().size(),
              significant(params.lineStep, 4).c_str(), head.unit.c_str(),
              significant(params.ptStep, 4).c_str(), head.unit.c_str());
  std::printf("  belt tilted by %s deg; map of %d x %d pixels of %s %s\n",
              fixed(result.frame.tiltDegrees, 2).c_str(), result.mask.cols, result.mask.rows,
              significant(result.grid.scale, 4).c_str(), head.unit.c_str());
  std::printf("\nObjects: %zu (lengths in %s)\n", result.objects.size(), head.unit.c_str());
  if (result.objects.empty()) {
    std::printf("  none; try a smaller --cut or --min-width\n");
    return;
  }
  TextTable table;
  for (const char* header : {"#", "x", "y", "length", "width", "height", "contour points"}) {
    table.addColumn(header, Align::right);
  }
  table.addColumn("under a neighbour at", Align::left);
  for (std::size_t i = 0; i < result.objects.size(); ++i) {
    table.addRow(objectRow(i + 1, result.objects[i]));
  }
  table.print();
}

void printComparison(const std::vector<Comparison>& comparisons,
                     const SplitResult& result,
                     const std::string& unit) {
  TextTable table;
  table.addColumn("made", Align::left);
  for (const char* header :
       {"x", "y", "found as #", "off by", "length error", "width error", "height error"}) {
    table.addColumn(header, Align::right);
  }
  std::size_t found = 0;
  double sum = 0.0;
  double largest = 0.0;
  for (const Comparison& comparison : comparisons) {
    table.addRow(comparisonRow(comparison, result));
    found += comparison.found ? 1 : 0;
    sum += comparison.positionError;
    largest = std::max(largest, comparison.positionError);
  }
  std::printf("\nCompared with what was made\n");
  table.print();
  std::printf("  found %zu of %zu, and %zu that were not made\n", found, comparisons.size(),
              result.objects.size() - found);
  std::printf("  position error: mean %s, max %s %s\n",
              fixed(found > 0 ? sum / static_cast<double>(found) : 0.0, 1).c_str(),
              fixed(largest, 1).c_str(), unit.c_str());
}

void printTimes(const SplitResult& result) {
  std::printf("\nTimes\n");
  TextTable table;
  table.addColumn("step", Align::left);
  table.addColumn("ms", Align::right);
  double sum = 0.0;
  for (const StepTime& time : result.times) {
    table.addRow({time.step, fixed(time.milliseconds, 1)});
    sum += time.milliseconds;
  }
  table.addRow({"all", fixed(sum, 1)});
  table.print();
}

}  // namespace examples
