#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>

#include "base/failure.h"
#include "base/number.h"
#include "commands/commands.h"
#include "commands/register_checks.h"
#include "commands/register_report.h"
#include "commands/session.h"
#include "output/scan_file.h"

namespace program {
namespace {

struct Register {
  explicit Register(CLI::App& app) : command(app), parameters(app, "Method") {}

  CLI::App& command;
  Parameters parameters;
  CommonOptions common;
  InputOptions input;  ///< Of A; B has the same but for its path.
  std::string pathB;
  std::string points;
  std::vector<std::string> marks;
  bool dropsOutliers = false;
};

bool isSameFile(const std::string& a, const std::string& b) {
  std::error_code error;
  return std::filesystem::equivalent(a, b, error);
}

void checkInputs(const Register& options) {
  if (isSameFile(options.input.path, options.pathB)) {
    throw Failure(ExitCode::usage, options.pathB + ": A and B are the same file. Give two scans");
  }
  if (options.points.empty() == options.marks.empty()) {
    throw Failure(
        ExitCode::usage,
        "give either --points with pairs of points, or --marks with a file for each scan");
  }
  if (!options.marks.empty() && isSameFile(options.marks[0], options.marks[1])) {
    throw Failure(ExitCode::usage,
                  options.marks[1] + ": --marks names the same file twice. Give one for each scan");
  }
}

void checkOutputs(const Register& options, const Session& session) {
  std::vector<std::string> inputs = options.marks;
  inputs.insert(inputs.end(), {options.input.path, options.pathB});
  if (!options.points.empty()) {
    inputs.push_back(options.points);
  }
  for (const std::string& path :
       {options.common.json, options.common.csv, options.common.picture, options.common.saveScan}) {
    session.files.check(path, inputs);
  }
}

std::vector<PointPair> readPoints(const Register& options, Messages& messages) {
  std::vector<PointPair> pairs = options.points.empty()
                                     ? readMarks(options.marks[0], options.marks[1], messages)
                                     : readPairs(options.points);
  const std::string why = whyNoMotion(pairs);
  if (!why.empty()) {
    const std::string file =
        options.points.empty() ? options.marks[0] + ", " + options.marks[1] : options.points;
    throw Failure(ExitCode::badInput, file + ": " + why);
  }
  return pairs;
}

/// z in the coordinates of the points, which are those of the file.
double zOfFile(const LoadedScan& loaded, bool zIsHeight, double z) {
  return zIsHeight ? loaded.heightOrigin - z : z;
}

/// Moves B into A's frame, where z is a distance too. Counts samples that come to lie at the sensor
/// or beyond it, and so are missing.
Scan movedScan(const Register& options,
               const LoadedScan& b,
               const LoadedScan& a,
               const Motion& motion,
               Messages& messages) {
  const bool zIsHeight = options.input.zIsHeight;
  Scan moved = b.scan;
  std::vector<long long> lost(moved.size());
  forEachLine(moved, [&](std::size_t l) {
    for (STesk3DPosition& sample : moved[l]) {
      if (!isMeasured(sample)) {
        continue;
      }
      STesk3DPoint& p = sample.pt3D;
      const cv::Point3d to = motion.apply({p.x, p.y, zOfFile(b, zIsHeight, p.z)});
      p = {to.x, to.y, zOfFile(a, zIsHeight, to.z)};
      if (!isMeasured(sample)) {
        p.z = 0.0;
        ++lost[l];
      }
    }
  });
  long long sum = 0;
  for (const long long count : lost) {
    sum += count;
  }
  if (sum > 0) {
    messages.warn("not-positive", "took " + counted(sum, "sample") +
                                      " of B for missing, as the motion brings them to A's sensor "
                                      "or beyond it");
  }
  return moved;
}

/// The motion may turn lines into the direction of y, so samples count as square.
Extent movedExtent(const Scan& moved, const Extent& before) {
  Extent extent = extentOf(moved);
  extent.lineSpacing = std::max(before.lineSpacing, before.sampleSpacing);
  extent.sampleSpacing = extent.lineSpacing;
  return extent;
}

std::string nameOf(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

Picture pictureOf(const Register& options,
                  const std::vector<PointPair>& pairs,
                  const Registration& found,
                  const Overlay& overlay,
                  const Agreement& agreement) {
  OverlayContent content;
  content.title = nameOf(options.pathB) + " on " + nameOf(options.input.path);
  content.subtitle = "Points: rms " + rmsAsText(found.rms) + " " + options.input.unit;
  if (agreement.overlap > 0.0) {
    content.subtitle += "; 90 % of the overlap within " + significant(agreement.mostOfThem, 3) +
                        " " + options.input.unit;
  }
  content.unit = options.input.unit;
  content.zIsHeight = options.input.zIsHeight;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    content.labels.push_back({pairs[i].id, {pairs[i].a.x, pairs[i].a.y}});
    content.isOutlier.push_back(found.residuals[i].isOutlier);
  }
  return overlayPicture(overlay, agreement, std::move(content));
}

/// The limit between pairs that agree and outliers.
double limitFor(Register& options, const std::vector<PointPair>& pairs, const Extent& extent) {
  constexpr double kSpreads = 3.0;
  constexpr double kNoises = 6.0;
  const double least = std::max(kNoises * extent.noise, 1e-6);
  options.parameters.derive("outlier.limit", std::max(kSpreads * consensusSpread(pairs), least));
  return options.parameters.get("outlier.limit");
}

Field inputsField(const Register& options,
                  const InputOptions& inputB,
                  const LoadedScan (&scans)[2],
                  const Extent (&extents)[2]) {
  Field a = inputField(options.input, scans[0], extents[0]);
  Field b = inputField(inputB, scans[1], extents[1]);
  a.name = "a";
  b.name = "b";
  return {"input", std::vector<Field>{std::move(a), std::move(b)}};
}

void run(Register& options) {
  Session session(options.command, options.common, options.parameters);
  checkInputs(options);
  checkOutputs(options, session);
  const std::vector<PointPair> pairs = readPoints(options, session.messages);
  InputOptions inputB = options.input;
  inputB.path = options.pathB;
  const LoadedScan scans[2] = {loadScan(options.input, session.messages),
                               loadScan(inputB, session.messages)};
  checkAxes(session.messages);
  const Extent extents[2] = {extentOf(scans[0].scan), extentOf(scans[1].scan)};
  const double limit = limitFor(options, pairs, extents[0]);
  if (session.printsConfig()) {
    return;
  }
  warnIfOutside(pairs, &PointPair::a, "A", extents[0], session.messages);
  warnIfOutside(pairs, &PointPair::b, "B", extents[1], session.messages);
  const Registration found = registerPairs(pairs, limit, !options.dropsOutliers);
  warnOfPoints(pairs, found, limit, options.dropsOutliers, session.messages);
  const Scan moved = movedScan(options, scans[1], scans[0], found.motion, session.messages);
  const Extent extent = movedExtent(moved, extents[1]);
  const Overlay overlay = overlaid({scans[0].scan, extents[0]}, {moved, extent});
  const Agreement agreement = agreementOf(overlay);
  Report report;
  report.command = "register";
  report.csvTable = "points";
  report.fields = {inputsField(options, inputB, scans, extents), axesField(options.input, {}),
                   motionField(found, pairs.size()), agreementField(agreement)};
  report.lines = describe(found, agreement, options.input.unit);
  report.tables = {motionTable(found.motion, options.input.unit),
                   residualTable(pairs, found, options.input.unit)};
  if (!options.common.saveScan.empty()) {
    addScanFile(session.files, options.common.saveScan, moved, extent, session.messages);
  }
  session.finish(report, pictureOf(options, pairs, found, overlay, agreement));
}

}  // namespace

void addRegister(CLI::App& program, Body& body) {
  CLI::App* command =
      program.add_subcommand("register", "Find the motion that lays scan B on scan A");
  command->footer(
      "Points are in the coordinates of the scans after --scale, --axes and --transpose, z as in "
      "the file. The options of group Input hold for both scans.\n\n"
      "Example: scanline register a.tiff b.tiff --points pairs.csv --picture overlay.png");
  const auto options = std::make_shared<Register>(*command);
  addInputOptions(*command, options->input, "A");
  refusePlane(*command,
              "the motion is found in the coordinates of the files, which those of the points are "
              "too. Level what --save-scan writes, with calibrate");
  command->add_option("B", options->pathB, "The scan that is moved")->required()->type_name("FILE");
  command
      ->add_option("--points", options->points,
                   "Pairs of points as CSV: x1, y1, z1 in A and x2, y2, z2 in B")
      ->type_name("FILE")
      ->group("Method");
  command
      ->add_option("--marks", options->marks,
                   "Marks of A and of B, a CSV each: id, x, y, z. Marks of one id are a pair")
      ->expected(2)
      ->type_name("A B")
      ->group("Method");
  command
      ->add_flag("--drop-outliers", options->dropsOutliers,
                 "Fit the motion without the pairs that are flagged as outliers")
      ->group("Method");
  options->parameters.addDerived(
      "outlier.limit", Kind::length,
      "3 robust deviations of the pairs or 6 times the noise of A, the larger",
      "A pair farther than this from the motion of most pairs is an outlier");
  addCommonOptions(
      *command, options->common,
      {"points with their residuals", nullptr,
       "both scans over each other, in colours of their difference", "B moved into A's frame"});
  command->final_callback([options, &body] { body = [options] { run(*options); }; });
}

}  // namespace program
