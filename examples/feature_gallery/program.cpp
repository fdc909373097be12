#include "program.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <new>
#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/core/utils/logger.hpp>

namespace examples {
namespace {

int complain(const CLI::App& app, std::string what) {
  std::replace(what.begin(), what.end(), '\n', ' ');
  std::fprintf(stderr, "%s: %s\n", app.get_name().c_str(), what.c_str());
  return kExitBadInput;
}

/// OpenCV would print every error before it throws it; the program tells it in its own words.
int keepQuiet(int, const char*, const char*, const char*, int, void*) {
  return 0;
}

}  // namespace

int runProgram(const ProgramHead& head,
               int argc,
               char** argv,
               const std::function<void()>& body) noexcept {
  CLI::App app(head.purpose, head.name);
  head.addOptions(app);
  app.add_option_function<int>("--threads", cv::setNumThreads,
                               "Threads to work with (default: all cores)")
      ->check(CLI::Range(1, 1024))
      ->type_name("COUNT");
  try {
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    cv::redirectError(keepQuiet);
    app.parse(argc, argv);
    body();
    return 0;
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& error) {
    return complain(app, std::string(error.what()) + " (--help lists the options)");
  } catch (const std::bad_alloc&) {
    return complain(app, "not enough memory; try a smaller scan");
  } catch (const cv::Exception& error) {
    return complain(app, "image error: " + error.err);
  } catch (const std::exception& error) {
    return complain(app, error.what());
  }
}

void prepareFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, error)) {
    throw UserError("cannot make the folder '" + folder + "'; give another with --out");
  }
}

CLI::Validator numberIn(double min, double max) {
  CLI::Range range(min, max);
  // A range lets "nan" through, since it compares false with both ends.
  CLI::Validator finite(
      [](std::string& input) {
        double value = 0.0;
        const bool ok = CLI::detail::lexical_cast(input, value) && std::isfinite(value);
        return ok ? std::string{} : "Value " + input + " is not a finite number";
      },
      "");
  return finite & range;
}

void addLength(CLI::App& app,
               const std::string& name,
               std::optional<double>& value,
               const std::string& what,
               const std::string& group) {
  constexpr double kShortest = 1e-9;
  constexpr double kLongest = 1e9;
  app.add_option(name, value, what)
      ->check(numberIn(kShortest, kLongest))
      ->type_name("LENGTH")
      ->group(group);
}

}  // namespace examples
