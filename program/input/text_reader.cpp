#include <algorithm>
#include <cmath>
#include <fstream>
#include <vector>

#include "base/extent.h"
#include "base/failure.h"
#include "input/readers.h"
#include "input/scan_input.h"
#include "input/text_lines.h"

namespace program {
namespace {

constexpr std::size_t kLinesOfHead = 100;
/// A table without a header that has more columns than this holds a profile in each row.
constexpr std::size_t kMostColumnsOfPoints = 8;

std::vector<std::string> readHead(const std::string& path) {
  std::ifstream file(path);
  std::vector<std::string> head;
  std::string line;
  while (head.size() < kLinesOfHead && std::getline(file, line)) {
    head.push_back(line);
  }
  while (!head.empty() && head.back().find_first_not_of(" \t\r") == std::string::npos) {
    head.pop_back();
  }
  return head;
}

/// Reads the rows of a table one by one.
template <typename TakeRow>
void forEachRow(const std::string& path, const TextLayout& layout, TakeRow takeRow) {
  std::ifstream file(path);
  std::string text;
  std::vector<std::string_view> fields;
  std::vector<double> values(layout.columns);
  for (std::size_t number = 1; std::getline(file, text); ++number) {
    if (number <= layout.firstLine || text.find_first_not_of(" \t\r") == std::string::npos) {
      continue;
    }
    splitFields(text, layout.separator, fields);
    bool isGood = fields.size() == layout.columns;
    for (std::size_t c = 0; isGood && c < fields.size(); ++c) {
      isGood = parseField(fields[c], values[c]);
    }
    if (!isGood) {
      constexpr std::size_t kShown = 60;
      throw Failure(ExitCode::badInput, path + ":" + std::to_string(number) + ": expected " +
                                            std::to_string(layout.columns) + " numbers, found '" +
                                            text.substr(0, kShown) + "'");
    }
    takeRow(values);
  }
}

/// Each row is a line of heights.
Scan readProfiles(const std::string& path, const TextLayout& layout) {
  Scan scan;
  forEachRow(path, layout, [&](const std::vector<double>& row) {
    Line& line = scan.emplace_back();
    for (const double value : row) {
      const auto x = static_cast<double>(scan.size() - 1);
      const auto index = static_cast<int>(line.size());
      const double z = value == 0.0 ? std::nan("") : value;
      line.push_back({index, {x, static_cast<double>(index), z}});
    }
  });
  return scan;
}

STesk3DPoint pointOf(const std::vector<double>& row, const TextLayout& layout) {
  const STesk3DPoint p = {row[static_cast<std::size_t>(layout.x)],
                          row[static_cast<std::size_t>(layout.y)],
                          row[static_cast<std::size_t>(layout.z)]};
  const bool isHole = p.x == 0.0 && p.y == 0.0 && p.z == 0.0;
  return isHole ? STesk3DPoint{0.0, 0.0, std::nan("")} : p;
}

/// The sample at an index that the file names; samples left out before it are missing.
void place(const std::string& path, Line& line, double index, const STesk3DPoint& point) {
  constexpr double kMostSamples = 1'000'000;
  const auto size = static_cast<double>(line.size());
  if (!(index >= size && index < kMostSamples && index == std::floor(index))) {
    throw Failure(ExitCode::badInput, path + ": its samples are not in the order of their indices");
  }
  while (static_cast<double>(line.size()) < index) {
    line.push_back({static_cast<int>(line.size()), {0.0, 0.0, std::nan("")}});
  }
  line.push_back({static_cast<int>(line.size()), point});
}

/// Points with the index of their line, and perhaps of their sample.
Scan readIndexed(const std::string& path, const TextLayout& layout) {
  Scan scan;
  double current = std::nan("");
  forEachRow(path, layout, [&](const std::vector<double>& row) {
    const double index = row[static_cast<std::size_t>(layout.line)];
    if (index < current) {
      throw Failure(ExitCode::badInput, path + ": its lines are not in the order of their indices");
    }
    if (scan.empty() || index != current) {
      scan.emplace_back();
      current = index;
    }
    Line& line = scan.back();
    const double sample = layout.sample >= 0 ? row[static_cast<std::size_t>(layout.sample)]
                                             : static_cast<double>(line.size());
    place(path, line, sample, pointOf(row, layout));
  });
  return scan;
}

/// The axis along the lines of a list of points: the one whose steps are larger as a rule.
double STesk3DPoint::*fastAxis(const Line& points) {
  std::vector<double> x;
  std::vector<double> y;
  for (std::size_t i = 1; i < points.size(); ++i) {
    x.push_back(std::abs(points[i].pt3D.x - points[i - 1].pt3D.x));
    y.push_back(std::abs(points[i].pt3D.y - points[i - 1].pt3D.y));
  }
  const bool isX = !x.empty() && quantile(x, 0.5) > quantile(y, 0.5);
  return isX ? &STesk3DPoint::x : &STesk3DPoint::y;
}

/// Splits a list of points where the axis along the lines jumps back.
Scan splitIntoLines(const Line& points) {
  double STesk3DPoint::*const axis = fastAxis(points);
  std::vector<double> steps;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const double step = points[i].pt3D.*axis - points[i - 1].pt3D.*axis;
    if (std::isfinite(step)) {
      steps.push_back(step);
    }
  }
  const double usual = steps.empty() ? 0.0 : quantile(steps, 0.5);
  constexpr double kBack = -3.0;
  Scan scan(1);
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double step = i > 0 ? points[i].pt3D.*axis - points[i - 1].pt3D.*axis : usual;
    if (step * usual < 0.0 && step / usual < kBack) {
      scan.emplace_back();
    }
    Line& line = scan.back();
    line.push_back({static_cast<int>(line.size()), points[i].pt3D});
  }
  return scan;
}

Scan readPoints(const std::string& path, const TextLayout& layout) {
  Line points;
  forEachRow(path, layout, [&](const std::vector<double>& row) {
    points.push_back({0, pointOf(row, layout)});
  });
  return splitIntoLines(points);
}

}  // namespace

RawScan readText(const InputOptions& options) {
  const std::vector<std::string> head = readHead(options.path);
  const TextLayout layout = layoutOf(options.path, head);
  const bool hasHeader = layout.firstLine > 0 && layout.line >= 0;
  if (hasHeader) {
    return {readIndexed(options.path, layout), "text of x, y, z with indices", false};
  }
  if (layout.columns > kMostColumnsOfPoints) {
    return {readProfiles(options.path, layout), "text, a profile in each row", true};
  }
  return {readPoints(options.path, layout), "text of x, y, z", false};
}

}  // namespace program
