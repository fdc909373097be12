#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace CLI {
class App;
class Validator;
}  // namespace CLI

namespace examples {

/// Something that the user can mend: a bad option, a bad file, a scan that holds nothing.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What stops a program that was given something it cannot work with.
constexpr int kExitBadInput = 2;

/// What a program is called, what it does, and how it adds its options to its command line.
struct ProgramHead {
  const char* name;
  const char* purpose;
  std::function<void(CLI::App&)> addOptions;
};

/**
 * Parses the command line and runs the program's body. All programs have the option --threads.
 *
 * Help goes to the standard output. Whatever goes wrong is told in exactly one line on the standard
 * error stream and ends with kExitBadInput; nothing is thrown.
 */
int runProgram(const ProgramHead& head,
               int argc,
               char** argv,
               const std::function<void()>& body) noexcept;

/// Makes a folder for the pictures. @throws UserError if it cannot be made.
void prepareFolder(const std::string& folder);

/// A finite number from `min` to `max`, both included.
CLI::Validator numberIn(double min, double max);

/// Adds a length whose default follows from the scan.
void addLength(CLI::App& app,
               const std::string& name,
               std::optional<double>& value,
               const std::string& what,
               const std::string& group);

}  // namespace examples
