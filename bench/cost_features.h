#pragma once

/// Features that are costly for the growers of trees.

#include <limits>
#include <vector>

#include <scanline/feature_records.h>

namespace cost {

using Features = std::vector<SQO_basicFeature1D>;
using FeatureLines = std::vector<Features>;

inline SQO_basicFeature1D featureAt(int line, int idx, double y) {
  return {FEATURE_SLOPE_RISE, {line, idx}, {1.0 * line, y, 10.0}, 1.0};
}

/// One feature on each line. If a tree may follow them, they make one long tree.
inline FeatureLines onePerLine(int count, double y = 5.0, int type = FEATURE_SLOPE_RISE) {
  FeatureLines lines;
  for (int l = 0; l < count; ++l) {
    lines.push_back({featureAt(l, 0, y)});
    lines.back().front().featureType = type;
  }
  return lines;
}

inline FeatureLines longTree(int count) {
  return onePerLine(count);
}

/// Features with a y of NaN.
inline FeatureLines withoutY(int count) {
  return onePerLine(count, std::numeric_limits<double>::quiet_NaN());
}

/// Features of a type that matches no type, not even itself.
inline FeatureLines unmatched(int count) {
  return onePerLine(count, 5.0, 8);
}

/// Features each farther in x from the one before than any tree may skip.
inline FeatureLines farApart(int count) {
  FeatureLines lines = onePerLine(count);
  for (Features& features : lines) {
    features.front().jumpPos.x *= 1e12;
  }
  return lines;
}

/// Features with a y of NaN on one line, and one with a y on the next.
inline FeatureLines withoutYOnALine(int count) {
  FeatureLines lines = withoutY(1);
  lines[0].resize(count, lines[0][0]);
  lines.push_back({featureAt(1, 0, 5.0)});
  return lines;
}

/// Equal features, all on one line: each starts a tree to which no other attaches.
inline FeatureLines equalOnALine(int count) {
  return {Features(count, featureAt(0, 0, 5.0))};
}

/// Features on one line that lie within one deviation of each other.
inline FeatureLines closeOnALine(int count) {
  FeatureLines lines(1);
  for (int i = 0; i < count; ++i) {
    lines[0].push_back(featureAt(0, 0, 5.0 + 1.0 * i / count));
  }
  return lines;
}

/// The same on two lines: each feature of the second attaches to the first free tree.
inline FeatureLines equalOnTwoLines(int count) {
  FeatureLines lines = equalOnALine(count / 2);
  lines.emplace_back(count - count / 2, featureAt(1, 0, 5.0));
  return lines;
}

/// Features on two lines that share their y but differ too much in z for any tree.
inline FeatureLines wall(int count) {
  FeatureLines lines(2);
  for (int i = 0; i < count; ++i) {
    lines[i % 2].push_back(featureAt(i % 2, i, 5.0));
    lines[i % 2].back().jumpPos.z = 10.0 * i;
  }
  return lines;
}

/// Features on one line that are far apart in y.
inline FeatureLines spreadOnALine(int count) {
  FeatureLines lines(1);
  for (int i = 0; i < count; ++i) {
    lines[0].push_back(featureAt(0, i, 10.0 * i));
  }
  return lines;
}

}  // namespace cost
