#pragma once

#include <stdexcept>
#include <string>

namespace program {

/// The exit codes of the program.
enum class ExitCode {
  success = 0,
  fault = 1,         ///< An unexpected exception: a fault of the program.
  usage = 2,         ///< A wrong option, argument or configuration file.
  badInput = 3,      ///< An input file is missing, damaged or refused.
  nothingFound = 4,  ///< The scan was read, but there is nothing to report.
  cannotWrite = 5,   ///< An output file cannot be written; none is left half written.
};

/// Ends the program with a message and an exit code. The message states what is wrong, why, and
/// what to do.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, const std::string& message) : std::runtime_error(message), code_(code) {}

  [[nodiscard]] ExitCode code() const {
    return code_;
  }

 private:
  ExitCode code_;
};

}  // namespace program
