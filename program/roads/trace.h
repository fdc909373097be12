#pragma once

#include <vector>

#include <scanline/scanline.h>
#include "base/extent.h"
#include "base/parameters.h"
#include "base/progress.h"
#include "base/scan.h"
#include "roads/cleaning.h"

namespace program {

/// Which corners of a profile are edges.
enum class Edges { upper, lower };

/// What tunes the tracing of edges.
struct TraceParams {
  CleaningParams cleaning;
  SQO_cornerParam corner;
  SQO_treeGrowParam grow;
  Edges edges;
  bool silhouettes;  ///< The ends of the segments are traced too.
};

/// An edge across the scan.
struct TracedTree {
  std::vector<SQO_basicFeature1D> nodes;  ///< With the line and sample of the scan as it was read.
  int type;
  bool isAlongLines;       ///< Found on the transposed scan.
  double length;           ///< Distance of the first and the last node.
  STesk3DPoint direction;  ///< Of the line in space that fits best.
  double rms;              ///< Root mean square distance of the nodes from it.
};

void addTraceParameters(Parameters& parameters);

/// Derives what the user has not given from the spacing and the noise of a scan.
TraceParams traceParams(Parameters& parameters, const Extent& extent);

/// The corners of a line with upper edges at large z if `mirrorZ` is above 0.0.
SQO_lineFeature cornersOf(const Line& line, int lineIdx, const TraceParams& params, double mirrorZ);

/// Cleans the lines of a levelled scan one by one and traces the edges, the longest first.
std::vector<TracedTree> traceEdges(const Scan& scan, const TraceParams& params, Progress& progress);

/// The same on the cleaned scan with lines and samples exchanged, which finds edges along the
/// lines. The progress counts the samples of a line.
std::vector<TracedTree> traceAlongLines(const Scan& scan,
                                        const TraceParams& params,
                                        Progress& progress);

}  // namespace program
