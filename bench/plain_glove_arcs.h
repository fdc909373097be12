#pragma once

/// The search for glove arcs in its plainest form, for tests and benchmarks.

#include <vector>

#include <scanline/line_features.h>
#include "plain_corners.h"

namespace plain {

/// Whether no place up to the nearest one at least `scale` away overtops place `i`: one of greater
/// z on either side, or one of equal z before it.
inline bool isSummit(const Places& places, int i, double scale) {
  const int count = static_cast<int>(places.size());
  for (int step = -1; step <= 1; step += 2) {
    for (int j = i + step; j >= 0 && j < count; j += step) {
      if (places[j].at.z > places[i].at.z || (step < 0 && places[j].at.z == places[i].at.z)) {
        return false;
      }
      if (distance(places[i], places[j]) >= scale) {
        break;
      }
    }
  }
  return true;
}

/// What `ju_getLineGloveArcs` finds on a line of 10 samples or more.
inline std::vector<SQO_basicFeature1D> gloveArcs(const Places& places,
                                                 int lineIdx,
                                                 const SQO_gloveArcParam& param) {
  const Bends bends = bendsOf(places, param.scale);
  const int count = static_cast<int>(places.size());
  const auto stepFrom = [&](int j) {
    return j + 1 < count ? distance(places[j], places[j + 1]) : 0.0;
  };
  std::vector<SQO_basicFeature1D> arcs;
  for (int i = 0; i < count; ++i) {
    if (!isSummit(places, i, param.scale)) {
      continue;
    }
    double before = 0.0;
    double length = 0.0;
    for (int j = i - 1; j >= 0 && (j == i - 1 || !(length >= param.armLen)); --j) {
      before = bends[j].fore > before ? bends[j].fore : before;
      length += stepFrom(j);
    }
    double after = bends[i].fore;
    length = stepFrom(i);
    for (int j = i + 1; j < count; ++j) {
      length += stepFrom(j);
      if (length >= param.armLen) {
        break;
      }
      after = after > bends[j].fore ? bends[j].fore : after;
    }
    if (before - after >= param.minTurnAngle) {
      arcs.push_back(featureAt(places[i], lineIdx, FEATURE_PEAK, before - after));
    }
  }
  return arcs;
}

}  // namespace plain
