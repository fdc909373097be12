#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/**
 * Gives the options of a command the values of a TOML file, where the command line has not given
 * them.
 *
 * The table of the command, such as [trace], holds the long names of options and their values.
 *
 * @throws Failure (usage) with file and line, for a file that cannot be read, a key that is not an
 *         option of the command, or a value that the option does not take
 */
void readConfig(const std::string& path, CLI::App& command);

/// The options of a command as such a file: those given, and all parameters.
class Parameters;
std::string configOf(const CLI::App& command, const Parameters& parameters);

}  // namespace program
