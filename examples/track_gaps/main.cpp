/**
 * @file
 * Follows gaps, such as the seam between two plates, across a scan and measures them.
 *
 * run() goes through the steps; those with the library's functions are in pipeline.cpp, the fits in
 * gap_track.cpp.
 */

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "gap_track.h"
#include "options.h"
#include "pictures.h"
#include "pipeline.h"
#include "plane_calibration.h"
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
  std::string unit;
  std::vector<TrueGap> truth;
};

/// The made scene, unless the command line names a file.
Input loadInput(const Options& options) {
  if (!options.file.path.empty()) {
    return {readScan(options.file),
            options.file.path,
            options.output.unit.empty() ? "units" : options.output.unit,
            {}};
  }
  Progress progress("Making the scene", options.scene.lines);
  Scene scene = makeScene(options.scene, progress);
  return {std::move(scene.scan),
          "made scene, part tilted by " + fixed(scene.tiltDegrees, 2) + " deg",
          options.output.unit.empty() ? "mm" : options.output.unit, std::move(scene.gaps)};
}

void checkLine(const Options& options, std::size_t lines) {
  if (options.profileLine >= static_cast<int>(lines)) {
    throw UserError("--line: the scan has lines 0 to " + std::to_string(lines - 1));
  }
}

/// Runs a step of the pipeline and notes what it took.
template <typename Step>
auto timed(std::vector<StepTime>& times, const char* name, Step step) {
  const auto start = std::chrono::steady_clock::now();
  auto result = step();
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
  times.push_back({name, took.count()});
  return result;
}

std::vector<GapTrack> measureTracks(const std::vector<SQO_gapFeatureTree>& trees,
                                    const std::vector<TrueGap>& truth,
                                    const SQO_planeCalibPara& calibration) {
  std::vector<GapTrack> tracks;
  for (const SQO_gapFeatureTree& tree : trees) {
    tracks.push_back(measureTrack(tree));
    tracks.back().truth = matchTruth(tracks.back(), truth, calibration.invLevelMatrix);
  }
  std::stable_sort(tracks.begin(), tracks.end(),
                   [](const GapTrack& a, const GapTrack& b) { return a.length > b.length; });
  return tracks;
}

/// Writes both pictures into the folder and gives their names.
std::string writePictures(const Scan& scan,
                          const std::vector<GapTrack>& tracks,
                          const SJU_pointCloudPara& cloud,
                          const Options& options,
                          const std::string& unit) {
  const int line =
      options.profileLine >= 0 ? options.profileLine : typicalLine(tracks, scan.size());
  const std::filesystem::path folder(options.output.folder);
  const std::string map = (folder / "track_gaps_map.png").string();
  const std::string profile = (folder / "track_gaps_profile.png").string();
  writePng(map, drawMap(scan, tracks, cloud, line, unit));
  writePng(profile, drawProfile(scan, tracks, line, unit));
  return map + ", " + profile;
}

ReportHead headOf(const Input& input,
                  const SJU_pointCloudPara& cloud,
                  const SQO_planeCalibPara& calibration) {
  long long samples = 0;
  for (const Line& line : input.scan) {
    samples += static_cast<long long>(line.size());
  }
  const double levelledBy = isLevelling(calibration) ? tiltDegrees(calibration.levelMatrix) : 0.0;
  return {input.source, input.unit, cloud, input.scan.size(), samples, levelledBy};
}

void run(const Options& options) {
  prepareFolder(options.output.folder);
  Input input = loadInput(options);
  Scan& scan = input.scan;
  if (!options.output.saveScan.empty()) {
    writeScan(options.output.saveScan, scan);
  }
  const SJU_pointCloudPara cloud = measureScan(scan);
  const GapParams params = paramsFor(options, cloud);
  checkLine(options, scan.size());

  std::vector<StepTime> times;
  const SQO_planeCalibPara calibration = timed(
      times, "find the plane", [&] { return options.noLevel ? noCalibration() : calibrate(scan); });
  scan = timed(times, "level", [&] { return levelled(std::move(scan), calibration); });
  LineGaps gaps = timed(times, "find gaps", [&] { return findGaps(scan, params); });
  const std::vector<SQO_gapFeatureTree> trees =
      timed(times, "follow gaps", [&] { return followGaps(gaps, params.grow); });
  const std::vector<GapTrack> tracks = timed(
      times, "measure and fit", [&] { return measureTracks(trees, input.truth, calibration); });

  const std::string pictures = writePictures(scan, tracks, cloud, options, input.unit);
  const ReportHead head = headOf(input, cloud, calibration);
  printReport(tracks, gaps, head);
  printTimes(times, head);
  std::printf("\nPictures: %s\n", pictures.c_str());
}

}  // namespace
}  // namespace examples

int main(int argc, char** argv) {
  examples::Options options;
  const examples::ProgramHead head = {
      "track_gaps", "Follows gaps across a laser-line scan: of a file, or of a part that it makes.",
      [&](CLI::App& app) { examples::addOptions(app, options); }};
  return examples::runProgram(head, argc, argv, [&] { examples::run(options); });
}
