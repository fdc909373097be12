#include <cmath>
#include <fstream>
#include <vector>

#include "base/failure.h"
#include "input/ply_header.h"
#include "input/raw_number.h"
#include "input/readers.h"
#include "input/scan_input.h"
#include "input/text_layout.h"
#include "input/text_source.h"

// A reader of our own: PCL takes the shape of a scan for granted before it has checked anything,
// and leaves a full range grid in the order of the file.

namespace program {
namespace {

constexpr std::int64_t kHole = -1;

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

/// The elements of a file, one after the other, as numbers. A list stands as its length and, if
/// that is 1, its element.
class ElementSource {
 public:
  ElementSource(const std::string& path, const PlyHeader& header)
      : path_(path),
        isText_(header.isText),
        swaps_(mustSwap(header.isBigEndian)),
        file_(path, std::ios::binary),
        text_(path) {
    file_.seekg(static_cast<std::streamoff>(header.dataAt));
    std::string_view row;
    while (isText_ && row.substr(0, 10) != "end_header" && text_.next(row)) {
    }
  }

  void next(const PlyElement& element, std::vector<double>& values) {
    values.clear();
    if (isText_) {
      nextRow();
    }
    for (const PlyProperty& property : element.properties) {
      const double first = number(property.isList ? property.countType : property.type);
      values.push_back(first);
      if (property.isList && first != 0.0) {
        if (first != 1.0) {
          throw refused(path_,
                        "holds lists of several elements in front of its last vertex, "
                        "which is no organised scan");
        }
        values.push_back(number(property.type));
      }
    }
    if (isText_ && field_ != fields_.size()) {
      throw wrongRow("too many numbers");
    }
  }

 private:
  [[nodiscard]] Failure wrongRow(const std::string& what) const {
    return {ExitCode::badInput, path_ + ":" + std::to_string(text_.number()) + ": " + what};
  }

  void nextRow() {
    std::string_view row;
    if (!text_.next(row)) {
      throw refused(path_, "is cut short: it ends within its elements");
    }
    splitFields(row, ' ', fields_);
    field_ = 0;
  }

  double number(PlyType type) {
    if (!isText_) {
      return binaryNumber(type);
    }
    double value = 0.0;
    if (field_ == fields_.size() || !parseField(fields_[field_], value)) {
      throw wrongRow("expected another number");
    }
    ++field_;
    return value;
  }

  double binaryNumber(PlyType type) {
    char raw[8];
    if (!file_.read(raw, static_cast<std::streamsize>(type.size))) {
      throw refused(path_, "is cut short: it ends within its elements");
    }
    if (type.kind == 'f') {
      return type.size == 4 ? rawNumber<float>(raw, swaps_) : rawNumber<double>(raw, swaps_);
    }
    switch (type.size) {
      case 1:
        return type.kind == 'i' ? rawNumber<std::int8_t>(raw, swaps_)
                                : rawNumber<std::uint8_t>(raw, swaps_);
      case 2:
        return type.kind == 'i' ? rawNumber<std::int16_t>(raw, swaps_)
                                : rawNumber<std::uint16_t>(raw, swaps_);
      default:
        return type.kind == 'i' ? rawNumber<std::int32_t>(raw, swaps_)
                                : rawNumber<std::uint32_t>(raw, swaps_);
    }
  }

  const std::string& path_;
  bool isText_;
  bool swaps_;
  std::ifstream file_;
  TextSource text_;
  std::vector<std::string_view> fields_;
  std::size_t field_ = 0;
};

std::vector<STesk3DPoint> readVertices(const PlyElement& element, ElementSource& source) {
  const auto x = static_cast<std::size_t>(element.find("x"));
  const auto y = static_cast<std::size_t>(element.find("y"));
  const auto z = static_cast<std::size_t>(element.find("z"));
  std::vector<STesk3DPoint> points;
  points.reserve(element.count);
  std::vector<double> values;
  for (std::uint64_t i = 0; i < element.count; ++i) {
    source.next(element, values);
    points.push_back(spacePoint(values[x], values[y], values[z]));
  }
  return points;
}

/// The index of the vertex in each cell, or kHole.
std::vector<std::int64_t> readGrid(const PlyElement& element, ElementSource& source) {
  std::vector<std::int64_t> cells;
  cells.reserve(element.count);
  std::vector<double> values;
  for (std::uint64_t i = 0; i < element.count; ++i) {
    source.next(element, values);
    const bool isIndex = values.size() == 2 && values[1] == std::floor(values[1]) &&
                         values[1] >= 0.0 && values[1] < 4e9;
    cells.push_back(isIndex ? static_cast<std::int64_t>(values[1])
                            : (values.size() == 2 ? INT64_MAX : kHole));
  }
  return cells;
}

void requireIndices(const std::string& path,
                    const std::vector<std::int64_t>& cells,
                    std::size_t vertices) {
  std::vector<bool> isUsed(vertices);
  for (const std::int64_t index : cells) {
    if (index == kHole) {
      continue;
    }
    const auto at = static_cast<std::size_t>(index);
    if (at >= vertices || isUsed[at]) {
      throw refused(path,
                    "is a damaged PLY file: its range grid names a vertex twice, or one that "
                    "is not there");
    }
    isUsed[at] = true;
  }
}

Scan assemble(const PlyHeader& header,
              const std::vector<STesk3DPoint>& points,
              const std::vector<std::int64_t>& cells) {
  Scan scan(header.rows);
  forEachLine(scan, [&](std::size_t row) {
    scan[row].reserve(header.columns);
    for (std::size_t col = 0; col < header.columns; ++col) {
      const std::size_t cell = row * header.columns + col;
      const std::int64_t index = cells.empty() ? static_cast<std::int64_t>(cell) : cells[cell];
      scan[row].push_back({static_cast<int>(col),
                           index == kHole ? noPoint() : points[static_cast<std::size_t>(index)]});
    }
  });
  return scan;
}

}  // namespace

RawScan readPly(const InputOptions& options) {
  const PlyHeader header = readPlyHeader(options.path);
  const bool hasGrid = header.find("range_grid") != nullptr;
  ElementSource source(options.path, header);
  std::vector<STesk3DPoint> points;
  std::vector<std::int64_t> cells;
  std::vector<double> ignored;
  for (const PlyElement& element : header.elements) {
    if (&element == header.find("vertex")) {
      points = readVertices(element, source);
    } else if (&element == header.find("range_grid")) {
      cells = readGrid(element, source);
    } else if (points.empty() || (hasGrid && cells.empty())) {
      for (std::uint64_t i = 0; i < element.count; ++i) {
        source.next(element, ignored);
      }
    }
  }
  if (hasGrid) {
    requireIndices(options.path, cells, points.size());
  }
  return {assemble(header, points, cells),
          std::string("organised PLY") + (hasGrid ? " with a range grid" : ""), false};
}

}  // namespace program
