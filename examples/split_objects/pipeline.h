#pragma once

#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "levelling.h"
#include "outlines.h"
#include "pixel_map.h"
#include "progress.h"
#include "regions.h"
#include "scan_types.h"

namespace examples {

/// What tunes the road from a scan to objects.
struct SplitParams {
  double cutHeight;  ///< What lies less than this above the belt is belt.
  double stepLimit;  ///< A step in height from here on parts objects.
  double minWidth;   ///< Width of the narrowest object.
  double lineStep;   ///< Distance of the lines.
  double ptStep;     ///< Distance of the samples on a line.
};

/// One object, in the coordinates of the level scan unless told otherwise.
struct FoundObject {
  int label;
  cv::Point2d centre;       ///< Middle of the smallest rectangle around the outline.
  cv::Point2d placeOnBelt;  ///< The same in the coordinates of the raw scan.
  double length;            ///< Long side of that rectangle.
  double width;             ///< Its short side.
  double height;            ///< Of its top over the belt.
  Outline outline;
  std::vector<cv::Point2d> outlinePoints;  ///< All points once, in turn around the centre.
};

/// How long a step took.
struct StepTime {
  std::string step;
  double milliseconds;
};

/// What became of a scan.
struct SplitResult {
  BeltFrame frame;
  Scan scan;  ///< Distances over a level belt, without the belt.
  PixelGrid grid;
  cv::Mat mask;
  cv::Mat distances;
  std::vector<SQO_2DValueI> peaks;  ///< The middles of the objects, as pixels.
  Regions regions;
  std::vector<FoundObject> objects;  ///< In the order of their places along the belt.
  std::vector<StepTime> times;
};

/// Steps that splitObjects() reports.
constexpr int kSplitSteps = 6;

/// Finds, parts and outlines what lies on a belt, in a scan of heights.
SplitResult splitObjects(Scan& heights, const SplitParams& params, Progress& progress);

}  // namespace examples
