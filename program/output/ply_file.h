#pragma once

#include <string>
#include <vector>

#include "base/scan.h"
#include "draw/canvas.h"

namespace program {

/// A line in space with a colour.
struct PlyPath {
  std::vector<STesk3DPoint> points;
  Colour colour;
};

/// Writes the measured samples as grey points, and paths as coloured points with edges between
/// them, as binary PLY. Viewers that ignore edges show their points. Returns whether it was
/// written.
bool writePly(const std::string& path, const Scan& scan, const std::vector<PlyPath>& paths);

}  // namespace program
