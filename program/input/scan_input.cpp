#include "input/scan_input.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <utility>

#include "base/failure.h"
#include "input/readers.h"
#include "input/sample_filters.h"

namespace program {
namespace {

using Reader = RawScan (*)(const InputOptions&);

struct Format {
  const char* name;
  std::vector<const char*> extensions;
  Reader read;
};

const std::vector<Format>& formats() {
  static const std::vector<Format> all = {{"image", {".tif", ".tiff", ".png"}, readImage},
                                          {"text", {".csv", ".txt", ".xyz", ".asc"}, readText},
                                          {"npy", {".npy"}, readNpy},
                                          {"pcd", {".pcd"}, readPcd},
                                          {"ply", {".ply"}, readPly}};
  return all;
}

/// The format that the option or the extension names.
const Format& formatOf(const InputOptions& options) {
  std::string extension = std::filesystem::path(options.path).extension().string();
  std::transform(extension.begin(), extension.end(), extension.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  std::string known;
  for (const Format& format : formats()) {
    for (const char* own : format.extensions) {
      known += std::string(known.empty() ? "" : " ") + own;
      if (options.format == format.name || (options.format == "auto" && extension == own)) {
        return format;
      }
    }
  }
  throw Failure(ExitCode::badInput, options.path + ": its extension is none of " + known +
                                        ". Name the format with --format");
}

void requireFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    throw Failure(ExitCode::badInput, path + ": there is no such file");
  }
  if (!std::filesystem::is_regular_file(path, error)) {
    throw Failure(ExitCode::badInput, path + ": is not a file");
  }
  if (std::filesystem::file_size(path, error) == 0) {
    throw Failure(ExitCode::badInput, path + ": is empty");
  }
  if (!std::ifstream(path)) {
    throw Failure(ExitCode::badInput, path + ": cannot be read: no permission");
  }
}

void applyLayout(RawScan& raw, const InputOptions& options) {
  if (!raw.isRange && (options.pitchX || options.pitchY)) {
    throw Failure(ExitCode::usage,
                  "--pitch-x and --pitch-y have no effect: " + options.path + " holds x and y");
  }
  if (options.channelsZyx && (raw.isRange || !raw.isImage)) {
    throw Failure(ExitCode::usage,
                  "--channels has no effect: " + options.path + " is no image of x, y and z");
  }
  if (raw.isRange) {
    changeMeasured(raw.scan, [&](STesk3DPoint& p) {
      p.x *= options.pitchX.value_or(1.0);
      p.y *= options.pitchY.value_or(1.0);
    });
  }
}

Scan transposed(Scan scan, const std::string& path) {
  const std::size_t samples = scan.front().size();
  Scan result(samples, Line(scan.size()));
  for (std::size_t l = 0; l < scan.size(); ++l) {
    if (scan[l].size() != samples) {
      throw Failure(ExitCode::usage, path + ": --transpose needs lines of equal length");
    }
    for (std::size_t i = 0; i < samples; ++i) {
      const STesk3DPoint& p = scan[l][i].pt3D;
      result[i][l] = {static_cast<int>(l), {p.y, p.x, p.z}};
    }
  }
  return result;
}

/// Whether x changes faster than y along the lines.
bool xRunsAlongLines(const Scan& scan) {
  // Steps are counted, not added up, as a single stray may be farther away than all lines are long.
  long long xFaster = 0;
  long long yFaster = 0;
  for (const Line& line : scan) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const STesk3DPoint& a = line[i - 1].pt3D;
      const STesk3DPoint& b = line[i].pt3D;
      if (!std::isnan(a.z) && !std::isnan(b.z)) {
        const double dx = std::abs(b.x - a.x);
        const double dy = std::abs(b.y - a.y);
        xFaster += dx > dy ? 1 : 0;
        yFaster += dy > dx ? 1 : 0;
      }
    }
  }
  return xFaster > yFaster;
}

void orderAxes(Scan& scan, AxisOrder order, Messages& messages) {
  const bool swaps =
      order == AxisOrder::swap || (order == AxisOrder::automatic && xRunsAlongLines(scan));
  if (swaps) {
    changeMeasured(scan, [](STesk3DPoint& p) { std::swap(p.x, p.y); });
  }
  if (swaps && order == AxisOrder::automatic) {
    messages.warn("axes-exchanged",
                  "x runs along the lines of the file, so x and y were exchanged. --axes keep or "
                  "--axes swap decides it; --transpose exchanges lines and samples");
  }
}

void requireSamples(const LoadedScan& loaded, const std::string& path) {
  const bool isAny = std::any_of(loaded.scan.begin(), loaded.scan.end(), [](const Line& line) {
    return std::any_of(line.begin(), line.end(), [](const STesk3DPosition& sample) {
      return !std::isnan(sample.pt3D.z) && sample.pt3D.z != 0.0;
    });
  });
  if (!isAny) {
    throw Failure(
        ExitCode::badInput,
        path + ": holds no measurement" +
            (loaded.outside > 0 ? " inside of --roi" : ": all values are 0 or not finite"));
  }
}

}  // namespace

LoadedScan loadScan(const InputOptions& options, Messages& messages) {
  requireFile(options.path);
  RawScan raw = formatOf(options).read(options);
  applyLayout(raw, options);
  LoadedScan loaded;
  loaded.format = std::move(raw.format);
  loaded.scan =
      options.transpose ? transposed(std::move(raw.scan), options.path) : std::move(raw.scan);
  for (const Line& line : loaded.scan) {
    loaded.samples += static_cast<long long>(line.size());
  }
  removeImpossible(loaded.scan);
  loaded.holes = countHoles(loaded.scan);
  requireSamples(loaded, options.path);
  changeMeasured(loaded.scan, [&](STesk3DPoint& p) {
    p = {options.scale * p.x, options.scale * p.y, options.scale * p.z};
  });
  orderAxes(loaded.scan, options.axes, messages);
  if (options.roi) {
    loaded.outside = removeOutside(loaded.scan, *options.roi);
    requireSamples(loaded, options.path);
  }
  removeStrays(loaded, messages);
  if (options.zIsHeight) {
    turnIntoDistances(loaded);
  }
  markMissing(loaded, messages);
  requireSamples(loaded, options.path);
  return loaded;
}

}  // namespace program
