#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace program {

/// Reads the rows of a text file: its lines without comments (# and //) and blank ones. It never
/// holds more than a few megabytes.
class TextSource {
 public:
  explicit TextSource(const std::string& path);

  /// The next row, valid until the next call; false at the end of the file.
  /// @throws Failure (badInput) for a line that no text of numbers has
  bool next(std::string_view& row);

  /// The number of the last row's line in the file, from 1.
  [[nodiscard]] std::size_t number() const {
    return number_;
  }

 private:
  bool nextLine(std::string_view& line);

  std::string path_;
  std::ifstream file_;
  std::string buffer_;
  std::size_t at_ = 0;   ///< Start of what was not returned yet.
  std::size_t end_ = 0;  ///< End of what was read.
  std::size_t number_ = 0;
};

}  // namespace program
