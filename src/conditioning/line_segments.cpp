// Cuts lines into runs of connected samples and runs into straight pieces, and picks the flattest.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <vector>

#include <scanline/conditioning.h>
#include "conditioning/line_cuts.h"
#include "geometry/distance.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace {

using scanline::detail::append;
using scanline::detail::cutIntoPieces;
using scanline::detail::cutIntoRuns;
using scanline::detail::distanceInSpace;
using scanline::detail::isMeasured;
using scanline::detail::isMissing;
using scanline::detail::makeRoom;
using scanline::detail::Stamps;

using Runs = std::vector<SQO_RUN>;
using Pieces = std::vector<SQO_featureSemiCircle>;

bool isWithin(const STeskRangeD& range, double value) {
  return value >= range.min && value <= range.max;
}

/// The sample halfway between two. If it is missing, the nearest measured sample strictly between
/// the two, of two equally near ones that with the higher index; -1 if there is none.
int middleSample(const STesk3DPosition* line, int start, int end) {
  const int middle = (start + end) / 2;
  if (!isMissing(line[middle].pt3D.z)) {
    return middle;
  }
  for (int above = middle + 1, below = middle - 1; above < end; ++above, --below) {
    if (isMeasured(line[above].pt3D.z)) {
      return above;
    }
    if (below <= start) {
      break;
    }
    if (isMeasured(line[below].pt3D.z)) {
      return below;
    }
  }
  return -1;
}

/// Appends a piece to the candidates if its length is in the range and it has a middle.
void appendCandidate(const STesk3DPosition* line,
                     int lineIdx,
                     const SQO_RUN& piece,
                     const STeskRangeD& lenRange,
                     Pieces& candidates) {
  const int start = piece.start;
  const int end = piece.start + piece.len - 1;
  if (!isWithin(lenRange, distanceInSpace(line[start].pt3D, line[end].pt3D))) {
    return;
  }
  const int middle = middleSample(line, start, end);
  if (middle >= 0) {
    candidates.push_back({0, lineIdx, start, end, middle, line[middle].pt3D, 0.0, 0.0});
  }
}

double steepness(const STesk3DPosition* line, const SQO_featureSemiCircle& candidate) {
  const STesk3DPoint& from = line[candidate.startPtIdx].pt3D;
  const STesk3DPoint& to = line[candidate.endPtIdx].pt3D;
  return std::fabs((to.z - from.z) / (to.y - from.y));
}

/// The index of the flattest candidate, the first of equals. If the slope of the first candidate is
/// NaN, no other is flatter.
std::size_t flattest(const STesk3DPosition* line, const Pieces& candidates) {
  std::size_t best = 0;
  double lowest = steepness(line, candidates.front());
  for (std::size_t i = 1; i < candidates.size(); ++i) {
    const double slope = steepness(line, candidates[i]);
    if (slope < lowest) {
      lowest = slope;
      best = i;
    }
  }
  return best;
}

/// Appends each piece to one of the two lists. They may be the same list, so the pieces are
/// appended in order.
void appendToLists(const Pieces& pieces,
                   const std::vector<bool>& isBest,
                   Pieces& bests,
                   Pieces& others) {
  const auto bestCount = std::count(isBest.begin(), isBest.end(), true);
  makeRoom(static_cast<std::size_t>(bestCount), bests);
  makeRoom(pieces.size() - static_cast<std::size_t>(bestCount), others);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    (isBest[i] ? bests : others).push_back(pieces[i]);
  }
}

}  // namespace

void ju_getLineDataIntervals(std::vector<STesk3DPosition>& lineData,
                             SQO_lineSegParam lineSegPara,
                             std::vector<SQO_RUN>& segs) {
  // There is at most one run per sample, so nothing is allocated after the first write to the line.
  makeRoom(lineData.size(), segs);
  cutIntoRuns(lineData.data(), static_cast<int>(lineData.size()), lineSegPara, Stamps::kClear,
              segs);
}

void split(SQO_RUN run,
           std::vector<STesk3DPosition>& lineData,
           double maxDist,
           std::vector<SQO_RUN>& segs) {
  assert(maxDist > 0.0);
  assert(run.len < 3 ||
         (run.start >= 0 && run.start <= static_cast<int>(lineData.size()) - run.len));
  Runs pieces;
  cutIntoPieces(lineData.data(), run, maxDist, pieces);
  append(pieces, segs);
}

void ju_surfaceLineSegment(std::vector<STesk3DPosition>& lineData,
                           int lineIdx,
                           STeskRangeD lenRange,
                           SQO_lineSegParam lineSegPara,
                           std::vector<SQO_featureSemiCircle>& bestSegs,
                           std::vector<SQO_featureSemiCircle>& otherSegs) {
  assert(lineSegPara.maxDist > 0.0);
  const STesk3DPosition* const line = lineData.data();
  Runs runs;
  runs.reserve(64);  // Enough for most lines.
  // The stamps are cleared last, after everything that can throw.
  cutIntoRuns(lineData.data(), static_cast<int>(lineData.size()), lineSegPara, Stamps::kKeep, runs);
  Runs pieces;
  Pieces candidates;
  Pieces chosen;
  std::vector<bool> isBest;
  for (const SQO_RUN& run : runs) {
    pieces.clear();
    cutIntoPieces(line, run, lineSegPara.maxDist, pieces);
    candidates.clear();
    for (const SQO_RUN& piece : pieces) {
      appendCandidate(line, lineIdx, piece, lenRange, candidates);
    }
    if (candidates.empty()) {
      continue;
    }
    const auto best = candidates.begin() + static_cast<std::ptrdiff_t>(flattest(line, candidates));
    std::rotate(candidates.begin(), best, best + 1);
    append(candidates, chosen);
    isBest.resize(chosen.size() - candidates.size(), false);
    isBest.push_back(true);
  }
  isBest.resize(chosen.size(), false);
  appendToLists(chosen, isBest, bestSegs, otherSegs);
  for (STesk3DPosition& sample : lineData) {
    sample.nPointIdx = 0;
  }
}
