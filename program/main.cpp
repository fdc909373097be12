/**
 * @file
 * scanline, the program: the library's algorithms on scan files, from a shell.
 */

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <new>
#include <opencv2/core.hpp>
#include <opencv2/core/utils/logger.hpp>
#include <string>

#include <scanline/version.h>
#include "base/failure.h"
#include "base/help.h"
#include "commands/commands.h"

namespace program {
namespace {

int fail(ExitCode code, std::string what) {
  std::replace(what.begin(), what.end(), '\n', ' ');
  std::fprintf(stderr, "scanline: error: %s\n", what.c_str());
  return static_cast<int>(code);
}

/// OpenCV would print every error before it throws it.
int ignoreError(int, const char*, const char*, const char*, int, void*) {
  return 0;
}

void addCommands(CLI::App& program, Body& body) {
  // Commands take it over when they are added.
  program.formatter_fn([](const CLI::App* app, const std::string& name, CLI::AppFormatMode) {
    return helpOf(*app, name);
  });
  program.set_version_flag("--version", "scanline " SCANLINE_VERSION_STRING, "Print the version");
  program.set_help_flag("-h,--help", "Print this help");
  program.require_subcommand(1);
  program.footer("scanline COMMAND --help lists the options of a command.");
  addInfo(program, body);
  addCalibrate(program, body);
  addTrace(program, body);
  addGaps(program, body);
  addArcs(program, body);
  addSplit(program, body);
  addRegister(program, body);
  addLine(program, body);
  addMake(program, body);
}

/// The parser would only state that a command is missing.
void requireCommand(const CLI::App& program, int argc, char** argv) {
  const std::string given = argc > 1 ? argv[1] : "-";
  std::string names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    if (given == command->get_name() || given.front() == '-') {
      return;
    }
    names += (names.empty() ? "" : ", ") + command->get_name();
  }
  throw Failure(ExitCode::usage, "'" + given + "' is no command. The commands are " + names);
}

int run(int argc, char** argv) {
  CLI::App program("Levels laser-line scans, traces their features and splits their objects.",
                   "scanline");
  Body body;
  try {
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    cv::redirectError(ignoreError);
    addCommands(program, body);
    requireCommand(program, argc, argv);
    program.parse(argc, argv);
    body();
    return static_cast<int>(ExitCode::success);
  } catch (const CLI::Success& help) {
    return program.exit(help);
  } catch (const CLI::ParseError& error) {
    const auto commands = program.get_subcommands();
    const std::string command = commands.empty() ? "" : commands.front()->get_name() + " ";
    return fail(ExitCode::usage,
                std::string(error.what()) + ". See scanline " + command + "--help");
  } catch (const Failure& failure) {
    return fail(failure.code(), failure.what());
  } catch (const std::bad_alloc&) {
    return fail(ExitCode::badInput, "not enough memory for this scan. Limit it with --roi");
  } catch (const cv::Exception& error) {
    return fail(ExitCode::fault, "in OpenCV: " + error.err + ". Please report this");
  } catch (const std::exception& error) {
    return fail(ExitCode::fault, std::string(error.what()) + ". Please report this");
  }
}

}  // namespace
}  // namespace program

int main(int argc, char** argv) {
  return program::run(argc, argv);
}
