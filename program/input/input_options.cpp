#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "base/number.h"
#include "input/scan_input.h"

namespace program {
namespace {

const char* const kGroup = "Input";

void addPitch(CLI::App& command, const char* name, std::optional<double>& pitch, const char* help) {
  command
      .add_option_function<std::string>(
          name, [&](const std::string& text) { pitch = parseNumber(text); }, help)
      ->check(positiveUpTo(1e6))
      ->type_name("LENGTH")
      ->group(kGroup);
}

void addRoi(CLI::App& command, InputOptions& options) {
  command
      .add_option_function<std::vector<std::string>>(
          "--roi",
          [&](const std::vector<std::string>& texts) {
            std::array<double, 6> roi{};
            std::transform(texts.begin(), texts.end(), roi.begin(),
                           [](const std::string& text) { return *parseNumber(text); });
            if (!(roi[0] < roi[1] && roi[2] < roi[3] && roi[4] < roi[5])) {
              throw CLI::ValidationError("--roi",
                                         "X0 must be less than X1, Y0 than Y1, Z0 than Z1");
            }
            options.roi = roi;
          },
          "Ignore samples outside of these limits; z as in the file")
      ->expected(6)
      ->check(numberIn(-1e9, 1e9))
      ->type_name("X0 X1 Y0 Y1 Z0 Z1")
      ->group(kGroup);
}

void addMeaningOfZ(CLI::App& command, InputOptions& options) {
  CLI::Option* height =
      command.add_flag("--z-is-height", options.zIsHeight, "z grows towards the sensor")
          ->group(kGroup);
  command.add_flag("--z-is-distance", "z grows away from the sensor (the default)")
      ->excludes(height)
      ->group(kGroup);
}

}  // namespace

void addInputOptions(CLI::App& command, InputOptions& options, const std::string& name) {
  command
      .add_option(name, options.path,
                  "Scan: image (TIFF of x, y, z; range image), text (CSV, XYZ), NPY, PCD or PLY. "
                  "Its rows are lines, which advance in x; samples follow y")
      ->required()
      ->type_name("FILE");
  command
      .add_option(
          "--format", options.format,
          "Format of the scan: image, text, npy, pcd, ply or auto, which goes by its extension "
          "(default: auto)")
      ->check(CLI::IsMember({"auto", "image", "text", "npy", "pcd", "ply"}).description(""))
      ->type_name("NAME")
      ->group(kGroup);
  command
      .add_option_function<std::string>(
          "--scale", [&](const std::string& text) { options.scale = *parseNumber(text); },
          "Multiply x, y and z, such as 1000 for metres to millimetres")
      ->check(positiveUpTo(1e9))
      ->type_name("FACTOR")
      ->group(kGroup);
  command.add_option("--unit", options.unit, "Unit of the scaled values, for labels (default: mm)")
      ->type_name("NAME")
      ->group(kGroup);
  addMeaningOfZ(command, options);
  command.add_flag("--transpose", options.transpose, "Exchange lines and samples, x and y")
      ->group(kGroup);
  command
      .add_option_function<std::string>(
          "--axes",
          [&](const std::string& order) {
            options.axes = order == "keep"   ? AxisOrder::keep
                           : order == "swap" ? AxisOrder::swap
                                             : AxisOrder::automatic;
          },
          "Exchange x and y: auto, keep or swap (default: auto)")
      ->check(CLI::IsMember({"auto", "keep", "swap"}).description(""))
      ->type_name("ORDER")
      ->group(kGroup);
  addPitch(command, "--pitch-x", options.pitchX, "Range image: distance of its rows (default: 1)");
  addPitch(command, "--pitch-y", options.pitchY,
           "Range image: distance of its columns (default: 1)");
  command
      .add_option_function<std::string>(
          "--channels", [&](const std::string& order) { options.channelsZyx = order == "zyx"; },
          "Order of the channels of a TIFF: xyz or zyx (default: xyz)")
      ->check(CLI::IsMember({"xyz", "zyx"}).description(""))
      ->type_name("ORDER")
      ->group(kGroup);
  addRoi(command, options);
}

}  // namespace program
