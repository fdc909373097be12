#include "output/text_table.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/number.h"

namespace program {
namespace {

/// Characters of UTF-8 text.
std::size_t widthOf(const std::string& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width, bool right) {
  const std::string blanks(width - std::min(width, widthOf(text)), ' ');
  return right ? blanks + text : text + blanks;
}

bool isNumberColumn(const Table& table, std::size_t column) {
  return std::none_of(table.rows.begin(), table.rows.end(), [&](const std::vector<Cell>& row) {
    return std::holds_alternative<std::string>(row[column]);
  });
}

std::vector<std::size_t> shownColumns(const Table& table) {
  std::vector<std::size_t> shown;
  for (std::size_t c = 0; c < table.columns.size(); ++c) {
    if (!table.columns[c].isOnlyInFiles) {
      shown.push_back(c);
    }
  }
  return shown;
}

/// Names, units if there are any, and rows.
std::vector<std::vector<std::string>> textsOf(const Table& table,
                                              const std::vector<std::size_t>& shown) {
  std::vector<std::vector<std::string>> lines(1);
  std::vector<std::string> units;
  bool hasUnit = false;
  for (const std::size_t c : shown) {
    const Column& column = table.columns[c];
    lines.front().push_back(column.name);
    units.push_back(column.unit.empty() ? "" : "[" + column.unit + "]");
    hasUnit = hasUnit || !column.unit.empty();
  }
  if (hasUnit) {
    lines.push_back(std::move(units));
  }
  for (const std::vector<Cell>& row : table.rows) {
    std::vector<std::string>& line = lines.emplace_back();
    for (const std::size_t c : shown) {
      line.push_back(asText(row[c], table.columns[c].decimals));
    }
  }
  return lines;
}

std::string joined(const std::vector<std::string>& cells,
                   const std::vector<std::size_t>& widths,
                   const std::vector<bool>& right) {
  std::string line = " ";
  for (std::size_t c = 0; c < cells.size(); ++c) {
    line += ' ' + padded(cells[c], widths[c], right[c]) + ' ';
  }
  line.erase(line.find_last_not_of(' ') + 1);
  return line + '\n';
}

}  // namespace

std::string asText(const Cell& cell, int decimals) {
  struct Visitor {
    int decimals;
    std::string operator()(std::monostate) const {
      return "-";
    }
    std::string operator()(long long count) const {
      return grouped(count);
    }
    std::string operator()(double value) const {
      return std::isfinite(value) ? fixed(value, decimals) : "-";
    }
    std::string operator()(bool value) const {
      return value ? "yes" : "no";
    }
    std::string operator()(const std::string& text) const {
      return text;
    }
  };
  return std::visit(Visitor{decimals}, cell);
}

std::string asText(const Table& table) {
  const std::vector<std::size_t> shown = shownColumns(table);
  std::vector<bool> right;
  for (const std::size_t c : shown) {
    right.push_back(isNumberColumn(table, c));
  }
  const std::vector<std::vector<std::string>> lines = textsOf(table, shown);
  std::vector<std::size_t> widths(shown.size(), 0);
  for (const std::vector<std::string>& line : lines) {
    for (std::size_t c = 0; c < line.size(); ++c) {
      widths[c] = std::max(widths[c], widthOf(line[c]));
    }
  }
  std::string text;
  for (const std::vector<std::string>& line : lines) {
    text += joined(line, widths, right);
  }
  return text;
}

}  // namespace program
