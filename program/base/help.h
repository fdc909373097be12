#pragma once

#include <string>

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/// The help of the program or of a command, named `name`, wrapped to the width of a terminal. A
/// line break in the help of an option begins a new line, which keeps its indentation.
std::string helpOf(const CLI::App& app, const std::string& name);

}  // namespace program
