#include "text_table.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

namespace examples {

void TextTable::addColumn(std::string header, Align align) {
  headers_.push_back(std::move(header));
  aligns_.push_back(align);
}

void TextTable::addRow(std::vector<std::string> cells) {
  cells.resize(headers_.size());
  rows_.push_back(std::move(cells));
}

void TextTable::print() const {
  std::vector<int> widths;
  std::vector<std::string> rule;
  for (std::size_t c = 0; c < headers_.size(); ++c) {
    std::size_t width = headers_[c].size();
    for (const std::vector<std::string>& row : rows_) {
      width = std::max(width, row[c].size());
    }
    widths.push_back(static_cast<int>(width));
    rule.emplace_back(width, '-');
  }
  printRow(headers_, widths);
  printRow(rule, widths);
  for (const std::vector<std::string>& row : rows_) {
    printRow(row, widths);
  }
}

void TextTable::printRow(const std::vector<std::string>& cells,
                         const std::vector<int>& widths) const {
  std::string line;
  for (std::size_t c = 0; c < cells.size(); ++c) {
    const std::string padding(static_cast<std::size_t>(widths[c]) - cells[c].size(), ' ');
    line += "  " + (aligns_[c] == Align::left ? cells[c] + padding : padding + cells[c]);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  std::printf("%s\n", line.c_str());
}

std::string fixed(double value, int decimals) {
  const double unit = std::pow(10.0, -decimals);
  const double shown = std::abs(value) < 0.5 * unit ? 0.0 : value;
  char text[400];
  std::snprintf(text, sizeof text, "%.*f", decimals, shown);
  return text;
}

std::string significant(double value, int digits) {
  if (value == 0.0 || !std::isfinite(value)) {
    return fixed(value, 0);
  }
  const int magnitude = static_cast<int>(std::floor(std::log10(std::abs(value))));
  return fixed(value, std::clamp(digits - 1 - magnitude, 0, 9));
}

std::string grouped(long long count) {
  std::string text = std::to_string(count);
  for (int place = static_cast<int>(text.size()) - 3; place > 0; place -= 3) {
    text.insert(static_cast<std::size_t>(place), " ");
  }
  return text;
}

}  // namespace examples
