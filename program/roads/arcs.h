#pragma once

#include <vector>

#include <scanline/scanline.h>
#include "base/extent.h"
#include "base/parameters.h"
#include "base/progress.h"
#include "base/scan.h"
#include "roads/cleaning.h"
#include "roads/fits.h"

namespace program {

/// A ring arc is a part of a line that turns away from the sensor throughout, a tube a narrow run
/// of samples of its own with a top.
enum class ArcKind { ring, tube };

/// Which arcs are looked for.
enum class ArcKinds { ring, tube, both };

/// What tunes the search for arcs.
struct ArcParams {
  CleaningParams cleaning;
  SQO_cornerParam corner;  ///< What turns, for ring arcs.
  int scales;              ///< Ring arcs are searched at so many, each twice the one before.
  STeskRangeD width;       ///< Of an arc, from end to end; inclusive.
  STeskRangeD radius;      ///< Of its circle; inclusive.
  double maxRms;           ///< Of the distances from the circle.
  double minSpan;          ///< Of the circle, in degrees.
  double minTubeWidth;     ///< Of a tube, from end to end, in place of that of `width`.
  double tubeGap;          ///< A wider hole ends a tube.
  double tubeStep;         ///< So does a larger step in z.
  double tubeHeight;       ///< If above 0.0, tubes are searched this high over the plane.
  double planeZ;           ///< z of that plane; infinite without one.
  SQO_treeGrowParam grow;
  double minCoverage;  ///< Smallest share of the lines of a track, from 0.0 to 1.0.
  ArcKinds kinds = ArcKinds::ring;
};

/// An arc on a line, with the circle of its samples in the plane of y and z.
struct Arc {
  ArcKind kind;
  int line;
  int firstSample;
  int lastSample;
  STesk3DPoint start;
  STesk3DPoint end;
  double width;   ///< Distance of start and end in y and z.
  double span;    ///< Angle of start and end around the centre, in degrees.
  double meanZ;   ///< Of its samples.
  Circle circle;  ///< Its centre is y, z.
};

/// The arcs of the lines, and how many fit no circle that is wanted.
struct FoundArcs {
  std::vector<std::vector<Arc>> lines;
  long long refused = 0;
};

/// Arcs followed across the scan, all of one kind.
struct ArcTrack {
  ArcKind kind;
  std::vector<Arc> arcs;
  std::vector<STesk3DPoint> centres;
  double length;           ///< From the first centre to the last, in the x-y plane.
  double coverage;         ///< Share of the lines from the first to the last.
  double meanRadius;       ///< In the planes of the lines.
  double radiusDeviation;  ///< Root mean square deviation from it.
  double meanRms;          ///< Mean residual of the circles.
  double radiusAcross;  ///< Mean radius at a right angle to the centre line; NaN if it has kinks.
  double acrossDeviation;  ///< Root mean square deviation from it.
  CentreLine centreLine;
};

void addArcParameters(Parameters& parameters);

/// Derives what the user has not given from the spacing and the noise of a scan.
/// @throw Failure (usage) if limits exclude each other
ArcParams arcParams(Parameters& parameters, const Extent& extent, double planeZ);

/// The arcs of one line, in order; adds those that fit no wanted circle to `refused`.
std::vector<Arc> arcsOfLine(const Line& line,
                            int lineIdx,
                            const ArcParams& params,
                            long long& refused);

/// The arcs of all lines of a scan whose z is a distance.
FoundArcs findArcs(const Scan& scan, const ArcParams& params, Progress& progress);

/// Follows arcs from line to line, each kind by itself; the longest first.
std::vector<ArcTrack> followArcs(const Scan& scan, const FoundArcs& found, const ArcParams& params);

}  // namespace program
