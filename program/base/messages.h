#pragma once

#include <string>
#include <vector>

namespace program {

/// Something the user should know that does not stop the program.
struct Warning {
  std::string code;  ///< A word for scripts, such as "strays".
  std::string text;
};

/// Writes warnings to the standard error stream as they come, and keeps them for the report.
class Messages {
 public:
  explicit Messages(bool quiet) : quiet_(quiet) {}

  void warn(std::string code, std::string text);

  [[nodiscard]] const std::vector<Warning>& warnings() const {
    return warnings_;
  }
  [[nodiscard]] bool quiet() const {
    return quiet_;
  }

 private:
  bool quiet_;
  std::vector<Warning> warnings_;
};

}  // namespace program
