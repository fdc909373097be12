#pragma once

#include <vector>

#include <scanline/scanline.h>
#include "edge_fit.h"
#include "plane_view.h"
#include "progress.h"
#include "scan_types.h"

namespace examples {

/// What tunes the road of a scan.
struct TraceParams {
  bool level;                      ///< Whether to look for a reference plane and level with it.
  double cutAbove;                 ///< What rises higher over the plane is cut; 0: nothing.
  SQO_outlierFilterParam outlier;  ///< Which short stretches of a line are blanked.
  int smoothWindow;                ///< Width of the moving mean, in samples.
  SQO_cornerParam corner;          ///< What makes a corner.
  SQO_treeGrowParam grow;          ///< How corners of neighbouring lines are linked.
};

/// How many samples hold a measurement at each stage.
struct SampleCounts {
  long long all;
  long long measured;
  long long afterCut;
  long long afterOutliers;
};

/// What became of a scan.
struct TraceResult {
  SQO_planeCalibPara calibration;  ///< Identity when the scan was not levelled.
  bool isLevelled;
  PlaneView before;
  PlaneView after;
  double cutHeight;  ///< Levelled z beyond which samples were cut; 0: none were.
  SampleCounts samples;
  Scan scan;  ///< Levelled, cleaned and smoothed.
  std::vector<SQO_lineFeature> features;
  std::vector<TracedEdge> edges;  ///< The longest first.
};

/**
 * Follows the edges of a scan, from the raw lines to straight lines in space.
 *
 * The lines are worked on side by side; the result does not depend on the number of threads.
 */
TraceResult traceFeatures(Scan scan, const TraceParams& params, Progress& progress);

/// Levels one raw line of the scan like traceFeatures() does, and no more.
Line levelledLine(Line line, const TraceResult& result);

}  // namespace examples
