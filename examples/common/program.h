#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

namespace examples {

/// Something that the user can mend: a bad option, a bad file, a scan that holds nothing.
class UserError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What stops a program that was given something it cannot work with.
constexpr int kExitBadInput = 2;

/**
 * Parses the command line and runs the program's body.
 *
 * Help goes to the standard output. Whatever goes wrong is told in exactly one line on the standard
 * error stream and ends with kExitBadInput; nothing is thrown.
 */
int runProgram(CLI::App& app, int argc, char** argv, const std::function<void()>& body) noexcept;

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
