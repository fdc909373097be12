#pragma once

/// The corner searches in their plainest form: every walk visits every sample. The tests compare
/// the library with them, the benchmarks measure both.

#include <cmath>
#include <vector>

#include <scanline/line_features.h>

namespace plain {

/// A sample of a line that a search uses.
struct Point {
  STesk3DPoint at;
  int sample;
  int stretch;
};
using Profile = std::vector<Point>;

/// The angles of both arms, the turn angle, and z of both neighbours.
struct Arms {
  bool valid = false;
  double back = 0.0;
  double fore = 0.0;
  double turn = 0.0;
  double backZ = 0.0;
  double foreZ = 0.0;
};
using AllArms = std::vector<Arms>;

/// The samples that are not holes, or the measured ones. A step of `stepZ` or more in z, or of
/// `stepY` or more in y unless that is infinite, starts the next stretch.
inline Profile profileOf(const std::vector<STesk3DPosition>& line,
                         bool onlyMeasured,
                         double stepY,
                         double stepZ) {
  Profile profile;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    const STesk3DPoint& at = line[i].pt3D;
    if (onlyMeasured ? !(at.z > 0.0001) : at.z <= 0.0001) {
      continue;
    }
    int stretch = 0;
    if (!profile.empty()) {
      const Point& last = profile.back();
      const bool continuesInY = std::isinf(stepY) || std::abs(at.y - last.at.y) < stepY;
      const bool continues = continuesInY && std::abs(at.z - last.at.z) < stepZ;
      stretch = last.stretch + (continues ? 0 : 1);
    }
    profile.push_back({at, i, stretch});
  }
  return profile;
}

/// The measured samples as one stretch.
inline Profile profileOf(const std::vector<STesk3DPosition>& line) {
  Profile profile = profileOf(line, true, 0.0, 0.0);
  for (Point& point : profile) {
    point.stretch = 0;
  }
  return profile;
}

inline double distance(const Point& a, const Point& b) {
  const double dy = a.at.y - b.at.y;
  const double dz = a.at.z - b.at.z;
  return std::sqrt(dy * dy + dz * dz);
}

inline double angle(const Point& from, const Point& to) {
  const double slope = (to.at.z - from.at.z) / std::abs(to.at.y - from.at.y);
  return std::atan(slope) * 180.0 / 3.141592653589793;
}

/// The first point in the stretch of point `i` at least `scale` away, unless one `maxChord` away
/// comes first.
inline int neighbour(const Profile& profile, int i, int step, double scale, double maxChord) {
  const int count = static_cast<int>(profile.size());
  for (int j = i + step; j >= 0 && j < count && profile[j].stretch == profile[i].stretch;
       j += step) {
    const double d = distance(profile[i], profile[j]);
    if (d >= maxChord || d >= scale) {
      return d >= maxChord ? -1 : j;
    }
  }
  return -1;
}

inline AllArms armsOf(const Profile& profile,
                      double scale,
                      bool oneSided = false,
                      double maxChord = std::nan("")) {
  AllArms allArms(profile.size());
  for (int i = 0; i < static_cast<int>(profile.size()); ++i) {
    const int back = neighbour(profile, i, -1, scale, maxChord);
    const int fore = neighbour(profile, i, 1, scale, maxChord);
    const bool both = back >= 0 && fore >= 0;
    Arms& arms = allArms[i];
    arms.valid = both || (oneSided && (back >= 0 || fore >= 0));
    if (arms.valid && back >= 0) {
      arms.back = angle(profile[back], profile[i]);
    }
    if (arms.valid && fore >= 0) {
      arms.fore = angle(profile[i], profile[fore]);
    }
    if (both) {
      arms.turn = -(arms.fore - arms.back);
      arms.backZ = profile[back].at.z;
      arms.foreZ = profile[fore].at.z;
    }
  }
  return allArms;
}

/// The maxima of the turn angle (`sign` 1) or its minima (-1); with `matching` only those of that
/// sign, and the one at the end of the line.
inline std::vector<int> extremaOf(const AllArms& allArms, int sign, bool matching) {
  std::vector<int> extrema;
  int direction = 0;
  int last = -1;
  for (int i = 0; i < static_cast<int>(allArms.size()); ++i) {
    if (!allArms[i].valid) {
      if (i + 1 == static_cast<int>(allArms.size()) && direction == sign) {
        extrema.push_back(last);
      }
      continue;
    }
    const double change = last < 0 ? 0.0 : allArms[i].turn - allArms[last].turn;
    if (change < 0.0 || change > 0.0) {
      const int next = change > 0.0 ? 1 : -1;
      if (direction == sign && next != sign && (!matching || allArms[last].turn * sign > 0.0)) {
        extrema.push_back(last);
      }
      direction = next;
    }
    last = i;
  }
  return extrema;
}

