#pragma once

/// The searches of the corner family in their plainest form: every walk looks at every sample. The
/// tests compare the library with them, the benchmarks measure against them.

#include <cmath>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

/// A valid sample of a line.
struct Place {
  STesk3DPoint at;
  int sample;
  int stretch;
};
using Places = std::vector<Place>;

struct Bend {
  bool valid = false;
  double back = 0.0;
  double fore = 0.0;
  double corner = 0.0;
  double backZ = 0.0;
  double foreZ = 0.0;
};
using Bends = std::vector<Bend>;

/// The valid samples. A step in z, or in y unless any will do, that reaches its limit opens the
/// next stretch.
inline Places placesOf(const std::vector<STesk3DPosition>& line,
                       bool nanIsHole,
                       double stepY,
                       double stepZ) {
  Places places;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    const STesk3DPoint& at = line[i].pt3D;
    if (nanIsHole ? !(at.z > 0.0001) : at.z <= 0.0001) {
      continue;
    }
    int stretch = 0;
    if (!places.empty()) {
      const Place& last = places.back();
      const bool goesOnInY = std::isinf(stepY) || std::abs(at.y - last.at.y) < stepY;
      const bool goesOn = goesOnInY && std::abs(at.z - last.at.z) < stepZ;
      stretch = last.stretch + (goesOn ? 0 : 1);
    }
    places.push_back({at, i, stretch});
  }
  return places;
}

/// The valid samples as one stretch.
inline Places placesOf(const std::vector<STesk3DPosition>& line) {
  Places places = placesOf(line, true, 0.0, 0.0);
  for (Place& place : places) {
    place.stretch = 0;
  }
  return places;
}

inline double distance(const Place& a, const Place& b) {
  const double dy = a.at.y - b.at.y;
  const double dz = a.at.z - b.at.z;
  return std::sqrt(dy * dy + dz * dz);
}

inline double angle(const Place& from, const Place& to) {
  const double slope = (to.at.z - from.at.z) / std::abs(to.at.y - from.at.y);
  return std::atan(slope) * 180.0 / 3.141592653589793;
}

/// The nearest place in the stretch of place `i` at least `scale` away, unless it is `far` away.
inline int neighbour(const Places& places, int i, int step, double scale, double far) {
  const int count = static_cast<int>(places.size());
  for (int j = i + step; j >= 0 && j < count && places[j].stretch == places[i].stretch; j += step) {
    const double d = distance(places[i], places[j]);
    if (d >= far || d >= scale) {
      return d >= far ? -1 : j;
    }
  }
  return -1;
}

inline Bends bendsOf(const Places& places,
                     double scale,
                     bool oneSided = false,
                     double far = std::nan("")) {
  Bends bends(places.size());
  for (int i = 0; i < static_cast<int>(places.size()); ++i) {
    const int back = neighbour(places, i, -1, scale, far);
    const int fore = neighbour(places, i, 1, scale, far);
    const bool both = back >= 0 && fore >= 0;
    Bend& bend = bends[i];
    bend.valid = both || (oneSided && (back >= 0 || fore >= 0));
    if (bend.valid && back >= 0) {
      bend.back = angle(places[back], places[i]);
    }
    if (bend.valid && fore >= 0) {
      bend.fore = angle(places[i], places[fore]);
    }
    if (both) {
      bend.corner = -(bend.fore - bend.back);
      bend.backZ = places[back].at.z;
      bend.foreZ = places[fore].at.z;
    }
  }
  return bends;
}

/// The maxima of the corner measure (`sign` 1) or its minima (-1); with `matching` only those of
/// that sign, and one still pending at the end of the line.
inline std::vector<int> extremaOf(const Bends& bends, int sign, bool matching) {
  std::vector<int> extrema;
  int direction = 0;
  int last = -1;
  for (int i = 0; i < static_cast<int>(bends.size()); ++i) {
    if (!bends[i].valid) {
      if (i + 1 == static_cast<int>(bends.size()) && direction == sign) {
        extrema.push_back(last);
      }
      continue;
    }
    const double change = last < 0 ? 0.0 : bends[i].corner - bends[last].corner;
    if (change < 0.0 || change > 0.0) {
      const int turn = change > 0.0 ? 1 : -1;
      if (direction == sign && turn != sign && (!matching || bends[last].corner * sign > 0.0)) {
        extrema.push_back(last);
      }
      direction = turn;
    }
    last = i;
  }
  return extrema;
}

