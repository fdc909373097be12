#include "commands/session.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <opencv2/core/utility.hpp>

#include "base/config_file.h"
#include "base/failure.h"
#include "base/number.h"
#include "output/scan_file.h"
#include "output/writers.h"

namespace program {
namespace {

/// Accepts a file name with one of these extensions.
CLI::Validator withExtension(const std::vector<std::string>& extensions,
                             bool allowsStandardOutput) {
  return {[=](std::string& path) {
            if (allowsStandardOutput && path == "-") {
              return std::string{};
            }
            const std::string own = std::filesystem::path(path).extension().string();
            std::string known;
            for (const std::string& extension : extensions) {
              if (own == extension) {
                return std::string{};
              }
              known += (known.empty() ? "" : " or ") + extension;
            }
            return "'" + path + "' must end in " + known;
          },
          ""};
}

void addFile(CLI::App& command,
             const std::string& name,
             std::string& path,
             const std::string& help,
             const CLI::Validator& validator) {
  command.add_option(name, path, help)->type_name("FILE")->group("Output")->check(validator);
}

std::vector<Field> parameterFields(const Parameters& parameters) {
  std::vector<Field> fields;
  for (const Parameters::Parameter& p : parameters.all()) {
    if (p.isUsed) {
      fields.push_back(
          {p.name, std::vector<Field>{field("value", p.value ? Cell{*p.value} : Cell{}),
                                      field("from", std::string(nameOf(p.origin)))}});
    }
  }
  return fields;
}

/// A list of objects, which fields cannot hold, as a table.
Table warningTable(const std::vector<Warning>& warnings) {
  Table table = {"warnings", "", {{"code", ""}, {"text", ""}}, {}};
  for (const Warning& warning : warnings) {
    table.rows.push_back({warning.code, warning.text});
  }
  return table;
}

}  // namespace

void addCommonOptions(CLI::App& command, CommonOptions& options, const Outputs& outputs) {
  addFile(command, "--json", options.json, "Write the results as JSON; - is the standard output",
          withExtension({".json"}, true));
  if (outputs.csv != nullptr) {
    addFile(command, "--csv", options.csv,
            std::string("Write the ") + outputs.csv + " as CSV; - is the standard output",
            withExtension({".csv"}, true));
  }
  if (outputs.ply != nullptr) {
    addFile(command, "--ply", options.ply, std::string("Write ") + outputs.ply + " as PLY",
            withExtension({".ply"}, false));
  }
  if (outputs.picture != nullptr) {
    addFile(command, "--picture", options.picture, std::string("Draw ") + outputs.picture,
            withExtension({".png", ".svg"}, false));
  }
  if (outputs.scan != nullptr) {
    addFile(command, "--save-scan", options.saveScan,
            std::string("Write ") + outputs.scan +
                " with z as a distance, as TIFF or, in double precision, NPY",
            withExtension({".tiff", ".tif", ".npy"}, false));
  }
  command.add_flag("--overwrite", options.overwrite, "Replace files that exist")->group("Output");
  const std::string general = "General";
  command.add_option("--config", options.config, "TOML file with values for the options")
      ->type_name("FILE")
      ->group(general);
  command
      .add_flag("--print-config", options.printConfig,
                "Print all values as such a file, with their origin, and stop")
      ->group(general);
  command.add_option("--threads", options.threads, "Threads to work with (default: all cores)")
      ->check(countIn(1, 1024))
      ->type_name("COUNT")
      ->group(general);
  command.add_flag("-q,--quiet", options.quiet, "No warnings, progress or list of files")
      ->group(general);
}

void addColourOption(CLI::App& command, CommonOptions& options) {
  command
      .add_option_function<std::vector<std::string>>(
          "--colours",
          [&](const std::vector<std::string>& texts) {
            options.colours = STeskRangeD{*parseNumber(texts[0]), *parseNumber(texts[1])};
            if (!(options.colours->min < options.colours->max)) {
              throw CLI::ValidationError("--colours", "MIN must be less than MAX");
            }
          },
          "Range of the map's colours (default: the middle 98 % of the scan)")
      ->expected(2)
      ->check(numberIn(-1e9, 1e9))
      ->type_name("MIN MAX")
      ->group("Output");
}

Session::Session(CLI::App& command, const CommonOptions& options, Parameters& parameters)
    : messages(
          (options.config.empty() ? void() : readConfig(options.config, command), options.quiet)),
      files(options.overwrite),
      command_(command),
      options_(options),
      parameters_(parameters) {
  parameters_.takeGiven();
  if (options_.threads > 0) {
    cv::setNumThreads(options_.threads);
  }
  if (options_.colours && options_.picture.empty()) {
    throw Failure(ExitCode::usage, "--colours has no effect without --picture");
  }
  if (options_.json == "-" && options_.csv == "-") {
    throw Failure(ExitCode::usage, "--json - and --csv - cannot share the standard output");
  }
}

LoadedScan Session::load(const InputOptions& input) {
  for (const std::string& path :
       {options_.json, options_.csv, options_.ply, options_.picture, options_.saveScan}) {
    files.check(path, {input.path});
  }
  return loadScan(input, messages);
}

PreparedScan Session::prepare(const InputOptions& input, const PlaneOptions& plane) {
  PreparedScan prepared;
  prepared.loaded = load(input);
  prepared.raw = extentOf(prepared.loaded.scan);
  prepared.plane = choosePlane(prepared.loaded.scan, prepared.raw, plane, messages);
  if (prepared.plane.chosen) {
    level(prepared.loaded.scan, prepared.plane);
  }
  prepared.extent = prepared.plane.chosen ? extentOf(prepared.loaded.scan) : prepared.raw;
  return prepared;
}

bool Session::printsConfig() {
  if (options_.printConfig) {
    std::fputs(configOf(command_, parameters_).c_str(), stdout);
  }
  return options_.printConfig;
}

void Session::saveScan(const Scan& scan, const Extent& extent) {
  if (!options_.saveScan.empty()) {
    addScanFile(files, options_.saveScan, scan, extent, messages);
  }
}

void Session::finish(Report& report, const std::optional<Picture>& picture) {
  report.fields.push_back({"parameters", parameterFields(parameters_)});
  report.tables.push_back(warningTable(messages.warnings()));
  if (picture && !options_.picture.empty()) {
    files.add(options_.picture,
              [&](const std::string& path) { return writePicture(*picture, path); });
  }
  if (!options_.csv.empty()) {
    files.add(options_.csv, asCsv(report));
  }
  std::vector<Cell> written(files.paths().begin(), files.paths().end());
  if (!options_.json.empty()) {
    if (options_.json != "-") {
      written.emplace_back(options_.json);
    }
    report.fields.push_back({"files", written});
    files.add(options_.json, asJson(report));
  }
  if (options_.json != "-" && options_.csv != "-") {
    files.add("-", asText(report));
  }
  files.publish();
  for (const std::string& path : files.paths()) {
    if (!messages.quiet()) {
      std::fprintf(stderr, "wrote %s\n", path.c_str());
    }
  }
}

}  // namespace program
