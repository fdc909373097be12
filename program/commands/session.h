#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/extent.h"
#include "base/messages.h"
#include "base/parameters.h"
#include "base/scan.h"
#include "draw/canvas.h"
#include "input/scan_input.h"
#include "output/output_file.h"
#include "output/report.h"
#include "plane/plane_choice.h"

namespace CLI {
class App;
}  // namespace CLI

namespace program {

/// The options that all commands share; an empty path asks for no file.
struct CommonOptions {
  std::string json;
  std::string csv;
  std::string ply;
  std::string picture;
  std::optional<STeskRangeD> colours;  ///< Shown z of the ends of the colours of a map.
  std::string saveScan;
  bool overwrite = false;
  std::string config;
  bool printConfig = false;
  int threads = 0;  ///< 0: all cores.
  bool quiet = false;
};

/// Which files a command can write beside JSON.
struct Outputs {
  const char* csv = nullptr;      ///< What the rows are, such as "nodes of trees"; null: no CSV.
  const char* ply = nullptr;      ///< What is drawn over the scan; null: no PLY.
  const char* picture = nullptr;  ///< What it shows; null: none.
  const char* scan = nullptr;     ///< Which scan --save-scan writes; null: none.
};

void addCommonOptions(CLI::App& command, CommonOptions& options, const Outputs& outputs);

/// Adds --colours, for commands whose picture is a map.
void addColourOption(CLI::App& command, CommonOptions& options);

/// A scan that is ready to work on.
struct PreparedScan {
  LoadedScan loaded;  ///< Levelled, if a plane was chosen.
  Extent raw;         ///< As it was read.
  Extent extent;      ///< Levelled.
  PlaneChoice plane;
};

/// Does what all commands share: checks the outputs, loads and levels the scan, writes the results.
class Session {
 public:
  /// Takes the configuration file and the given parameters.
  Session(CLI::App& command, const CommonOptions& options, Parameters& parameters);

  Messages messages;
  OutputFiles files;

  /// Checks that the outputs can be written, then loads the scan.
  LoadedScan load(const InputOptions& input);
  /// Loads a scan and levels it to the plane that the options ask for.
  PreparedScan prepare(const InputOptions& input, const PlaneOptions& plane);

  /// Whether --print-config asks for the configuration alone; prints it then. All parameters must
  /// be derived.
  bool printsConfig();

  /// Adds the scan to the files if --save-scan asks for it.
  void saveScan(const Scan& scan, const Extent& extent);

  /// Writes the report and what else was asked for. Gives all files their names, and lists them on
  /// the standard error stream. Other files are added to `files` before.
  void finish(Report& report, const std::optional<Picture>& picture = std::nullopt);

 private:
  CLI::App& command_;
  const CommonOptions& options_;
  Parameters& parameters_;
};

/// The fields of a report that describe the scan and the axes; planeField() describes the plane.
Field inputField(const InputOptions& input, const LoadedScan& loaded, const Extent& extent);
Field axesField(const InputOptions& input, const PlaneChoice& plane);

/// The same for people, a sentence each.
std::vector<std::string> describe(const InputOptions& input, const PreparedScan& scan);

}  // namespace program
