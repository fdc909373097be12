/**
 * @file
 * Finds, parts and outlines the objects on a belt, also where they touch or lie on one another.
 *
 * The steps with the library's functions are in pipeline.cpp; the rest of the program makes or
 * reads a scan and shows what came out.
 */

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "compare.h"
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
  ReportHead head;
  std::vector<BeltObject> truth;
};

Input loadInput(const Options& options) {
  const bool isMade = options.file.path.empty();
  const std::string unit =
      options.output.unit.empty() ? (isMade ? "mm" : "units") : options.output.unit;
  if (!isMade) {
    return {readScan(options.file), {options.file.path, unit}, {}};
  }
  Scene scene = makeScene(options.scene);
  const std::string source = "made belt, tilted by " + fixed(scene.tiltDegrees, 2) + " deg, seed " +
                             std::to_string(options.scene.seed);
  return {std::move(scene.scan), {source, unit}, std::move(scene.objects)};
}

SplitResult split(Scan& scan, const SplitParams& params) {
  Progress progress("Splitting", kSplitSteps);
  return splitObjects(scan, params, progress);
}

/// Writes a picture of each stage into the folder.
void writePictures(const SplitResult& result,
                   const SplitParams& params,
                   const std::string& unit,
                   const std::string& folder) {
  const auto write = [&](const char* name, const cv::Mat& picture) {
    writePng((std::filesystem::path(folder) / name).string(), picture);
  };
  write("split_objects_1_mask.png", drawMask(result, unit));
  write("split_objects_2_distances.png", drawDistances(result, unit));
  write("split_objects_3_regions.png", drawRegions(result, unit));
  write("split_objects_4_outlines.png", drawOutlines(result, params, unit));
}

void run(const Options& options) {
  prepareFolder(options.output.folder);
  Input input = loadInput(options);
  if (!options.output.saveScan.empty()) {
    writeScan(options.output.saveScan, input.scan);
  }
  const SplitParams params = paramsFor(options, measureScan(input.scan));

  const SplitResult result = split(input.scan, params);
  writePictures(result, params, input.head.unit, options.output.folder);

  printObjects(result, params, input.head);
  if (!input.truth.empty()) {
    printComparison(compare(input.truth, result.objects), result, input.head.unit);
  }
  printTimes(result);
  std::printf(
      "\nPictures: %s\n",
      (std::filesystem::path(options.output.folder) / "split_objects_*.png").string().c_str());
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  examples::Options options;
  const examples::ProgramHead head = {
      "split_objects",
      "Finds and outlines touching objects on a belt: in a scan file, or a belt that it makes.",
      [&](CLI::App& app) { examples::addOptions(app, options); }};
  return examples::runProgram(head, argc, argv, [&] { examples::run(options); });
}
