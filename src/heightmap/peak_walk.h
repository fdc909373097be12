#pragma once

#include <cmath>
#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/heightmap.h>

namespace scanline::detail {

/// What all walks around one peak read. Positions have the line in x and the sample in y.
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

/// The samples of one line or, across the lines, those of one sample index.
struct Track {
  const PeakView& peak;
  bool isLine;
  int index;  ///< Of the line or of the samples.

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
    return peak.lines[at.x].p3DPosition[at.y];
  }
  /// Distance from the peak along the track.
  [[nodiscard]] double distanceAt(int i) const {
    const STesk3DPoint& point = sample(i).pt3D;
    return std::fabs(isLine ? peak.point.y - point.y : peak.point.x - point.x);
  }
};

/**
 * Walks from the peak along a track, in steps of -1 or 1, to the boundary of the peak's object, and
 * appends the contour points on the way. Returns whether the walk was stopped, which is not how it
 * ends at a boundary.
 *
 * The samples at the same positions on track `nextIndex` are prefetched.
 */
bool walkFromPeak(const Track& track,
                  int step,
                  int nextIndex,
                  std::vector<SQO_contourPtInfo>& found);

}  // namespace scanline::detail
