#include "input/scan_input.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>
#include <map>
#include <utility>

#include "base/extent.h"
#include "base/failure.h"
#include "base/number.h"
#include "input/readers.h"

namespace program {
namespace {

constexpr double kLargestCoordinate = 1e9;

using Reader = RawScan (*)(const InputOptions&);

struct Format {
  const char* name;
  std::vector<const char*> extensions;
  Reader read;
};

const std::vector<Format>& formats() {
  static const std::vector<Format> all = {{"image", {".tif", ".tiff", ".png"}, readImage},
                                          {"text", {".csv", ".txt", ".xyz", ".asc"}, readText},
                                          {"npy", {".npy"}, readNpy}};
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
}

/// Applies `change(point)` to every sample that has a value.
template <typename Change>
void changeMeasured(Scan& scan, Change change) {
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      if (!std::isnan(sample.pt3D.z)) {
        change(sample.pt3D);
      }
    }
  });
}

template <typename IsMissing>
long long blank(Scan& scan, IsMissing isMissing) {
  std::vector<long long> counts(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      if (!std::isnan(sample.pt3D.z) && isMissing(sample.pt3D)) {
        sample.pt3D = {0.0, 0.0, std::nan("")};
        ++counts[l];
      }
    }
  });
  long long sum = 0;
  for (const long long count : counts) {
    sum += count;
  }
  return sum;
}

long long countHoles(const Scan& scan) {
  long long holes = 0;
  for (const Line& line : scan) {
    holes += std::count_if(line.begin(), line.end(),
                           [](const STesk3DPosition& sample) { return std::isnan(sample.pt3D.z); });
  }
  return holes;
}

void applyPitches(RawScan& raw, const InputOptions& options) {
  if (!raw.isRange && (options.pitchX || options.pitchY)) {
    throw Failure(ExitCode::usage,
                  "--pitch-x and --pitch-y have no effect: " + options.path + " holds x and y");
  }
  if (raw.isRange) {
    changeMeasured(raw.scan, [&](STesk3DPoint& p) {
      p.x *= options.pitchX.value_or(1.0);
      p.y *= options.pitchY.value_or(1.0);
    });
  }
}

Scan transposed(const Scan& scan, const std::string& path) {
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
  double alongX = 0.0;
  double alongY = 0.0;
  for (const Line& line : scan) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      const STesk3DPoint& a = line[i - 1].pt3D;
      const STesk3DPoint& b = line[i].pt3D;
      if (!std::isnan(a.z) && !std::isnan(b.z)) {
        alongX += std::abs(b.x - a.x);
        alongY += std::abs(b.y - a.y);
      }
    }
  }
  return alongX > alongY;
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

bool isInside(const STesk3DPoint& p, const std::array<double, 6>& roi) {
  return p.x >= roi[0] && p.x <= roi[1] && p.y >= roi[2] && p.y <= roi[3] && p.z >= roi[4] &&
         p.z <= roi[5];
}

/// Limits that only strays exceed: the middle 98 % of an axis, widened on both sides by three times
/// the largest such width of the three axes.
struct Limits {
  STesk3DPoint min;
  STesk3DPoint max;
};

Limits limitsOf(const Scan& scan) {
  constexpr double kWidths = 3.0;
  STeskRangeD ranges[3];
  double widest = 0.0;
  for (int axis = 0; axis < 3; ++axis) {
    std::vector<double> values = sampledValues(scan, axis);
    ranges[axis] = {quantile(values, 0.01), quantile(values, 0.99)};
    widest = std::max(widest, ranges[axis].max - ranges[axis].min);
  }
  const double margin = kWidths * widest;
  return {{ranges[0].min - margin, ranges[1].min - margin, ranges[2].min - margin},
          {ranges[0].max + margin, ranges[1].max + margin, ranges[2].max + margin}};
}

bool isOutside(const STesk3DPoint& p, const Limits& limits) {
  return p.x < limits.min.x || p.x > limits.max.x || p.y < limits.min.y || p.y > limits.max.y ||
         p.z < limits.min.z || p.z > limits.max.z;
}

void removeStrays(LoadedScan& loaded, Messages& messages) {
  const Limits limits = limitsOf(loaded.scan);
  loaded.strays = blank(loaded.scan, [&](const STesk3DPoint& p) { return isOutside(p, limits); });
  if (loaded.strays > 0) {
    messages.warn("strays", grouped(loaded.strays) +
                                " samples far outside of the scan were taken for missing");
  }
}

/// Turns heights into distances from just above the highest sample.
void turnIntoDistances(LoadedScan& loaded) {
  double highest = -kLargestCoordinate;
  double lowest = kLargestCoordinate;
  for (const Line& line : loaded.scan) {
    for (const STesk3DPosition& sample : line) {
      if (!std::isnan(sample.pt3D.z)) {
        highest = std::max(highest, sample.pt3D.z);
        lowest = std::min(lowest, sample.pt3D.z);
      }
    }
  }
  constexpr double kMarginOfSpan = 0.01;
  loaded.heightOrigin = highest + std::max(1.0, kMarginOfSpan * (highest - lowest));
  changeMeasured(loaded.scan, [&](STesk3DPoint& p) { p.z = loaded.heightOrigin - p.z; });
}

/// What has no value, or none that the library takes for one, becomes missing.
void markMissing(LoadedScan& loaded, Messages& messages) {
  constexpr double kLeastDistance = 0.0001;
  loaded.notPositive =
      blank(loaded.scan, [](const STesk3DPoint& p) { return !(p.z > kLeastDistance); });
  for (Line& line : loaded.scan) {
    for (STesk3DPosition& sample : line) {
      sample.pt3D.z = std::isnan(sample.pt3D.z) ? 0.0 : sample.pt3D.z;
    }
  }
  if (loaded.notPositive > 0) {
    messages.warn("not-positive",
                  grouped(loaded.notPositive) +
                      " distances at or below zero were taken for missing. If z is a "
                      "height, use --z-is-height");
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
  applyPitches(raw, options);
  LoadedScan loaded;
  loaded.format = std::move(raw.format);
  loaded.scan = options.transpose ? transposed(raw.scan, options.path) : std::move(raw.scan);
  for (const Line& line : loaded.scan) {
    loaded.samples += static_cast<long long>(line.size());
  }
  blank(loaded.scan, [](const STesk3DPoint& p) {
    return !(std::abs(p.x) <= kLargestCoordinate && std::abs(p.y) <= kLargestCoordinate &&
             std::abs(p.z) <= kLargestCoordinate);
  });
  loaded.holes = countHoles(loaded.scan);
  requireSamples(loaded, options.path);
  changeMeasured(loaded.scan, [&](STesk3DPoint& p) {
    p = {options.scale * p.x, options.scale * p.y, options.scale * p.z};
  });
  orderAxes(loaded.scan, options.axes, messages);
  if (options.roi) {
    loaded.outside =
        blank(loaded.scan, [&](const STesk3DPoint& p) { return !isInside(p, *options.roi); });
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
