/**
 * @file
 * Traces the edges of a scan, from raw lines to straight lines in space.
 *
 * The steps with the library's functions are in pipeline.cpp; the rest of the program makes or
 * reads a scan and shows what came out.
 */

#include <cstdio>
#include <filesystem>
#include <string>
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
    options.output.unit = options.output.unit.empty() ? "units" : options.output.unit;
    return {readScan(options.file), options.file.path};
  }
  Progress progress("Making the scene", kSceneLines);
  Scene scene = makeScene(progress);
  options.output.unit = options.output.unit.empty() ? "mm" : options.output.unit;
  options.cutAbove = options.cutAbove.value_or(60.0);
  return {std::move(scene.scan),
          "made scene, table tilted by " + fixed(scene.tiltDegrees, 2) + " deg"};
}

void checkLine(const Options& options, const Scan& scan) {
  const int lines = static_cast<int>(scan.size());
  if (options.profileLine >= lines) {
    throw UserError("--line: the scan has lines 0 to " + std::to_string(lines - 1));
  }
}

TraceResult trace(Scan scan, const TraceParams& params) {
  Progress progress("Tracing", static_cast<int>(scan.size()));
  return traceFeatures(std::move(scan), params, progress);
}

/// Writes both pictures into the folder and gives their names.
std::string writePictures(const TraceResult& result,
                          const Scan& raw,
                          const SJU_pointCloudPara& cloud,
                          const Options& options) {
  const int line = options.profileLine >= 0 ? options.profileLine : richestLine(result);
  const std::filesystem::path folder(options.output.folder);
  const std::string map = (folder / "trace_features_map.png").string();
  const std::string profile = (folder / "trace_features_profile.png").string();
  const Line levelled = levelledLine(raw[static_cast<std::size_t>(line)], result);
  writePng(map, drawMap(result, cloud, line, options.output.unit));
  writePng(profile, drawProfile(result, levelled, line, options.output.unit));
  return map + ", " + profile;
}

void run(Options options) {
  prepareFolder(options.output.folder);
  Input input = loadInput(options);
  if (!options.output.saveScan.empty()) {
    writeScan(options.output.saveScan, input.scan);
  }
  const SJU_pointCloudPara cloud = measureScan(input.scan);
  checkLine(options, input.scan);

  const TraceResult result = trace(input.scan, paramsFor(options, cloud));
  const std::string pictures = writePictures(result, input.scan, cloud, options);

  printReport(result, {input.source, options.output.unit, cloud.scanLineStep, cloud.ptStep});
  std::printf("\nPictures: %s\n", pictures.c_str());
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  examples::Options options;
  const examples::ProgramHead head = {
      "trace_features",
      "Traces the edges of a laser-line scan: of a file, or of a scene that it makes.",
      [&](CLI::App& app) { examples::addOptions(app, options); }};
  return examples::runProgram(head, argc, argv, [&] { examples::run(options); });
}
