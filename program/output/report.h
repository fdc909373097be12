#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace program {

/// A cell of a table. An empty one, and a number that is not finite, is written as null in JSON and
/// as nothing in CSV.
using Cell = std::variant<std::monostate, long long, double, bool, std::string>;

struct Column {
  std::string name;            ///< A word in small letters, such as "length".
  std::string unit;            ///< Shown in text alone; empty: none.
  int decimals = 3;            ///< Of floating-point numbers in text. JSON and CSV hold all digits.
  bool isOnlyInFiles = false;  ///< Left out in text, which has to fit into a terminal.
};

constexpr bool kOnlyInFiles = true;

/// Rows of cells. Every table is written whole to JSON.
struct Table {
  std::string name;   ///< Its key in JSON, such as "trees".
  std::string title;  ///< Its heading in text; empty: not shown in text.
  std::vector<Column> columns;
  std::vector<std::vector<Cell>> rows;
};

/// A named value, or a group of them.
struct Field {
  std::string name;
  std::variant<Cell, std::vector<Field>, std::vector<Cell>> value;
};

inline Field field(std::string name, Cell value) {
  return {std::move(name), std::move(value)};
}

/// What a command found: written as text to the standard output, as JSON and as CSV.
struct Report {
  std::string command;        ///< The schema is "scanline.<command>".
  std::vector<Field> fields;  ///< "input", "axes", "plane", ... in this order.
  std::vector<Table> tables;
  std::string csvTable;            ///< The table that --csv writes.
  std::vector<std::string> lines;  ///< Sentences for people, before the tables in text.
};

}  // namespace program
