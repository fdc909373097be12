#pragma once

/// The search for dents of flat lines in its plainest form. The tests compare the library with it,
/// the benchmarks measure both.

#include <cmath>
#include <cstddef>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

enum StepKind { kNone, kFallingJump, kRisingJump, kFallingSlope, kRisingSlope };

struct FlatStep {
  int kind;
  STesk3DPosition from;
  STesk3DPosition to;
  double dz;
  double slope;
};

inline bool isJump(const FlatStep& step) {
  return step.kind == kFallingJump || step.kind == kRisingJump;
}

inline std::vector<FlatStep> flatSteps(const Line& points,
                                       double slopeWin,
                                       double jumpTh,
                                       double width) {
  std::vector<FlatStep> steps(points.size());
  std::size_t cursor = 0;
  for (std::size_t a = 0; a + 1 < points.size(); ++a) {
    const STesk3DPoint& p = points[a].pt3D;
    const auto measure = [&](std::size_t b) {
      const STesk3DPoint& q = points[b].pt3D;
      steps[a] = {kNone, points[a], points[b], q.z - p.z, (q.z - p.z) / std::abs(q.y - p.y)};
    };
    measure(a + 1);
    if (std::abs(points[a + 1].pt3D.y - p.y) > width * 0.5 || std::abs(steps[a].dz) > jumpTh) {
      steps[a].kind = steps[a].dz > 0.0 ? kRisingJump : kFallingJump;
      cursor = a + 1;
      continue;
    }
    std::size_t b = cursor;
    while (b < points.size() && !(std::abs(points[b].pt3D.y - p.y) >= slopeWin)) {
      ++b;
    }
    if (b < points.size()) {
      cursor = b;
      measure(b);
      if (std::abs(steps[a].slope) > 0.5 && std::abs(steps[a].dz) > 0.2) {
        steps[a].kind = steps[a].dz > 0.0 ? kRisingSlope : kFallingSlope;
      }
    }
  }
  return steps;
}

/// Drops the slopes on the side of greater z of each jump.
inline void absorb(std::vector<FlatStep>& steps) {
  for (std::size_t k = 0; k < steps.size(); ++k) {
    if (steps[k].kind == kRisingJump) {
      for (std::size_t j = k + 1; j < steps.size() && steps[j].kind == kRisingSlope; ++j) {
        steps[j].kind = kNone;
      }
    } else if (steps[k].kind == kFallingJump) {
      for (std::size_t j = k; j > 0 && steps[j - 1].kind == kFallingSlope; --j) {
        steps[j - 1].kind = kNone;
      }
    }
  }
}

inline std::vector<FlatStep> merge(const std::vector<FlatStep>& steps) {
  std::vector<FlatStep> merged;
  FlatStep current = {};
  int kind = kNone;
  for (const FlatStep& step : steps) {
    if (kind == kNone && isJump(step)) {
      merged.push_back(step);
    } else if (kind == kNone) {
      current = step;
      kind = step.kind;
    } else if (step.kind == kNone) {
      merged.push_back(current);
      kind = kNone;
    } else {
      const bool sameWay =
          (current.slope < 0.0 && step.slope < 0.0) || (current.slope > 0.0 && step.slope > 0.0);
      if (!sameWay) {
        merged.push_back(current);
      }
      if (!sameWay || std::abs(step.slope) > std::abs(current.slope)) {
        current = step;
      }
      kind = step.kind;
    }
  }
  return merged;
}

/// The sample of greatest z within `width` of a start; -1 if the view ends at a jump or with the
/// line.
inline int sideScan(
    const Line& line, int start, int step, double width, double& mean, bool& meetsJump) {
  const int count = static_cast<int>(line.size());
  double sum = line[start].pt3D.z;
  int taken = 1;
  int best = start;
  for (int i = start + step; i >= 1 && i < count; i += step) {
    if (line[i].nPointIdx == 16) {
      meetsJump = true;
      return -1;
    }
    if (line[i].pt3D.z > 0.0001) {
      if (std::abs(line[i].pt3D.y - line[start].pt3D.y) > width) {
        mean = sum / taken;
        return best;
      }
      sum += line[i].pt3D.z;
      ++taken;
      best = line[i].pt3D.z > line[best].pt3D.z ? i : best;
    }
  }
  return -1;
}

