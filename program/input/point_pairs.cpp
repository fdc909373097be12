#include "input/point_pairs.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <utility>

#include "base/failure.h"
#include "base/number.h"

namespace program {
namespace {

using Fields = std::vector<std::string>;

struct TextLine {
  long long number;  ///< In the file, from 1.
  Fields fields;
};

struct Mark {
  std::string id;
  cv::Point3d at;
};

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

Failure refused(const std::string& path, const TextLine& line, const std::string& why) {
  return {ExitCode::badInput, path + ":" + std::to_string(line.number) + ": " + why};
}

std::string trimmed(const std::string& text) {
  const char* const blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(blanks);
  return first == std::string::npos ? std::string{}
                                    : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Commas or semicolons separate, and may leave a field empty; else blanks do.
Fields fieldsOf(const std::string& text) {
  const char separator = text.find(';') != std::string::npos   ? ';'
                         : text.find(',') != std::string::npos ? ','
                                                               : ' ';
  Fields fields;
  std::string rest = trimmed(text);
  if (separator == ' ') {
    std::replace(rest.begin(), rest.end(), '\t', ' ');
  }
  while (true) {
    const std::size_t end = rest.find(separator);
    fields.push_back(trimmed(rest.substr(0, end)));
    if (end == std::string::npos) {
      return fields;
    }
    rest = separator == ' ' ? trimmed(rest.substr(end)) : rest.substr(end + 1);
  }
}

bool isHeader(const Fields& fields) {
  return std::none_of(fields.begin(), fields.end(),
                      [](const std::string& field) { return parseNumber(field).has_value(); });
}

/// All lines that are neither empty nor the header, each of as many fields as there are columns.
std::vector<TextLine> readLines(const std::string& path, const Fields& columns) {
  std::ifstream file(path);
  if (!file) {
    throw refused(path, "cannot be opened");
  }
  const std::string byteOrderMark = "\xEF\xBB\xBF";
  std::string wanted;
  for (const std::string& column : columns) {
    wanted += (wanted.empty() ? "" : ", ") + column;
  }
  std::vector<TextLine> lines;
  std::string text;
  for (long long number = 1; std::getline(file, text); ++number) {
    if (number == 1 && text.compare(0, byteOrderMark.size(), byteOrderMark) == 0) {
      text.erase(0, byteOrderMark.size());
    }
    if (trimmed(text).empty()) {
      continue;
    }
    TextLine line = {number, fieldsOf(text)};
    if (line.fields.size() != columns.size()) {
      throw refused(
          path, line,
          "has " + std::to_string(line.fields.size()) + " columns. Each line must hold " + wanted);
    }
    if (lines.empty() && isHeader(line.fields)) {
      if (line.fields != columns) {
        throw refused(path, line, "its header must be " + wanted + ", or be left out");
      }
      continue;
    }
    lines.push_back(std::move(line));
  }
  return lines;
}

cv::Point3d pointAt(const std::string& path, const TextLine& line, std::size_t first) {
  std::array<double, 3> c{};
  for (std::size_t i = 0; i < c.size(); ++i) {
    const std::optional<double> value = parseNumber(line.fields[first + i]);
    if (!value) {
      throw refused(path, line,
                    "'" + line.fields[first + i] + "' is not a number with a decimal point");
    }
    c[i] = *value;
  }
  return {c[0], c[1], c[2]};
}

std::vector<Mark> readMarkFile(const std::string& path) {
  std::vector<Mark> marks;
  for (const TextLine& line : readLines(path, {"id", "x", "y", "z"})) {
    const std::string& id = line.fields.front();
    if (std::any_of(marks.begin(), marks.end(), [&](const Mark& m) { return m.id == id; })) {
      throw refused(path, line, "there is a mark '" + id + "' already");
    }
    marks.push_back({id, pointAt(path, line, 1)});
  }
  return marks;
}

std::vector<std::string> idsOf(const std::vector<Mark>& marks) {
  std::vector<std::string> ids;
  for (const Mark& mark : marks) {
    ids.push_back(mark.id);
  }
  return ids;
}

}  // namespace

std::vector<PointPair> readPairs(const std::string& path) {
  std::vector<PointPair> pairs;
  for (const TextLine& line : readLines(path, {"x1", "y1", "z1", "x2", "y2", "z2"})) {
    pairs.push_back(
        {std::to_string(pairs.size() + 1), pointAt(path, line, 0), pointAt(path, line, 3)});
  }
  return pairs;
}

std::vector<PointPair> readMarks(const std::string& pathA,
                                 const std::string& pathB,
                                 Messages& messages) {
  const std::vector<Mark> marksA = readMarkFile(pathA);
  const std::vector<Mark> marksB = readMarkFile(pathB);
  std::vector<std::string> single = idsOf(marksB);
  std::vector<PointPair> pairs;
  for (const Mark& a : marksA) {
    const auto b = std::find_if(marksB.begin(), marksB.end(),
                                [&](const Mark& mark) { return mark.id == a.id; });
    if (b == marksB.end()) {
      single.push_back(a.id);
      continue;
    }
    pairs.push_back({a.id, a.at, b->at});
    single.erase(std::find(single.begin(), single.end(), a.id));
  }
  if (!single.empty()) {
    std::string list;
    for (const std::string& id : single) {
      list += (list.empty() ? "" : ", ") + id;
    }
    messages.warn("unpaired-marks", "only one of the scans has the marks " + list);
  }
  return pairs;
}

}  // namespace program
