#pragma once

#include <string>
#include <vector>

#include "base/scan.h"
#include "draw/map_picture.h"

namespace program {

/// Two scans from above, on one grid: where the nearest samples of both lie.
struct Overlay {
  STeskRangeD x;
  STeskRangeD y;
  cv::Mat a;  ///< z of the surface nearest to the sensor, pixel by pixel; 0.0 without one.
  cv::Mat b;
};

/// A scan, and its extent with the spacing that it was scanned at.
struct Layer {
  const Scan& scan;
  const Extent& extent;
};

/// Lays scans over each other that are in one frame, each sample as wide as its spacing.
Overlay overlaid(const Layer& a, const Layer& b);

/// How well the scans agree where both have samples.
struct Agreement {
  double overlap;     ///< Share of B's ground that A covers too, from 0.0 to 1.0.
  double median;      ///< Median of b - a in z.
  double halfOfThem;  ///< Half of all differences are within this of 0.0.
  double mostOfThem;  ///< 90 % are.
};

Agreement agreementOf(const Overlay& overlay);

/// The differences of two scans in colours from blue, where B is nearer to the sensor, to red. What
/// only one scan has is grey.
struct OverlayContent {
  std::string title;
  std::string subtitle;
  std::string unit;
  std::vector<MapLabel> labels;  ///< Of points, which are marked.
  std::vector<bool> isOutlier;   ///< Of these points.
  bool zIsHeight = false;        ///< Differences are those of heights.
};

Picture overlayPicture(const Overlay& overlay, const Agreement& agreement, OverlayContent content);

}  // namespace program