/// The extrema from a threshold on that no greater one suppresses within a window in y. Minima
/// compare by their magnitude.
inline std::vector<int> peaksOf(const Places& places,
                                const Bends& bends,
                                int sign,
                                bool matching,
                                double threshold,
                                double window) {
  const std::vector<int> extrema = extremaOf(bends, sign, matching);
  const int count = static_cast<int>(extrema.size());
  const auto measure = [&](int k) {
    const double corner = bends[extrema[k]].corner;
    return sign > 0 ? corner : std::abs(corner);
  };
  std::vector<int> peaks;
  for (int k = 0; k < count; ++k) {
    bool stays = !(threshold > measure(k));
    for (int step = -1; step <= 1; step += 2) {
      for (int other = k + step; other >= 0 && other < count; other += step) {
        const double dy = places[extrema[k]].at.y - places[extrema[other]].at.y;
        if (dy * dy > window * window) {
          break;
        }
        stays = stays && !(measure(other) > measure(k));
      }
    }
    if (stays) {
      peaks.push_back(extrema[k]);
    }
  }
  return peaks;
}

inline SQO_basicFeature1D featureAt(const Place& place, int lineIdx, int type, double value = 0.0) {
  return {type, {lineIdx, place.sample}, place.at, value};
}

inline int steepType(const Bend& bend, const SQO_cornerParam& param) {
  if (bend.back > param.jumpCornerTh_1 && bend.fore > -param.jumpCornerTh_2) {
    return FEATURE_JUMP_RISE;
  }
  if (-param.jumpCornerTh_1 > bend.fore && param.jumpCornerTh_2 > bend.back) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

/// What `qo_getLineCornerFeature` finds as corners; with a `far` limit and a value, what
/// `qo_maskData_getLineCornerFeature` finds.
inline std::vector<SQO_basicFeature1D> corners(const Places& places,
                                               int lineIdx,
                                               const SQO_cornerParam& param,
                                               bool masked = false) {
  const Bends bends =
      bendsOf(places, param.scale, false, masked ? param.scale * 4.0 : std::nan(""));
  std::vector<SQO_basicFeature1D> features;
  for (const int i : peaksOf(places, bends, 1, false, param.cornerTh, 2.0 * param.scale)) {
    const double value = masked ? bends[i].corner : 0.0;
    features.push_back(featureAt(places[i], lineIdx, steepType(bends[i], param), value));
  }
  return features;
}

/// Distance in the x-y plane.
inline double widthBetween(const Place& a, const Place& b) {
  const double dx = a.at.x - b.at.x;
  const double dy = a.at.y - b.at.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// 1 if the backward arm is flat, 2 if only the forward one is, or 0.
inline int flatArm(const Bend& bend, const SQO_cornerParam& param) {
  const bool foreIsFlat = std::abs(bend.fore) < param.jumpCornerTh_1;
  return std::abs(bend.back) < param.jumpCornerTh_1 ? 1 : foreIsFlat ? 2 : 0;
}

/// What `qo_getLineContourCornerFeature_groundMask_BQ` finds.
inline std::vector<SQO_basicFeature1D> groundCorners(const Places& places,
                                                     const std::vector<int>& mask,
                                                     int lineIdx,
                                                     double reach,
                                                     const SQO_cornerParam& param) {
  const Bends bends = bendsOf(places, param.scale, true);
  const int count = static_cast<int>(places.size());
  std::vector<SQO_basicFeature1D> features;
  for (const int i : peaksOf(places, bends, -1, true, param.cornerTh, 2.0 * param.scale)) {
    bool found = false;
    for (int step = -1; step <= 1; step += 2) {
      int j = i + step;
      for (; j >= 0 && j < count && !(widthBetween(places[i], places[j]) > reach); j += step) {
        found = found || mask[places[j].sample] == 1;
      }
    }
    const int type = flatArm(bends[i], param);
    if (found && type != 0) {
      features.push_back(featureAt(places[i], lineIdx, type, bends[i].corner));
    }
  }
  return features;
}

}  // namespace plain
