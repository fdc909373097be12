#pragma once

/// Outlier removal in the plainest form. The tests compare the results of the library with it, the
/// benchmarks the speed.

#include <cmath>
#include <vector>

#include <scanline/conditioning.h>

namespace plain {

using Line = std::vector<STesk3DPosition>;

inline double heightDiff(const STesk3DPoint& p, const STesk3DPoint& q) {
  return std::abs(p.z - q.z);
}

inline double distance(const STesk3DPoint& p, const STesk3DPoint& q) {
  const double dx = p.x - q.x;
  const double dy = p.y - q.y;
  const double dz = p.z - q.z;
  return std::sqrt(dx * dx + dy * dy + dz * dz);
}

/// Returns a copy of a line in which stretches that are too short are blanked, and lists their
/// samples.
template <typename Measure>
Line withoutOutliers(Line line,
                     const SQO_outlierFilterParam& para,
                     Measure measure,
                     std::vector<int>& noise) {
  std::vector<SQO_RUN> stretches;
  int last = -1;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    if (line[i].pt3D.z <= 0.0001) {
      continue;
    }
    if (last < 0 || !(para.continuityTh > measure(line[i].pt3D, line[last].pt3D))) {
      stretches.push_back({i, 0, i});
    }
    last = i;
    ++stretches.back().len;
    stretches.back().value = last;
  }
  for (const SQO_RUN& stretch : stretches) {
    for (int k = stretch.start; para.outlierTh > stretch.len && k <= stretch.value; ++k) {
      line[k].pt3D.z = 0.0;
      noise.push_back(k);
    }
  }
  return line;
}

/// Filters a scan along its lines, then each column as a line of its own. Returns the error code.
inline int noiseFilter(std::vector<Line>& scan, const SQO_outlierFilterParam& para) {
  bool even = true;
  std::vector<int> noise;
  for (Line& line : scan) {
    even = even && line.size() == scan[0].size();
    line = withoutOutliers(line, para, heightDiff, noise);
  }
  for (std::size_t j = 0; even && j < scan[0].size(); ++j) {
    Line column;
    for (const Line& line : scan) {
      column.push_back(line[j]);
    }
    noise.clear();
    withoutOutliers(column, para, heightDiff, noise);
    for (const int k : noise) {
      scan[k][j].pt3D.z = 0.0;
    }
  }
  return even ? 0 : -1000;
}

}  // namespace plain
