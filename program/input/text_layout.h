#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace program {

/// How a text file separates its numbers, and which column holds what.
struct TextLayout {
  char separator = ' ';  ///< ' ' stands for any run of blanks and tabs.
  std::size_t columns = 0;
  bool hasHeader = false;  ///< The first row names the columns.
  int x = 0;
  int y = 1;
  int z = 2;
  int line = -1;    ///< Index of the scan line; -1: none.
  int sample = -1;  ///< Index on the line; -1: none.
};

/// The fields of a row.
void splitFields(std::string_view text, char separator, std::vector<std::string_view>& fields);

/// A number, or NaN for an empty field; not for other text.
bool parseField(std::string_view field, double& value);

/// Finds the layout by the first rows of a file, of which bad ones may be few.
/// @throws Failure (badInput)
TextLayout findLayout(const std::string& path);

}  // namespace program
