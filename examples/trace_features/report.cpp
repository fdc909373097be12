#include "report.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

#include "marks.h"
#include "text_table.h"

namespace examples {
namespace {

constexpr std::size_t kMostEdges = 20;

std::string withUnit(double value, const std::string& unit) {
  return significant(value, 4) + " " + unit;
}

void printHead(const TraceResult& result, const ReportHead& head) {
  std::printf("Scan: %s\n", head.source.c_str());
  std::printf("  %zu lines x %zu samples, %s between lines, %s between samples\n",
              result.scan.size(), result.scan.empty() ? 0 : result.scan.front().size(),
              withUnit(head.lineStep, head.unit).c_str(), withUnit(head.ptStep, head.unit).c_str());
}

std::vector<std::string> planeRow(const char* name, const PlaneView& plane) {
  return {name, fixed(plane.tiltDegrees, 2) + " deg", fixed(plane.rise, 2), fixed(plane.height, 2),
          fixed(100.0 * plane.share, 1) + " %"};
}

void printPlane(const TraceResult& result, const std::string& unit) {
  std::printf("\nReference plane\n");
  if (!result.isLevelled) {
    std::printf("  none found or asked for: the scan was taken as it is, and nothing was cut\n");
    return;
  }
  TextTable table;
  table.addColumn("", Align::left);
  table.addColumn("tilt", Align::right);
  table.addColumn("rise [" + unit + "]", Align::right);
  table.addColumn("height [" + unit + "]", Align::right);
  table.addColumn("samples on it", Align::right);
  table.addRow(planeRow("before levelling", result.before));
  table.addRow(planeRow("after levelling", result.after));
  table.print();
}

void addCount(TextTable& table, const std::string& name, long long count, long long all) {
  const double share =
      all > 0 ? 100.0 * static_cast<double>(count) / static_cast<double>(all) : 0.0;
  table.addRow({name, grouped(count), fixed(share, 2) + " %"});
}

void printSamples(const TraceResult& result, const std::string& unit) {
  const SampleCounts& n = result.samples;
  std::printf("\nSamples\n");
  TextTable table;
  table.addColumn("", Align::left);
  table.addColumn("count", Align::right);
  table.addColumn("share", Align::right);
  addCount(table, "in the scan", n.all, n.all);
  addCount(table, "without a measurement", n.all - n.measured, n.all);
  const std::string cut =
      result.cutHeight > 0.0 ? "cut above z = " + withUnit(result.cutHeight, unit) : "cut";
  addCount(table, cut, n.measured - n.afterCut, n.all);
  addCount(table, "blanked as outliers", n.afterCut - n.afterOutliers, n.all);
  addCount(table, "left to work on", n.afterOutliers, n.all);
  table.print();
}

struct TypeCounts {
  long long features = 0;
  long long nodes = 0;
  long long trees = 0;
};

void printTypes(const TraceResult& result) {
  std::map<int, TypeCounts> counts = {
      {FEATURE_JUMP_RISE, {}}, {FEATURE_JUMP_FALL, {}}, {FEATURE_CORNER_OTHER, {}}};
  TypeCounts sum;
  for (const SQO_lineFeature& line : result.features) {
    for (const SQO_basicFeature1D& feature : line.features) {
      ++counts[feature.featureType].features;
      ++sum.features;
    }
  }
  for (const TracedEdge& edge : result.edges) {
    const auto nodes = static_cast<long long>(edge.tree.treeNodes.size());
    TypeCounts& type = counts[edge.tree.treeType];
    type.nodes += nodes;
    ++type.trees;
    sum.nodes += nodes;
    ++sum.trees;
  }
  std::printf("\nFeatures\n");
  TextTable table;
  table.addColumn("type", Align::left);
  for (const char* header : {"found", "in trees", "trees"}) {
    table.addColumn(header, Align::right);
  }
  const auto row = [&](const char* name, const TypeCounts& c) {
    table.addRow({name, grouped(c.features), grouped(c.nodes), grouped(c.trees)});
  };
  for (const auto& [type, c] : counts) {
    row(nameOfType(type), c);
  }
  row("all", sum);
  table.print();
}

/// A tree that goes round a corner, or follows a curve, has no line that fits it well.
bool isStraight(const TracedEdge& edge) {
  constexpr double kLargestShare = 0.01;
  return edge.rmsError < kLargestShare * edge.length;
}

std::vector<std::string> edgeRow(std::size_t number, const TracedEdge& edge) {
  return {std::to_string(number),
          nameOfType(edge.tree.treeType),
          std::to_string(edge.tree.sLineIdx) + " - " + std::to_string(edge.tree.eLineIdx),
          std::to_string(edge.tree.treeNodes.size()),
          significant(edge.length, 4),
          fixed(edge.direction.x, 3),
          fixed(edge.direction.y, 3),
          fixed(edge.direction.z, 3),
          significant(edge.rmsError, 3),
          isStraight(edge) ? "straight" : "bent"};
}

void printEdges(const TraceResult& result, const std::string& unit) {
  std::printf("\nTrees, longest first, with the line that fits each best\n");
  if (result.edges.empty()) {
    std::printf("  none; try a smaller --corner-angle, --min-length or --scale\n");
    return;
  }
  TextTable table;
  table.addColumn("#", Align::right);
  table.addColumn("type", Align::left);
  for (const std::string& header :
       {std::string("lines"), std::string("nodes"), "length [" + unit + "]", std::string("dir x"),
        std::string("dir y"), std::string("dir z"), "rms [" + unit + "]"}) {
    table.addColumn(header, Align::right);
  }
  table.addColumn("shape", Align::left);
  const std::size_t shown = std::min(result.edges.size(), kMostEdges);
  for (std::size_t i = 0; i < shown; ++i) {
    table.addRow(edgeRow(i + 1, result.edges[i]));
  }
  table.print();
  if (shown < result.edges.size()) {
    std::printf("  ... and %zu more\n", result.edges.size() - shown);
  }
}

}  // namespace

void printReport(const TraceResult& result, const ReportHead& head) {
  printHead(result, head);
  printPlane(result, head.unit);
  printSamples(result, head.unit);
  printTypes(result);
  printEdges(result, head.unit);
}

}  // namespace examples
