#pragma once

#include <opencv2/core.hpp>
#include <vector>

#include <scanline/heightmap.h>
#include "scan_types.h"

namespace examples {

/// Where samples lie in the images, by the rule of pointClout2DProjection().
struct PixelGrid {
  STeskRangeD x;
  STeskRangeD y;
  double scale;     ///< Length units per pixel.
  int edge;         ///< Empty pixels around the scan.
  double linkDist;  ///< Samples closer than this are joined.

  [[nodiscard]] cv::Size size() const;
  [[nodiscard]] cv::Point pixelOf(const STesk3DPoint& point) const;
};

/// A grid whose pixels are a little larger than the scan's spacing, so that none is left empty.
/// @throws UserError if it would have too many.
PixelGrid gridFor(Scan& scan, double lineStep, double ptStep);

/// What a scan covers, and the way back from pixels to samples.
struct Projection {
  cv::Mat mask;     ///< CV_32F, above 0 where the scan covers the pixel.
  cv::Mat samples;  ///< CV_32SC2, line and sample of the pixel, or -1 and -1.
};

Projection project(Scan& scan, const PixelGrid& grid);

/// The scan without the samples that are at most `reach` samples and lines away from a step in z
/// higher than `stepLimit`.
Scan withoutSteps(const Scan& scan, double stepLimit, cv::Size reach);

/// How far inside its object each pixel lies, in pixels; what the scan does not cover is 0.
cv::Mat distancesInside(const Projection& projection);

/// How far outside of all objects each pixel lies, in pixels; what the scan covers is 0.
cv::Mat distancesOutside(const Projection& projection);

/// The middles of the objects, one each: peaks of the distances, highest first. An object is at
/// least `minWidth` pixels wide.
std::vector<SQO_2DValueI> findMiddles(cv::Mat& distances, double minWidth);

}  // namespace examples
