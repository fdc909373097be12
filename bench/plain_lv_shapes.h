#pragma once

/// The search for L and V shapes in its plainest form. The tests compare the library with it, the
/// benchmarks measure both.

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

/// The input and the results of the search, with indices on the line.
struct LvShapes {
  const Line& line;
  int lineIdx;
  SQO_slopeParam slope;
  SQO_VFeatureParam v;
  SQO_lineFeature& found;

  struct Run {
    int start, end, maxStart, maxEnd;
  };
  std::vector<Run> runs;
  std::vector<std::pair<int, int>> segments;

  [[nodiscard]] double y(int i) const {
    return line[i].pt3D.y;
  }
  [[nodiscard]] double z(int i) const {
    return line[i].pt3D.z;
  }

  enum { kNone, kDown, kUp } dir = kNone;
  Run open = {};

  void keepRun() {
    const double sign = dir == kUp ? 1.0 : -1.0;
    if (dir != kNone && sign * (z(open.end) - z(open.start)) >= slope.minSlope_z) {
      runs.push_back(open);
    }
  }

  void stepRun(int prev, int i) {
    const double dz = z(i) - z(prev);
    if ((dz > 0.0 && dir != kUp) || (dz < 0.0 && dir != kDown)) {
      keepRun();
      open = {prev, i, prev, i};
      dir = dz > 0.0 ? kUp : kDown;
    } else if (dir != kNone && !std::isnan(dz)) {
      open.end = i;
      if (std::abs(dz) > std::abs(z(open.maxEnd) - z(open.maxStart))) {
        open.maxStart = prev;
        open.maxEnd = i;
      }
    }
  }

  void cut() {
    const int last = static_cast<int>(line.size()) - 1;
    int prev = -1;
    int start = -1;
    for (int i = 0; i <= last; ++i) {
      const bool isHole = 0.0001 > z(i);
      if (i == last && prev >= 0) {
        segments.emplace_back(start, isHole ? prev : i);
      } else if (prev >= 0 && !isHole && i - prev > 1 &&
                 std::abs(y(i) - y(prev)) > slope.maxGap_y) {
        segments.emplace_back(start, prev);
        start = i;
      }
      if (!isHole && prev >= 0) {
        stepRun(prev, i);
      }
      start = !isHole && prev < 0 ? i : start;
      prev = isHole ? prev : i;
    }
    keepRun();
  }

  [[nodiscard]] SQO_basicFeature1D feature(int type, int i) const {
    return {type, {lineIdx, i}, line[i].pt3D, 0.0};
  }

  /// The L of a run; its type is 0 if there is none.
  [[nodiscard]] SQO_basicFeature1D lShape(const Run& run) const {
    const double step = z(run.maxEnd) - z(run.maxStart);
    const double total = z(run.end) - z(run.start);
    if (std::abs(step) > slope.jumpTh_z) {
      return step > 0.0 ? feature(FEATURE_JUMP_RISE, run.maxStart)
                        : feature(FEATURE_JUMP_FALL, run.maxEnd);
    }
    const int a = run.maxStart > 0 ? run.maxStart - 1 : run.maxStart;
    const int b = run.maxEnd + 1 < static_cast<int>(line.size()) ? run.maxEnd + 1 : run.maxEnd;
    const int e = total > 0.0 ? run.end : run.start;
    bool isL = std::abs(total) > slope.jumpTh_z && std::abs((z(a) - z(b)) / (y(a) - y(b))) > 2.0;
    for (const auto& [first, last] : segments) {
      isL = isL && std::abs(e - first) >= 3 && std::abs(e - last) >= 3;
    }
    return !isL          ? SQO_basicFeature1D{}
           : total > 0.0 ? feature(FEATURE_SLOPE_RISE, run.maxEnd)
                         : feature(FEATURE_SLOPE_FALL, run.maxStart);
  }

  [[nodiscard]] double yNearest(const Run& run, double height) const {
    int best = run.start;
    for (int i = run.start; i <= run.end; ++i) {
      best = std::abs(z(best) - height) > std::abs(z(i) - height) ? i : best;
    }
    return y(best);
  }

