#include "output/writers.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include <scanline/version.h>
#include "base/number.h"
#include "output/text_table.h"

namespace program {
namespace {

using Json = nlohmann::ordered_json;

constexpr int kSchemaVersion = 1;

/// JSON has no numbers that are not finite; nlohmann writes them as null.
Json asJson(const Cell& cell) {
  struct Visitor {
    Json operator()(std::monostate) const {
      return nullptr;
    }
    Json operator()(long long count) const {
      return count;
    }
    Json operator()(double value) const {
      return value;
    }
    Json operator()(bool value) const {
      return value;
    }
    Json operator()(const std::string& text) const {
      return text;
    }
  };
  return std::visit(Visitor{}, cell);
}

Json asJson(const std::vector<Cell>& cells) {
  Json list = Json::array();
  for (const Cell& cell : cells) {
    list.push_back(asJson(cell));
  }
  return list;
}

Json asJson(const Field& field);

Json asJson(const std::vector<Field>& fields) {
  Json object = Json::object();
  for (const Field& field : fields) {
    object[field.name] = asJson(field);
  }
  return object;
}

Json asJson(const Field& field) {
  return std::visit([](const auto& value) { return asJson(value); }, field.value);
}

/// A file name may hold bytes that are not UTF-8.
std::string dumped(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Columns and rows, a row a line. Rows are written one by one, as there may be millions.
std::string tableAsJson(const Table& table) {
  Json columns = Json::array();
  for (const Column& column : table.columns) {
    columns.push_back(column.name);
  }
  std::string text = "{\"columns\": " + dumped(columns) + ", \"rows\": [";
  const char* separator = "\n    ";
  for (const std::vector<Cell>& row : table.rows) {
    text += separator + dumped(asJson(row));
    separator = ",\n    ";
  }
  return text + (table.rows.empty() ? "]}" : "\n  ]}");
}

/// Whether its text leaves out columns.
bool isCut(const Table& table) {
  return !table.rows.empty() &&
         std::any_of(table.columns.begin(), table.columns.end(),
                     [](const Column& column) { return column.isOnlyInFiles; });
}

std::string csvField(const Cell& cell) {
  if (const auto* value = std::get_if<double>(&cell)) {
    return std::isfinite(*value) ? exact(*value) : std::string{};
  }
  if (const auto* count = std::get_if<long long>(&cell)) {
    return std::to_string(*count);
  }
  if (std::holds_alternative<std::monostate>(cell)) {
    return {};
  }
  std::string text = asText(cell, 0);
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at + 2)) {
    text.insert(at, 1, '"');
  }
  return '"' + text + '"';
}

}  // namespace

std::string asJson(const Report& report) {
  std::string text = "{\n  \"schema\": " + dumped("scanline." + report.command) +
                     ",\n  \"schema_version\": " + std::to_string(kSchemaVersion) +
                     ",\n  \"program\": " + dumped("scanline " SCANLINE_VERSION_STRING);
  for (const Field& field : report.fields) {
    text += ",\n  " + dumped(field.name) + ": " + dumped(asJson(field));
  }
  for (const Table& table : report.tables) {
    text += ",\n  " + dumped(table.name) + ": " + tableAsJson(table);
  }
  return text + "\n}\n";
}

std::string asCsv(const Report& report) {
  const auto table = std::find_if(report.tables.begin(), report.tables.end(),
                                  [&](const Table& t) { return t.name == report.csvTable; });
  std::string text;
  const auto addLine = [&](const auto& cells, auto asField) {
    const char* separator = "";
    for (const auto& cell : cells) {
      text += separator + asField(cell);
      separator = ",";
    }
    text += "\r\n";
  };
  addLine(table->columns, [](const Column& column) { return column.name; });
  for (const std::vector<Cell>& row : table->rows) {
    addLine(row, csvField);
  }
  return text;
}

std::string asText(const Report& report) {
  std::string text;
  for (const std::string& line : report.lines) {
    text += line + '\n';
  }
  for (const Table& table : report.tables) {
    if (!table.title.empty()) {
      text += '\n' + table.title + (isCut(table) ? " (all columns: --json)" : "") + '\n' +
              (table.rows.empty() ? "  none\n" : asText(table));
    }
  }
  return text;
}

}  // namespace program
