#pragma once

#include <optional>
#include <string>

#include "scan_types.h"

namespace examples {

/// The plane z = c + a x + b y.
struct TruePlane {
  double a;
  double b;
  double c;
};

/// A scan with a reference plane in it. Of a file's plane nothing is known.
struct Scene {
  std::string name;
  Scan scan;
  std::optional<TruePlane> truth;
};

/// A tilted plate with blocks on it: most samples lie at the plate's heights.
Scene makePlateScene();

/// A tilted plate with a wide round hole: the lines beside the hole run in one piece.
Scene makeHoleScene();

/// A shelf over falling ground, seen from the side: every line ends on the ground.
Scene makeGroundScene();

}  // namespace examples
