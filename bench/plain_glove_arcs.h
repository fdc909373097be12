#pragma once

/// The search for glove arcs in its plainest form, for tests and benchmarks.

#include <vector>

#include <scanline/line_features.h>
#include "plain_corners.h"

namespace plain {

/// Whether point `i` has the greatest z up to the first points at least `scale` away, on either
/// side. Before it z must be smaller, after it z may be equal.
inline bool isSummit(const Profile& profile, int i, double scale) {
  const int count = static_cast<int>(profile.size());
  for (int step = -1; step <= 1; step += 2) {
    for (int j = i + step; j >= 0 && j < count; j += step) {
      if (profile[j].at.z > profile[i].at.z || (step < 0 && profile[j].at.z == profile[i].at.z)) {
        return false;
      }
      if (distance(profile[i], profile[j]) >= scale) {
        break;
      }
    }
  }
  return true;
}

/// The arcs that `ju_getLineGloveArcs` finds on a line of 10 samples or more.
inline std::vector<SQO_basicFeature1D> gloveArcs(const Profile& profile,
                                                 int lineIdx,
                                                 const SQO_gloveArcParam& param) {
  const AllArms allArms = armsOf(profile, param.scale);
  const int count = static_cast<int>(profile.size());
  const auto stepFrom = [&](int j) {
    return j + 1 < count ? distance(profile[j], profile[j + 1]) : 0.0;
  };
  std::vector<SQO_basicFeature1D> arcs;
  for (int i = 0; i < count; ++i) {
    if (!isSummit(profile, i, param.scale)) {
      continue;
    }
    double before = 0.0;
    double length = 0.0;
    for (int j = i - 1; j >= 0 && (j == i - 1 || !(length >= param.armLen)); --j) {
      before = allArms[j].fore > before ? allArms[j].fore : before;
      length += stepFrom(j);
    }
    double after = allArms[i].fore;
    length = stepFrom(i);
    for (int j = i + 1; j < count; ++j) {
      length += stepFrom(j);
      if (length >= param.armLen) {
        break;
      }
      after = after > allArms[j].fore ? allArms[j].fore : after;
    }
    if (before - after >= param.minTurnAngle) {
      arcs.push_back(featureAt(profile[i], lineIdx, FEATURE_PEAK, before - after));
    }
  }
  return arcs;
}

}  // namespace plain
