#include <algorithm>
#include <cmath>
#include <deque>
#include <filesystem>
#include <vector>

#include "base/failure.h"
#include "input/point_list.h"
#include "input/readers.h"
#include "input/scan_input.h"
#include "input/text_layout.h"
#include "input/text_source.h"

namespace program {
namespace {

/// A table without a header that has more columns than this holds a profile in each row.
constexpr std::size_t kMostColumnsOfPoints = 8;

/// Reads the rows of a table one by one, of each the numbers in some columns.
class TableReader {
 public:
  TableReader(const std::string& path, const TextLayout& layout, std::vector<int> columns)
      : values(columns.size()),
        path_(path),
        layout_(layout),
        columns_(std::move(columns)),
        source_(path) {
    if (layout.hasHeader) {
      source_.next(row_);
    }
  }

  std::vector<double> values;  ///< Of the last row.

  bool next() {
    if (!source_.next(row_)) {
      return false;
    }
    splitFields(row_, layout_.separator, fields_);
    if (fields_.size() != layout_.columns) {
      throw wrong("expected " + std::to_string(layout_.columns) + " columns");
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (!parseField(fields_[static_cast<std::size_t>(columns_[i])], values[i])) {
        throw wrong("expected a number in column " + std::to_string(columns_[i] + 1));
      }
    }
    return true;
  }

  [[nodiscard]] Failure wrong(const std::string& what) const {
    constexpr std::size_t kShown = 60;
    std::string found(row_.substr(0, kShown));
    found.erase(found.find_last_not_of("\r") + 1);
    return {ExitCode::badInput, path_ + ":" + std::to_string(source_.number()) + ": " + what +
                                    ", found '" + found + "'"};
  }

 private:
  const std::string& path_;
  const TextLayout& layout_;
  std::vector<int> columns_;
  TextSource source_;
  std::string_view row_;
  std::vector<std::string_view> fields_;
};

/// Each row is a line of z.
Scan readProfiles(const std::string& path, const TextLayout& layout) {
  std::vector<int> all(layout.columns);
  for (std::size_t c = 0; c < all.size(); ++c) {
    all[c] = static_cast<int>(c);
  }
  TableReader table(path, layout, std::move(all));
  Scan scan;
  while (table.next()) {
    const auto x = static_cast<double>(scan.size());
    Line& line = scan.emplace_back();
    line.reserve(table.values.size());
    for (const double value : table.values) {
      const auto index = static_cast<int>(line.size());
      line.push_back({index, rangePoint(x, static_cast<double>(index), value)});
    }
  }
  return scan;
}

void appendMissing(Line& line, std::size_t size) {
  while (line.size() < size) {
    line.push_back({static_cast<int>(line.size()), noPoint()});
  }
}

/// Places samples by the indices that the file names; those it leaves out are missing.
class IndexedLines {
 public:
  explicit IndexedLines(const std::string& path)
      : mostSamples_(8 * std::filesystem::file_size(path) + 1'000'000) {}

  /// Returns what is wrong with the indices, or null.
  const char* add(double line, double sample, const STesk3DPoint& point) {
    if (!(line == std::floor(line)) || !(line >= current_)) {
      return "expected the lines in the order of their indices";
    }
    if (scan_.empty() || line > current_) {
      finishLine();
      scan_.emplace_back();
      current_ = line;
    }
    const auto size = static_cast<double>(line_.size());
    if (!(sample == std::floor(sample)) || !(sample >= size)) {
      return "expected the samples in the order of their indices";
    }
    // A forged index must not cost more memory than a file of this length can need.
    if (sample - size > static_cast<double>(mostSamples_ - samples_)) {
      return "expected a smaller step to the next index";
    }
    const auto index = static_cast<std::size_t>(sample);
    samples_ += index - line_.size();
    appendMissing(line_, index);
    line_.push_back({static_cast<int>(index), point});
    return nullptr;
  }

  /// The scan, with missing samples at the end of shorter lines.
  Scan take() {
    finishLine();
    for (Line& line : scan_) {
      if (longest_ - line.size() > mostSamples_ - samples_) {
        break;
      }
      samples_ += longest_ - line.size();
      line.reserve(longest_);
      appendMissing(line, longest_);
    }
    return std::move(scan_);
  }

 private:
  void finishLine() {
    if (!scan_.empty()) {
      scan_.back().assign(line_.begin(), line_.end());
      longest_ = std::max(longest_, line_.size());
      line_.clear();
    }
  }

  Scan scan_;
  Line line_;
  std::size_t longest_ = 0;
  double current_ = -1e15;
  std::uint64_t mostSamples_;
  std::uint64_t samples_ = 0;  ///< Missing ones that were added.
};

/// Points with the index of their line, and perhaps of their sample.
Scan readIndexed(const std::string& path, const TextLayout& layout) {
  std::vector<int> columns = {layout.x, layout.y, layout.z, layout.line};
  if (layout.sample >= 0) {
    columns.push_back(layout.sample);
  }
  TableReader table(path, layout, columns);
  IndexedLines lines(path);
  double line = std::nan("");
  double next = 0.0;
  while (table.next()) {
    const std::vector<double>& v = table.values;
    next = v[3] == line ? next + 1.0 : 0.0;
    line = v[3];
    const char* wrong = lines.add(line, v.size() > 4 ? v[4] : next, spacePoint(v[0], v[1], v[2]));
    if (wrong != nullptr) {
      throw table.wrong(wrong);
    }
  }
  return lines.take();
}

Scan readPoints(const std::string& path, const TextLayout& layout) {
  TableReader table(path, layout, {layout.x, layout.y, layout.z});
  std::deque<STesk3DPoint> points;
  while (table.next()) {
    points.push_back(spacePoint(table.values[0], table.values[1], table.values[2]));
  }
  return splitIntoLines(points);
}

}  // namespace

RawScan readText(const InputOptions& options) {
  const TextLayout layout = findLayout(options.path);
  if (layout.hasHeader && layout.line >= 0) {
    return {readIndexed(options.path, layout), "text of x, y, z with indices", false};
  }
  if (!layout.hasHeader && layout.columns > kMostColumnsOfPoints) {
    return {readProfiles(options.path, layout), "text, a profile in each row", true};
  }
  return {readPoints(options.path, layout), "text of x, y, z", false};
}

}  // namespace program
