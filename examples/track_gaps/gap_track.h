#pragma once

#include <optional>
#include <string>
#include <vector>

#include <scanline/feature_records.h>
#include <scanline/scan_records.h>
#include "scene.h"

namespace examples {

/// How far points lie from where they should.
struct Deviation {
  double rms;
  double max;
};

/// A straight line in space.
struct LineFit {
  STesk3DPoint centre;
  STesk3DPoint direction;  ///< Of unit length; x does not point backwards.
  Deviation deviation;     ///< Distances in space.
};

/// A parabola y = a x^2 + b x + c.
struct ParabolaFit {
  double a;
  double b;
  double c;
  Deviation deviation;  ///< Distances in y.
};

/// An interruption of no more lines than these is not worth telling.
constexpr int kFewLines = 3;

/// A run of lines on which a gap was not seen.
struct Interruption {
  int firstLine;
  int lastLine;
  double length;  ///< In x and y, from the centre before to the centre behind.
};

/// The known gap that a track belongs to.
struct TruthMatch {
  std::string name;
  double width;
  Deviation deviation;  ///< Distances in y, along the raw lines.
};

/// A gap followed across the scan.
struct GapTrack {
  std::vector<SQO_basicFeatureGap> gaps;
  std::vector<STesk3DPoint> centres;  ///< The mean of the two rims of each gap.
  double length;                      ///< From the first centre to the last, in x and y.
  STeskRangeD width;                  ///< Narrowest and widest gap, in x and y.
  double meanWidth;
  std::vector<Interruption> interruptions;  ///< In the order of the lines.
  LineFit line;
  std::optional<ParabolaFit> parabola;  ///< None for fewer than three centres.
  std::optional<TruthMatch> truth;      ///< None if no known gap runs close by.
};

/// Measures a tree of gaps and fits its centre line.
GapTrack measureTrack(const SQO_gapFeatureTree& tree);

/// Compares a track with what is known, in the frame of the raw scan that `toRaw` leads back to.
std::optional<TruthMatch> matchTruth(const GapTrack& track,
                                     const std::vector<TrueGap>& truth,
                                     const double* toRaw);

/// Whether a parabola follows the centre line much better than a straight line.
bool isBent(const GapTrack& track);

}  // namespace examples