inline SQO_basicFeature1D halfWay(const STesk3DPosition& a, const STesk3DPosition& b, int lineIdx) {
  const STesk3DPoint middle = {(a.pt3D.x + b.pt3D.x) / 2.0, (a.pt3D.y + b.pt3D.y) / 2.0,
                               (a.pt3D.z + b.pt3D.z) / 2.0};
  return {FEATURE_PEAK, {lineIdx, (a.nPointIdx + b.nPointIdx) / 2}, middle, 0.0};
}

/// The feature beside a slope without partner; its type is 0 if there is none.
inline SQO_basicFeature1D loneSlope(const Line& line,
                                    const FlatStep& step,
                                    double width,
                                    int lineIdx) {
  const bool rises = step.kind == kRisingSlope;
  const int way = rises ? 1 : -1;
  double farMean = -1.0;
  double nearMean = -1.0;
  bool meetsJump = false;
  const int far =
      sideScan(line, (rises ? step.to : step.from).nPointIdx, way, width, farMean, meetsJump);
  meetsJump = false;
  const int near =
      sideScan(line, (rises ? step.from : step.to).nPointIdx, -way, width, nearMean, meetsJump);
  if (far < 0 || meetsJump || !(farMean - (near >= 0 ? nearMean : step.from.pt3D.z) >= 0.1)) {
    return {};
  }
  return {FEATURE_PEAK, {lineIdx, far}, line[far].pt3D, 0.0};
}

inline bool isClose(const FlatStep& step, const FlatStep& next, double width) {
  return width > std::abs(next.from.pt3D.y - step.to.pt3D.y);
}

inline bool pairs(const FlatStep& jump, const FlatStep& next, double jumpTh) {
  if (std::abs(jump.dz) < jumpTh) {
    return isJump(next);
  }
  const bool lowJump = isJump(next) && jumpTh > std::abs(next.dz);
  return lowJump ||
         (jump.kind == kRisingJump && (next.kind == kFallingJump || next.kind == kFallingSlope));
}

inline void placeJumps(Line& line,
                       int lineIdx,
                       double jumpTh,
                       double width,
                       std::vector<FlatStep>& steps,
                       Features& found) {
  for (std::size_t e = 0; e < steps.size(); ++e) {
    if (!isJump(steps[e])) {
      continue;
    }
    STesk3DPosition end = steps[e].to;
    if (e + 1 < steps.size() && pairs(steps[e], steps[e + 1], jumpTh) &&
        isClose(steps[e], steps[e + 1], width)) {
      end = steps[e + 1].to;
      steps[e + 1].kind = kNone;
    }
    found[e] = halfWay(steps[e].from, end, lineIdx);
    line[steps[e].from.nPointIdx].nPointIdx = 16;
    line[end.nPointIdx].nPointIdx = 16;
  }
}

inline void placeSlopes(
    const Line& line, int lineIdx, double width, std::vector<FlatStep>& steps, Features& found) {
  for (std::size_t e = 0; e < steps.size(); ++e) {
    const bool isLast = e + 1 == steps.size();
    const bool rises = steps[e].kind == kRisingSlope && !isLast;
    if (rises && steps[e + 1].kind == kFallingSlope && isClose(steps[e], steps[e + 1], width)) {
      found[e] = halfWay(steps[e].from, steps[e + 1].to, lineIdx);
      steps[e + 1].kind = kNone;
    } else if (rises || steps[e].kind == kFallingSlope) {
      found[e] = loneSlope(line, steps[e], width * 1.5, lineIdx);
    }
  }
}

inline void flatLinePeaks(
    Line& line, int lineIdx, double slopeWin, double jumpTh, double width, Features& peaks) {
  Line points;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i].pt3D.z > 0.0001) {
      points.push_back({static_cast<int>(i), line[i].pt3D});
    }
  }
  std::vector<FlatStep> all = flatSteps(points, slopeWin, jumpTh, width);
  absorb(all);
  std::vector<FlatStep> steps = merge(all);
  Features found(steps.size());
  placeJumps(line, lineIdx, jumpTh, width, steps, found);
  placeSlopes(line, lineIdx, width, steps, found);
  for (const SQO_basicFeature1D& feature : found) {
    if (feature.featureType != 0) {
      peaks.push_back(feature);
      STesk3DPosition& sample = line[feature.jumpPos2D.y];
      sample = {13, 0.0001 > sample.pt3D.z ? feature.jumpPos : sample.pt3D};
    }
  }
}

}  // namespace plain
