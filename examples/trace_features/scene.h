#pragma once

#include "progress.h"
#include "scan_types.h"

namespace examples {

/// A made scan, and what the program should find in it.
struct Scene {
  Scan scan;
  double tiltDegrees;  ///< Angle between the table and the sensor's horizontal.
};

/**
 * Scans a workbench that exists only here: a tilted table with three boxes, one of them stepped, a
 * round boss, a round bar, a wedge and a curved groove.
 *
 * 800 lines of 1200 samples, 0.5 mm and 0.25 mm apart. z is a height over the far end of the
 * measuring range, so the table is the surface of smallest z. A camera beside the laser leaves
 * shadows behind edges, and the samples carry noise, dropouts, short stretches of false heights and
 * a few ghosts: patches far above everything, as mirror reflections make them. The same on every
 * run, with any number of threads.
 */
Scene makeScene(Progress& progress);

/// Lines of the scene, and so the steps that makeScene() reports.
constexpr int kSceneLines = 800;

}  // namespace examples
