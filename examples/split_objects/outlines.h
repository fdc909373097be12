#pragma once

#include <array>
#include <opencv2/core.hpp>
#include <vector>

#include <scanline/heightmap.h>
#include "pixel_map.h"
#include "regions.h"
#include "scan_types.h"

namespace examples {

/// The four ways that a walk leads away from an object's middle.
enum Side { kLowY, kHighY, kLowX, kHighX, kSides };

/// The outline of one object, side by side.
struct Outline {
  std::array<std::vector<SQO_2DValueI>, kSides> points;  ///< `x` the line, `y` the sample.
  std::array<bool, kSides> isFree;  ///< Whether most of the side's rim is the object's own, not
                                    ///< that of a higher neighbour.
};

/// What tells where objects end.
struct EdgeParams {
  double gap;      ///< Neighbouring samples farther apart than this are not connected.
  double step;     ///< A neighbour higher than this lies over the object.
  cv::Size reach;  ///< How far, in samples and lines, to look for that.
};

/// The label of each sample: a row per sample index, a column per line, 0 for none.
cv::Mat labelSamples(const Scan& scan, const PixelGrid& grid, const Regions& regions);

/**
 * Writes into the samples' flags where objects end, as qo_peakXYScan() reads them.
 *
 * @return the image of edges that goes with them
 */
cv::Mat markEdges(Scan& scan, const cv::Mat& labels, const EdgeParams& params);

/**
 * Finds the outline of the object around a middle.
 *
 * @param middle `x` its line and `y` its sample, `value` its label
 * @param reach  the farthest that the object extends from there in x or y
 */
Outline findOutline(std::vector<STesk3DLaserLine>& lines,
                    cv::Mat& edges,
                    const SQO_2DValueI& middle,
                    double reach);

}  // namespace examples
