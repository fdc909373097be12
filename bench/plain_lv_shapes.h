#pragma once

/// The rules of L and V shapes step by step, in their plainest form: the tests compare the library
/// with it, the benchmarks measure by it.

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;

/// What the rules are applied to and what they give, with places as indices on the line.
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

  double y(int i) const {
    return line[i].pt3D.y;
  }
  double z(int i) const {
    return line[i].pt3D.z;
  }

  void cut() {
    enum { kNone, kDown, kUp } dir = kNone;
    const int last = static_cast<int>(line.size()) - 1;
    int prev = -1;
    int holes = 0;
    int start = -1;
    Run run = {};
    const auto keep = [&] {
      const double sign = dir == kUp ? 1.0 : -1.0;
      if (dir != kNone && sign * (z(run.end) - z(run.start)) >= slope.minSlope_z) {
        runs.push_back(run);
      }
    };
    for (int i = 0; i <= last; ++i) {
      if (0.0001 > z(i)) {
        ++holes;
        if (i == last && prev >= 0) {
          segments.emplace_back(start, prev);
        }
        continue;
      }
      if (prev < 0) {
        start = i;
      } else {
        if (i == last) {
          segments.emplace_back(start, i);
        } else if (holes > 0 && std::abs(y(i) - y(prev)) > slope.maxGap_y) {
          segments.emplace_back(start, prev);
          start = i;
        }
        const double dz = z(i) - z(prev);
        if ((dz > 0.0 && dir != kUp) || (dz < 0.0 && dir != kDown)) {
          keep();
          run = {prev, i, prev, i};
          dir = dz > 0.0 ? kUp : kDown;
        } else if (dir != kNone && !std::isnan(dz)) {
          run.end = i;
          if (std::abs(dz) > std::abs(z(run.maxEnd) - z(run.maxStart))) {
            run.maxStart = prev;
            run.maxEnd = i;
          }
        }
      }
      holes = 0;
      prev = i;
    }
    keep();
  }

  SQO_basicFeature1D feature(int type, int i) const {
    return {type, {lineIdx, i}, line[i].pt3D, 0.0};
  }

  /// The L of a run, its type 0 if there is none.
  SQO_basicFeature1D flank(const Run& run) const {
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

  double yNearest(const Run& run, double height) const {
    int best = run.start;
    for (int i = run.start; i <= run.end; ++i) {
      best = std::abs(z(best) - height) > std::abs(z(i) - height) ? i : best;
    }
    return y(best);
  }

  bool isV(const Run& r, const Run& n) const {
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

  void appendV(const Run& r, const Run& n) {
    const SQO_basicFeature1D a = flank(r);
    const SQO_basicFeature1D b = flank(n);
    const SQO_basicFeature1D top = feature(FEATURE_V, z(r.end) >= z(n.start) ? r.end : n.start);
    const bool hasA = a.featureType != 0;
    const bool hasB = b.featureType != 0;
    const bool farA = std::abs(top.jumpPos.y - y(r.maxEnd)) > 5.0;
    const bool farB = std::abs(top.jumpPos.y - y(n.maxStart)) > 5.0;
    const double feet = z(r.start) - z(n.end);
    const bool level = 40.0 > std::abs(feet);
    std::vector<SQO_basicFeature1D> kept;
    if (!hasA && !hasB) {
      kept = {top};
    } else if (!hasA) {
      kept = {farB || (level && b.featureType == FEATURE_SLOPE_FALL) ? top : b};
      kept.resize(farB ? 2 : 1, b);
    } else if (!hasB) {
      kept = {!farA && level && a.featureType == FEATURE_SLOPE_RISE ? top : a};
      kept.resize(farA ? 2 : 1, top);
    } else if (farA && farB) {
      kept = {a, top, b};
    } else if (farA) {
      kept = {a, b.featureType == FEATURE_JUMP_FALL ? b : top};
    } else if (farB) {
      kept = {a.featureType == FEATURE_JUMP_RISE ? a : top, b};
    } else {
      kept = {level ? top : a.jumpPos.z > b.jumpPos.z ? a : b};
      kept[0].featureType = level        ? FEATURE_V
                            : feet > 0.0 ? FEATURE_SLOPE_FALL
                                         : FEATURE_SLOPE_RISE;
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
      } else if (const SQO_basicFeature1D l = flank(runs[k]); l.featureType != 0) {
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