  [[nodiscard]] bool isV(const Run& r, const Run& n) const {
    const double t1 = z(r.end);
    const double t2 = z(n.start);
    if (!(t1 > z(r.start) && z(n.end) < t2 && t1 > z(n.end) && t2 > z(r.start))) {
      return false;
    }
    if (v.apexDiff_z > std::abs(t2 - t1)) {
      const double h = t1 >= t2 ? t1 - v.apexDiff_z * 0.5 : t2 - v.apexDiff_z;
      return v.maxWidth_y > std::abs(yNearest(r, h) - yNearest(n, h));
    }
    return v.maxWidth_y > std::abs((t1 >= t2 ? yNearest(r, t2) : yNearest(n, t1)) - t2);
  }

  /// The V and its only L, which comes first if it is a rise.
  static Features withOne(const SQO_basicFeature1D& top,
                          const SQO_basicFeature1D& only,
                          bool isApart,
                          bool isLevel) {
    const bool isRise =
        only.featureType == FEATURE_JUMP_RISE || only.featureType == FEATURE_SLOPE_RISE;
    if (isApart) {
      return isRise ? Features{only, top} : Features{top, only};
    }
    const bool isSlope =
        only.featureType == FEATURE_SLOPE_RISE || only.featureType == FEATURE_SLOPE_FALL;
    return {isLevel && isSlope ? top : only};
  }

  void appendV(const Run& r, const Run& n) {
    const SQO_basicFeature1D a = lShape(r);
    const SQO_basicFeature1D b = lShape(n);
    const SQO_basicFeature1D top = feature(FEATURE_V, z(r.end) >= z(n.start) ? r.end : n.start);
    const bool isApartA = std::abs(top.jumpPos.y - y(r.maxEnd)) > 5.0;
    const bool isApartB = std::abs(top.jumpPos.y - y(n.maxStart)) > 5.0;
    const double nearDiff = z(r.start) - z(n.end);
    const bool isLevel = 40.0 > std::abs(nearDiff);
    Features kept = {top};
    if (b.featureType == 0 && a.featureType != 0) {
      kept = withOne(top, a, isApartA, isLevel);
    } else if (a.featureType == 0 && b.featureType != 0) {
      kept = withOne(top, b, isApartB, isLevel);
    } else if (a.featureType != 0 && isApartA && isApartB) {
      kept = {a, top, b};
    } else if (a.featureType != 0 && isApartA) {
      kept = {a, b.featureType == FEATURE_JUMP_FALL ? b : top};
    } else if (a.featureType != 0 && isApartB) {
      kept = {a.featureType == FEATURE_JUMP_RISE ? a : top, b};
    } else if (a.featureType != 0 && !isLevel) {
      kept = {a.jumpPos.z > b.jumpPos.z ? a : b};
      kept[0].featureType = nearDiff > 0.0 ? FEATURE_SLOPE_FALL : FEATURE_SLOPE_RISE;
    }
    found.features.insert(found.features.end(), kept.begin(), kept.end());
  }

  void mergeJumps() {
    for (std::size_t j = found.features.size(); j-- > 0;) {
      const SQO_basicFeature1D& f = found.features[j];
      if ((f.featureType == FEATURE_JUMP_RISE || f.featureType == FEATURE_JUMP_FALL) &&
          j + 1 < found.features.size() && f.featureType == found.features[j + 1].featureType &&
          20.0 > std::abs(f.jumpPos.y - found.features[j + 1].jumpPos.y)) {
        found.features.erase(found.features.begin() + static_cast<std::ptrdiff_t>(j));
      }
    }
  }

  void search() {
    cut();
    for (std::size_t k = 0; k < runs.size(); ++k) {
      if (k + 1 < runs.size() && isV(runs[k], runs[k + 1])) {
        appendV(runs[k], runs[k + 1]);
        ++k;
      } else if (const SQO_basicFeature1D l = lShape(runs[k]); l.featureType != 0) {
        found.features.push_back(l);
      }
    }
    mergeJumps();
    for (const auto& [first, last] : segments) {
      found.endings.push_back(feature(FEATURE_SEG_START, first));
      found.endings.push_back(feature(FEATURE_SEG_END, last));
    }
  }
};

inline void lvShapes(const Line& line,
                     int lineIdx,
                     const SQO_slopeParam& slope,
                     const SQO_VFeatureParam& v,
                     SQO_lineFeature& found) {
  LvShapes{line, lineIdx, slope, v, found, {}, {}}.search();
}

}  // namespace plain
