#include "input/text_lines.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <limits>

#include "base/failure.h"

namespace program {
namespace {

bool isComment(std::string_view text) {
  const std::size_t at = text.find_first_not_of(" \t\r");
  return at == std::string_view::npos || text[at] == '#' || text.substr(at, 2) == "//";
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\"");
  const std::size_t last = text.find_last_not_of(" \t\r\"");
  return first == std::string_view::npos ? std::string_view{}
                                         : text.substr(first, last - first + 1);
}

std::string lowered(std::string_view text) {
  std::string result(trimmed(text));
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

bool areNumbers(const std::vector<std::string_view>& fields) {
  double ignored = 0.0;
  return std::all_of(fields.begin(), fields.end(),
                     [&](std::string_view field) { return parseField(field, ignored); });
}

/// The separator that splits all lines into equally many fields, at least three; '\0' if none does.
char separatorOf(const std::vector<std::string>& lines) {
  std::vector<std::string_view> fields;
  for (const char separator : {',', ';', '\t', ' '}) {
    std::size_t columns = 0;
    bool isUniform = !lines.empty();
    for (const std::string& line : lines) {
      splitFields(line, separator, fields);
      columns = columns == 0 ? fields.size() : columns;
      isUniform = isUniform && fields.size() == columns && columns >= 3;
    }
    if (isUniform) {
      return separator;
    }
  }
  return '\0';
}

/// Finds the columns by the names in the header.
void nameColumns(const std::string& path,
                 const std::vector<std::string_view>& names,
                 TextLayout& layout) {
  const auto find = [&](std::initializer_list<const char*> known) {
    for (std::size_t c = 0; c < names.size(); ++c) {
      for (const char* name : known) {
        if (lowered(names[c]) == name) {
          return static_cast<int>(c);
        }
      }
    }
    return -1;
  };
  layout.x = find({"x", "x_mm", "x_m"});
  layout.y = find({"y", "y_mm", "y_m"});
  layout.z = find({"z", "z_mm", "z_m"});
  layout.line = find({"line", "row", "profile"});
  layout.sample = find({"sample", "col", "column", "point"});
  if (layout.x < 0 || layout.y < 0 || layout.z < 0) {
    throw Failure(ExitCode::badInput, path + ": its header must name the columns x, y and z");
  }
}

}  // namespace

void splitFields(std::string_view text, char separator, std::vector<std::string_view>& fields) {
  fields.clear();
  if (separator != ' ') {
    std::size_t from = 0;
    for (std::size_t at = text.find(separator); at != std::string_view::npos;
         at = text.find(separator, from)) {
      fields.push_back(trimmed(text.substr(from, at - from)));
      from = at + 1;
    }
    fields.push_back(trimmed(text.substr(from)));
    return;
  }
  std::size_t from = text.find_first_not_of(" \t\r");
  while (from != std::string_view::npos) {
    const std::size_t end = std::min(text.find_first_of(" \t\r", from), text.size());
    fields.push_back(trimmed(text.substr(from, end - from)));
    from = text.find_first_not_of(" \t\r", end);
  }
}

bool parseField(std::string_view field, double& value) {
  if (field.empty()) {
    value = std::numeric_limits<double>::quiet_NaN();
    return true;
  }
  field.remove_prefix(field.front() == '+' ? 1 : 0);
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  return error == std::errc{} && end == field.data() + field.size();
}

TextLayout layoutOf(const std::string& path, const std::vector<std::string>& head) {
  TextLayout layout;
  while (layout.firstLine < head.size() && isComment(head[layout.firstLine])) {
    ++layout.firstLine;
  }
  const std::vector<std::string> lines(head.begin() + static_cast<std::ptrdiff_t>(layout.firstLine),
                                       head.end());
  layout.separator = separatorOf(lines);
  if (layout.separator == '\0') {
    throw Failure(ExitCode::badInput,
                  path +
                      ": is no table of numbers: no separator (comma, semicolon, tab, blank) gives "
                      "the same count of 3 or more columns in its first lines");
  }
  std::vector<std::string_view> fields;
  splitFields(lines.front(), layout.separator, fields);
  layout.columns = fields.size();
  if (!areNumbers(fields)) {
    nameColumns(path, fields, layout);
    ++layout.firstLine;
  }
  return layout;
}

}  // namespace program
