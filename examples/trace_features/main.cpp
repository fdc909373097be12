/**
 * @file
 * Traces the edges of a scan, from raw lines to straight lines in space.
 *
 * The steps with the library's functions are in pipeline.cpp; the rest of the program makes or
 * reads a scan and shows what came out.
 */

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <opencv2/core/utility.hpp>
#include <utility>

#include "options.h"
#include "pictures.h"
#include "pipeline.h"
#include "plot.h"
#include "program.h"
#include "report.h"
#include "scene.h"
#include "text_table.h"

namespace examples {
namespace {

/// A scan to work on, and what is known about it.
struct Input {
  Scan scan;
  std::string source;
};

/// The made scene, unless the command line names a file; its unit and cut become the defaults.
Input loadInput(Options& options) {
  if (!options.file.path.empty()) {
    options.unit = options.unit.empty() ? "units" : options.unit;
    return {readScan(options.file), options.file.path};
  }
  Progress progress("Making the scene", kSceneLines);
  Scene scene = makeScene(progress);
  options.unit = options.unit.empty() ? "mm" : options.unit;
  options.cutAbove = options.cutAbove.value_or(60.0);
  return {std::move(scene.scan),
          "made scene, table tilted by " + fixed(scene.tiltDegrees, 2) + " deg"};
}

int chooseLine(const Options& options, const TraceResult& result) {
  const int lines = static_cast<int>(result.scan.size());
  if (options.profileLine >= lines) {
    throw UserError("--line: the scan has lines 0 to " + std::to_string(lines - 1));
  }
  return options.profileLine >= 0 ? options.profileLine : richestLine(result);
}

void prepareFolder(const std::string& folder) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder, error)) {
    throw UserError("cannot make the folder '" + folder + "'; give another with --out");
  }
}

void traceScan(Options options) {
  if (options.threads > 0) {
    cv::setNumThreads(options.threads);
  }
  prepareFolder(options.outDir);
  Input input = loadInput(options);
  if (!options.saveScan.empty()) {
    writeScan(options.saveScan, input.scan);
  }
  const SJU_pointCloudPara cloud = measureScan(input.scan);
  const Scan raw = input.scan;

  Progress progress("Tracing", static_cast<int>(raw.size()));
  const TraceResult result =
      traceFeatures(std::move(input.scan), paramsFor(options, cloud), progress);

  const int line = chooseLine(options, result);
  const std::filesystem::path folder(options.outDir);
  const std::string map = (folder / "trace_features_map.png").string();
  const std::string profile = (folder / "trace_features_profile.png").string();
  writePng(map, drawMap(result, cloud, line, options.unit));
  const Line levelled = levelledLine(raw[static_cast<std::size_t>(line)], result);
  writePng(profile, drawProfile(result, levelled, line, options.unit));

  printReport(result, {input.source, options.unit, cloud.scanLineStep, cloud.ptStep});
  std::printf("\nPictures: %s, %s\n", map.c_str(), profile.c_str());
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  examples::Options options;
  CLI::App app("Traces the edges of a laser-line scan: of a file, or of a scene that it makes.",
               "trace_features");
  examples::addOptions(app, options);
  return examples::runProgram(app, argc, argv, [&] { examples::traceScan(options); });
}
