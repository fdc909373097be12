#pragma once

#include <limits>
#include <vector>

#include <scanline/scan_records.h>

/// The stages that all extractors of the corner family are put together from: valid points, slopes,
/// extrema of the corner measure, peaks among them.
namespace scanline::detail {

/// Slopes at one valid point, towards a neighbour on either side of it.
struct SQO_pointSlope {
  int pntIdx;            ///< Index in the valid-point list; -1 where there are no slopes.
  int type;              ///< Working mark of later stages, 0 at first.
  double forwardAngle;   ///< Angle of the chord to the forward neighbour, in degrees.
  double backwardAngle;  ///< Angle of the chord from the backward neighbour, in degrees.
  double corner;         ///< Corner measure: `backwardAngle` minus `forwardAngle`.
  double forwardStep;    ///< Distance to the next valid point, where a stage fills it.
  double forwardZ;       ///< z of the forward neighbour.
  double backwardZ;      ///< z of the backward neighbour.
};

using Samples = std::vector<STesk3DPosition>;
using Slopes = std::vector<SQO_pointSlope>;

/// Copies of the samples above the no-sample limit, each stamped with its index on the line.
Samples collectValidPoints(const STesk3DPosition* lineData, int dataSize);

/// Angle of a chord in degrees. Its sign comes from z alone, so that a line traversed with falling
/// y behaves like one with rising y.
double chordAngle(const STesk3DPoint& from, const STesk3DPoint& to);

/// What becomes of a point with a neighbour on one side only.
enum class LoneSide {
  kNoSlopes,  ///< It has no slopes.
  kKept,      ///< It has the angle to that side; the other angle and the corner are 0.
};

/// How the slope pass looks for the two neighbours of a point.
struct SlopeSearch {
  double scale;       ///< Distance in the y-z plane from which a point serves as neighbour.
  double farLimit;    ///< A point from here on ends the search without a neighbour.
  LoneSide loneSide;  ///< What becomes of a point with one neighbour.

  /// The search of most extractors: it may run across gaps of any width and wants both sides.
  static SlopeSearch unlimited(double scale) {
    return {scale, std::numeric_limits<double>::quiet_NaN(), LoneSide::kNoSlopes};
  }
  /// The same, content with one side.
  static SlopeSearch oneSided(double scale) {
    return {scale, std::numeric_limits<double>::quiet_NaN(), LoneSide::kKept};
  }
};

/// A closed range of indices in the valid-point list.
struct PointRange {
  int first;
  int last;
};

/// The slope pass: one entry per point. Neighbours may be any points of the list.
Slopes slopePass(const Samples& points, const SlopeSearch& search);

/// The slope pass range by range, which have to cover the list. Neighbours are sought inside a
/// point's own range alone.
Slopes slopePass(const Samples& points,
                 const std::vector<PointRange>& ranges,
                 const SlopeSearch& search);

/// Where the corner measure stops growing (`maxima`) or shrinking (`minima`).
struct CornerExtrema {
  Slopes maxima;
  Slopes minima;
};

/// Which extrema a change of direction reports.
enum class ExtremaSign {
  kAny,       ///< All of them.
  kMatching,  ///< Maxima above 0 and minima below 0; the pending one at the end in any case.
};

CornerExtrema extremaPass(const Slopes& slopes, ExtremaSign sign);

/// What a peak pass compares.
enum class CornerMeasure { kValue, kMagnitude };

/// A peak stands out among its neighbours up to a distance in y.
struct PeakRule {
  double cornerTh;       ///< Smallest measure of a peak.
  double windowSquared;  ///< Square of the pass's half-width in y.
  CornerMeasure measure;
};

/// The entries of `candidates` with no greater one within the window.
Slopes peakPass(const Slopes& candidates, const Samples& points, const PeakRule& rule);

}  // namespace scanline::detail
