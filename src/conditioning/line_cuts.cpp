#include "conditioning/line_cuts.h"

#include <cmath>

#include "records/sample_rules.h"

namespace scanline::detail {

namespace {

bool isContinuous(const STesk3DPoint& last,
                  const STesk3DPoint& point,
                  const SQO_lineSegParam& para) {
  return para.segGapTh_z > std::fabs(point.z - last.z) &&
         para.segGapTh_y > std::fabs(point.y - last.y);
}

/// The sample farthest from a chord.
struct Farthest {
  double distance;
  int index;
};

/// Finds the measured sample that lies farthest from the chord of the samples `start` to `end` in
/// the y-z plane, the one with the lowest index among equals; `start` if none lies off the chord.
Farthest farthestFromChord(const STesk3DPosition* line, int start, int end) {
  const STesk3DPoint& from = line[start].pt3D;
  const STesk3DPoint& to = line[end].pt3D;
  const double dz = to.z - from.z;
  const double dy = from.y - to.y;
  const double length = std::sqrt(dz * dz + dy * dy);
  const double a = dz / length;
  const double b = dy / length;
  const double c = (to.y * from.z - from.y * to.z) / length;

  Farthest farthest = {0.0, start};
  for (int i = start; i <= end; ++i) {
    const STesk3DPoint& point = line[i].pt3D;
    const double distance = std::fabs(a * point.y + b * point.z + c);
    // If the ends coincide, every distance is NaN and none passes.
    if (isMeasured(point.z) && distance > farthest.distance) {
      farthest = {distance, i};
    }
  }
  return farthest;
}

}  // namespace

void cutIntoRuns(STesk3DPosition* line,
                 int count,
                 const SQO_lineSegParam& para,
                 Stamps stamps,
                 std::vector<SQO_RUN>& runs) {
  int label = 1;
  int start = 0;
  int end = -1;  // No run is open.
  STesk3DPoint last = {0.0, 0.0, 0.0};
  for (int i = 0; i < count; ++i) {
    if (stamps == Stamps::kClear) {
      line[i].nPointIdx = 0;
    }
    const STesk3DPoint& point = line[i].pt3D;
    if (!isMeasured(point.z)) {
      continue;
    }
    if (end < 0) {
      start = i;
    } else if (!isContinuous(last, point, para)) {
      runs.push_back({start, end - start + 1, label++});
      start = i;
    }
    end = i;
    last = point;
  }
  if (end >= 0) {
    // The last run has its end instead of a label.
    runs.push_back({start, end - start + 1, end});
  }
}

void cutIntoPieces(const STesk3DPosition* line,
                   const SQO_RUN& run,
                   double maxDist,
                   std::vector<SQO_RUN>& pieces) {
  // A list of pending pieces instead of recursion, which could be thousands of levels deep.
  std::vector<SQO_RUN> pending = {run};
  while (!pending.empty()) {
    const SQO_RUN piece = pending.back();
    pending.pop_back();
    const int end = piece.start + piece.len - 1;
    if (piece.len < 3 || isMissing(line[piece.start].pt3D.z) || isMissing(line[end].pt3D.z)) {
      continue;
    }
    const auto [distance, cut] = farthestFromChord(line, piece.start, end);
    // Only rounding can make an end the farthest sample. A cut there would leave the piece as it
    // is.
    if (maxDist > distance || cut == piece.start || cut == end) {
      pieces.push_back(piece);
      continue;
    }
    pending.push_back({cut, end - cut + 1, 0});
    pending.push_back({piece.start, cut - piece.start + 1, 0});
  }
}

}  // namespace scanline::detail