/// The extrema that reach a threshold and that no greater one suppresses within a window in y.
/// Minima are compared by magnitude.
inline std::vector<int> peaksOf(const Profile& profile,
                                const AllArms& allArms,
                                int sign,
                                bool matching,
                                double threshold,
                                double window) {
  const std::vector<int> extrema = extremaOf(allArms, sign, matching);
  const int count = static_cast<int>(extrema.size());
  const auto measure = [&](int k) {
    const double turn = allArms[extrema[k]].turn;
    return sign > 0 ? turn : std::abs(turn);
  };
  std::vector<int> peaks;
  for (int k = 0; k < count; ++k) {
    bool stays = !(threshold > measure(k));
    for (int step = -1; step <= 1; step += 2) {
      for (int other = k + step; other >= 0 && other < count; other += step) {
        const double dy = profile[extrema[k]].at.y - profile[extrema[other]].at.y;
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

inline SQO_basicFeature1D featureAt(const Point& point, int lineIdx, int type, double value = 0.0) {
  return {type, {lineIdx, point.sample}, point.at, value};
}

inline int steepType(const Arms& arms, const SQO_cornerParam& param) {
  if (arms.back > param.jumpCornerTh_1 && arms.fore > -param.jumpCornerTh_2) {
    return FEATURE_JUMP_RISE;
  }
  if (-param.jumpCornerTh_1 > arms.fore && param.jumpCornerTh_2 > arms.back) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

/// The corners of `qo_getLineCornerFeature` or, if `masked`, of `qo_maskData_getLineCornerFeature`.
inline std::vector<SQO_basicFeature1D> corners(const Profile& profile,
                                               int lineIdx,
                                               const SQO_cornerParam& param,
                                               bool masked = false) {
  const AllArms allArms =
      armsOf(profile, param.scale, false, masked ? param.scale * 4.0 : std::nan(""));
  std::vector<SQO_basicFeature1D> features;
  for (const int i : peaksOf(profile, allArms, 1, false, param.cornerTh, 2.0 * param.scale)) {
    const double value = masked ? allArms[i].turn : 0.0;
    features.push_back(featureAt(profile[i], lineIdx, steepType(allArms[i], param), value));
  }
  return features;
}

/// Distance in the x-y plane.
inline double widthBetween(const Point& a, const Point& b) {
  const double dx = a.at.x - b.at.x;
  const double dy = a.at.y - b.at.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// 1 if the backward arm is flat, 2 if only the forward one is, 0 if neither is.
inline int flatArm(const Arms& arms, const SQO_cornerParam& param) {
  const bool foreIsFlat = std::abs(arms.fore) < param.jumpCornerTh_1;
  return std::abs(arms.back) < param.jumpCornerTh_1 ? 1 : foreIsFlat ? 2 : 0;
}

/// The corners of `qo_getLineContourCornerFeature_groundMask_BQ`.
inline std::vector<SQO_basicFeature1D> groundCorners(const Profile& profile,
                                                     const std::vector<int>& mask,
                                                     int lineIdx,
                                                     double groundDist,
                                                     const SQO_cornerParam& param) {
  const AllArms allArms = armsOf(profile, param.scale, true);
  const int count = static_cast<int>(profile.size());
  std::vector<SQO_basicFeature1D> features;
  for (const int i : peaksOf(profile, allArms, -1, true, param.cornerTh, 2.0 * param.scale)) {
    bool found = false;
    for (int step = -1; step <= 1; step += 2) {
      int j = i + step;
      for (; j >= 0 && j < count && !(widthBetween(profile[i], profile[j]) > groundDist);
           j += step) {
        found = found || mask[profile[j].sample] == 1;
      }
    }
    const int type = flatArm(allArms[i], param);
    if (found && type != 0) {
      features.push_back(featureAt(profile[i], lineIdx, type, allArms[i].turn));
    }
  }
  return features;
}

}  // namespace plain
