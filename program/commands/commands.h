#pragma once

#include <functional>

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/// What the command on the command line does.
using Body = std::function<void()>;

// Each adds a command to the program. Parsing it sets `body`.
void addInfo(CLI::App& program, Body& body);
void addCalibrate(CLI::App& program, Body& body);
void addTrace(CLI::App& program, Body& body);
void addGaps(CLI::App& program, Body& body);
void addArcs(CLI::App& program, Body& body);
void addSplit(CLI::App& program, Body& body);
void addRegister(CLI::App& program, Body& body);
void addLine(CLI::App& program, Body& body);
void addMake(CLI::App& program, Body& body);

}  // namespace program
