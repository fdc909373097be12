#pragma once

#include <string>
#include <vector>

namespace examples {

enum class Align { left, right };

/// A table of text whose columns are as wide as their widest cell.
class TextTable {
 public:
  void addColumn(std::string header, Align align);
  /// One cell per column.
  void addRow(std::vector<std::string> cells);
  /// Writes headers, a rule and the rows to the standard output, indented by two spaces.
  void print() const;

 private:
  void printRow(const std::vector<std::string>& cells, const std::vector<int>& widths) const;

  std::vector<std::string> headers_;
  std::vector<Align> aligns_;
  std::vector<std::vector<std::string>> rows_;
};

/// A number with a fixed count of decimals; never "-0.00".
std::string fixed(double value, int decimals);

/// A number with about `digits` significant digits and no exponent where it can be helped.
std::string significant(double value, int digits);

/// A count with its thousands set apart: 960 000.
std::string grouped(long long count);

}  // namespace examples
