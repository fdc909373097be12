#include "input/text_layout.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <limits>

#include "base/failure.h"
#include "base/number.h"
#include "input/text_source.h"

namespace program {
namespace {

/// The first rows of a file.
struct Head {
  std::vector<std::string> rows;
  std::size_t firstNumber = 0;  ///< The number of the first row's line.
};

Head readHead(const std::string& path) {
  constexpr std::size_t kRows = 100;
  TextSource source(path);
  Head head;
  std::string_view row;
  while (head.rows.size() < kRows && source.next(row)) {
    head.rows.emplace_back(row);
    head.firstNumber = head.rows.size() == 1 ? source.number() : head.firstNumber;
  }
  return head;
}

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\"");
  const std::size_t last = text.find_last_not_of(" \t\r\"");
  return first == std::string_view::npos ? std::string_view{}
                                         : text.substr(first, last - first + 1);
}

/// The name of a column in small letters without a unit: "X [mm]" and "x_mm" are "x".
std::string nameOf(std::string_view text) {
  std::string result(text.substr(0, text.find_first_of(" _[(")));
  std::transform(result.begin(), result.end(), result.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return result;
}

bool isNumber(std::string_view field) {
  double ignored = 0.0;
  return parseField(field, ignored);
}

/// The separator that splits most rows into the same count of fields with three numbers at least;
/// '\0' if none does.
char separatorOf(const std::vector<std::string>& rows) {
  constexpr std::ptrdiff_t kLeast = 3;
  for (const char separator : {',', ';', '\t', ' '}) {
    std::vector<std::string_view> fields;
    splitFields(rows.front(), separator, fields);
    const std::size_t columns = fields.size();
    const auto isGood = [&](const std::string& row) {
      splitFields(row, separator, fields);
      return fields.size() == columns &&
             std::count_if(fields.begin(), fields.end(), isNumber) >= kLeast;
    };
    if (2 * std::count_if(rows.begin(), rows.end(), isGood) >=
        static_cast<std::ptrdiff_t>(rows.size())) {
      return separator;
    }
  }
  return '\0';
}

/// Finds the columns by the names in the header. Returns whether x, y and z are among them.
bool nameColumns(const std::vector<std::string_view>& names, TextLayout& layout) {
  const auto find = [&](std::initializer_list<const char*> known) {
    for (std::size_t c = 0; c < names.size(); ++c) {
      if (std::find(known.begin(), known.end(), nameOf(names[c])) != known.end()) {
        return static_cast<int>(c);
      }
    }
    return -1;
  };
  layout.hasHeader = true;
  layout.x = find({"x"});
  layout.y = find({"y"});
  layout.z = find({"z"});
  layout.line = find({"line", "row", "profile"});
  layout.sample = find({"sample", "col", "column", "point"});
  return layout.x >= 0 && layout.y >= 0 && layout.z >= 0;
}

Failure noTable(const std::string& path, const std::string& row) {
  const bool hasDecimalCommas = row.find(',') != std::string::npos &&
                                row.find_first_of("; \t") != std::string::npos &&
                                row.find_first_not_of("0123456789+-eE,; \t\r") == std::string::npos;
  return {ExitCode::badInput,
          path + ": is no table of numbers: " +
              (hasDecimalCommas ? "its numbers have commas for decimal points. Write points"
                                : "neither comma, semicolon, tab nor blank splits its first rows "
                                  "into the same count of 3 or more columns")};
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
  field.remove_prefix(hasPlus(field) ? 1 : 0);
  const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), value);
  return error == std::errc{} && end == field.data() + field.size();
}

TextLayout findLayout(const std::string& path) {
  const Head head = readHead(path);
  if (head.rows.empty()) {
    throw Failure(ExitCode::badInput, path + ": holds no rows of numbers");
  }
  TextLayout layout;
  layout.separator = separatorOf(head.rows);
  if (layout.separator == '\0') {
    throw noTable(path, head.rows.back());
  }
  std::vector<std::string_view> fields;
  splitFields(head.rows.front(), layout.separator, fields);
  layout.columns = fields.size();
  if (!std::all_of(fields.begin(), fields.end(), isNumber) && !nameColumns(fields, layout)) {
    throw Failure(ExitCode::badInput,
                  path + ":" + std::to_string(head.firstNumber) +
                      ": expected numbers, or a header with the columns x, y and z, found '" +
                      head.rows.front().substr(0, 60) + "'");
  }
  return layout;
}

}  // namespace program
