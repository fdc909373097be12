#include "plane/plane_choice.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "base/failure.h"
#include "base/number.h"
#include "plane/plane_file.h"
#include "plane/plane_fit.h"
#include "plane/plane_methods.h"

namespace program {
namespace {

constexpr double kTiltedDegrees = 20.0;

bool isMethod(const std::string& name) {
  const auto& methods = planeMethods();
  return std::any_of(methods.begin(), methods.end(),
                     [&](const PlaneMethod& method) { return name == method.name; });
}

void warnOfTilt(const PlaneCandidate& plane, Messages& messages) {
  if (!plane.isGround && plane.tiltDegrees > kTiltedDegrees) {
    messages.warn("tilted-plane", "the plane is tilted by " + fixed(plane.tiltDegrees, 1) +
                                      " deg. If it is not the reference, choose another with "
                                      "--plane; --plane none leaves the scan as it is");
  }
}

/// The height search first, and all samples together where that finds nothing.
PlaneChoice chooseAutomatically(Scan& scan,
                                const Scan& few,
                                const Extent& extent,
                                Messages& messages) {
  PlaneChoice choice;
  for (const char* method : {"heights", "region"}) {
    PlaneCandidate candidate = tryMethod(method, scan, few, extent, {});
    judge(candidate);
    if (candidate.refused.empty()) {
      if (!choice.others.empty()) {
        messages.warn("plane-fallback",
                      "the heights show no plane (" + choice.others.front().refused +
                          "); levelled to the plane through all samples. Choose with --plane");
      }
      choice.chosen = std::move(candidate);
      return choice;
    }
    choice.others.push_back(std::move(candidate));
  }
  const std::string& heights = choice.others[0].refused;
  const std::string& region = choice.others[1].refused;
  messages.warn("no-plane", "no reference plane found: " +
                                (heights == region ? heights
                                                   : "by heights, " + heights +
                                                         "; through all samples, " + region) +
                                ". The scan stays as it is");
  return choice;
}

STesk3DPoint rotated(const double (&m)[9], const STesk3DPoint& p, const cv::Point3d& centre) {
  const double x = p.x - centre.x;
  const double y = p.y - centre.y;
  const double z = p.z - centre.z;
  return {m[0] * x + m[1] * y + m[2] * z + centre.x, m[3] * x + m[4] * y + m[5] * z + centre.y,
          m[6] * x + m[7] * y + m[8] * z + centre.z};
}

}  // namespace

void addPlaneOptions(CLI::App& command, PlaneOptions& options) {
  std::string names;
  for (const PlaneMethod& method : planeMethods()) {
    names += std::string("\n  ") + method.name + ": " + method.finds;
  }
  command
      .add_option("--plane", options.method,
                  "Reference plane to level to (default: auto)\n  auto: heights, else region" +
                      names +
                      "\n  none: leave the scan as it is"
                      "\n  FILE: the plane that calibrate --save has written")
      ->type_name("METHOD")
      ->group("Plane");
  command
      .add_option_function<std::vector<std::string>>(
          "--region",
          [&](const std::vector<std::string>& texts) {
            std::array<double, 4> region{};
            std::transform(texts.begin(), texts.end(), region.begin(),
                           [](const std::string& text) { return *parseNumber(text); });
            options.region = region;
          },
          "Limits of --plane region")
      ->expected(4)
      ->check(numberIn(-1e9, 1e9))
      ->type_name("X0 X1 Y0 Y1")
      ->group("Plane");
}

void refusePlane(CLI::App& command, const std::string& why) {
  const auto check = [why](const std::string& method) {
    return method == "none" ? std::string{} : "'" + method + "' has no effect: " + why;
  };
  command
      .add_option_function<std::string>(
          "--plane", [](const std::string&) {}, "none alone: " + why)
      ->check(CLI::Validator(check, ""))
      ->type_name("METHOD")
      ->group("Plane");
}

PlaneChoice choosePlane(Scan& scan,
                        const Extent& extent,
                        const PlaneOptions& options,
                        Messages& messages) {
  if (options.region && options.method != "region") {
    throw Failure(ExitCode::usage, "--region has no effect without --plane region");
  }
  if (options.method == "none") {
    return {};
  }
  const Scan few = thinned(scan);
  if (options.method == "auto") {
    PlaneChoice choice = chooseAutomatically(scan, few, extent, messages);
    if (choice.chosen) {
      warnOfTilt(*choice.chosen, messages);
    }
    return choice;
  }
  PlaneCandidate candidate;
  if (isMethod(options.method)) {
    candidate = tryMethod(options.method, scan, few, extent, options);
    judge(candidate);
    if (!candidate.refused.empty()) {
      throw Failure(ExitCode::nothingFound, "--plane " + options.method +
                                                " finds no plane: " + candidate.refused +
                                                ". scanline calibrate compares all methods");
    }
  } else {
    candidate = readPlane(options.method);
    measureFit(candidate, few, extent);
  }
  warnOfTilt(candidate, messages);
  return {std::move(candidate), {}};
}

void level(Scan& scan, PlaneChoice& plane) {
  PlaneCandidate& chosen = *plane.chosen;
  std::vector<double> nearest(scan.size(), std::numeric_limits<double>::infinity());
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      if (isMeasured(sample)) {
        sample.pt3D = rotated(chosen.calibration.levelMatrix, sample.pt3D, chosen.centre);
        nearest[l] = std::min(nearest[l], sample.pt3D.z);
      }
    }
  });
  // The library takes z below 0.0001 for missing.
  const double least = *std::min_element(nearest.begin(), nearest.end());
  const double shift = least < 1.0 ? 1.0 - least : 0.0;
  if (shift == 0.0 || !std::isfinite(shift)) {
    return;
  }
  chosen.height += chosen.isGround ? 0.0 : shift;
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      sample.pt3D.z += sample.pt3D.z != 0.0 ? shift : 0.0;
    }
  });
}

}  // namespace program
