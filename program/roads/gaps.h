#pragma once

#include <array>
#include <vector>

#include <scanline/scanline.h>
#include "base/extent.h"
#include "base/parameters.h"
#include "base/progress.h"
#include "base/scan.h"
#include "roads/cleaning.h"
#include "roads/fits.h"

namespace program {

/// Which gaps are looked for. A gap without samples between its edges is open.
enum class GapFloors { any, measured, open };

/// What tunes the search for gaps.
struct GapParams {
  CleaningParams cleaning;
  SQO_cornerParam corner;  ///< What makes an edge.
  STeskRangeD width;       ///< Of a gap, in the x-y plane; both strict.
  double sampleSpacing;
  double minDepth;  ///< The floor lies at least this much farther than both edges.
  double rimBand;   ///< A rim's samples lie within this of a straight line.
  double rimLevel;  ///< Largest difference in z of the edges of an open gap.
  SQO_treeGrowParam grow;
  double minCoverage;  ///< Smallest share of the lines of a track, from 0.0 to 1.0.
  GapFloors floors = GapFloors::any;
};

/// An edge of a gap: the last sample of its rim.
struct GapEdge {
  int sample;
  STesk3DPoint at;
};

/// A gap on a line.
struct Gap {
  int line;
  std::array<GapEdge, 2> edges;  ///< In the order of the samples.
  double width;  ///< Distance of the edges in the x-y plane, less what the spacing adds to it.
  double depth;  ///< Of the floor below the farther rim, flanks left out; NaN without a floor.
  double medianDepth;  ///< Of all samples between the edges; NaN without a floor.
  bool isOpen;         ///< There is no sample between the edges.
};

/// The gaps of the lines, and how many pairs of edges are none.
struct FoundGaps {
  std::vector<std::vector<Gap>> lines;
  long long refused = 0;  ///< What lies between them is not deeper: ribs, steps, roughness.
};

/// Lines on which a gap was not found, between others on which it was.
struct Interruption {
  int firstLine;
  int lastLine;
  double length;  ///< Between the middles of the gap before and after, in the x-y plane.
};

/// A gap followed across the scan.
struct GapTrack {
  std::vector<Gap> gaps;
  std::vector<STesk3DPoint> centres;  ///< The mean of the two edges of each gap.
  double length;                      ///< From the first centre to the last, in the x-y plane.
  double coverage;                    ///< Share of the lines from the first to the last.
  double meanWidth;
  STeskRangeD width;
  double widthAcross;  ///< Mean width at a right angle to the centre line.
  double meanDepth;    ///< Of the gaps that have a floor; NaN if none has.
  double openShare;    ///< Share of the gaps that have none.
  CentreLine centreLine;
  std::vector<Interruption> interruptions;
};

void addGapParameters(Parameters& parameters);

/// Derives what the user has not given from the spacing and the noise of a scan.
/// @throw Failure (usage) if the limits of the width exclude each other
GapParams gapParams(Parameters& parameters, const Extent& extent);

/// The gaps of one line, in order; adds the pairs of edges that are none to `refused`.
std::vector<Gap> gapsOfLine(const Line& line,
                            int lineIdx,
                            const GapParams& params,
                            long long& refused);

/// The gaps of all lines of a scan whose z is a distance.
FoundGaps findGaps(const Scan& scan, const GapParams& params, Progress& progress);

/// Follows gaps from line to line; the longest first.
std::vector<GapTrack> followGaps(const FoundGaps& found, const GapParams& params);

}  // namespace program
