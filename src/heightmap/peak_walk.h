#pragma once

#include <cassert>
#include <cmath>
#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/heightmap.h>

namespace scanline::detail {

/// The input of all walks around one peak. In positions x is the line and y the sample.
struct PeakView {
  const STesk3DLaserLine* lines;
  int lineCount;
  int sampleCount;
  const cv::Mat& edgeMap;
  STesk2DPoint place;
  STesk3DPoint point;
  double halfSpan;
  bool useMark;
};

/// The samples of one line or, across the lines, of one sample index.
struct Track {
  const PeakView& peak;
  bool isLine;
  int index;  ///< Index of the line, or sample index.

  [[nodiscard]] int start() const {
    return isLine ? peak.place.y : peak.place.x;
  }
  [[nodiscard]] int count() const {
    return isLine ? peak.sampleCount : peak.lineCount;
  }
  [[nodiscard]] STesk2DPoint place(int i) const {
    return isLine ? STesk2DPoint{index, i} : STesk2DPoint{i, index};
  }
  [[nodiscard]] const STesk3DPosition& sample(int i) const {
    const STesk2DPoint at = place(i);
    assert(at.y < peak.lines[at.x].nPositionCnt);
    return peak.lines[at.x].p3DPosition[at.y];
  }
  /// Distance from the peak along the track.
  [[nodiscard]] double distanceAt(int i) const {
    const STesk3DPoint& point = sample(i).pt3D;
    return std::fabs(isLine ? peak.point.y - point.y : peak.point.x - point.x);
  }
};

/**
 * Walks from the peak along a track, in steps of -1 or 1, to the boundary of the object, and
 * appends the contour points on the way. Returns whether the walk was stopped, in contrast to a
 * walk that ends at a boundary.
 *
 * The samples at the same positions of the track with index `nextIndex` are prefetched.
 */
bool walkFromPeak(const Track& track,
                  int step,
                  int nextIndex,
                  std::vector<SQO_contourPtInfo>& found);

}  // namespace scanline::detail
