// Draws what a scan covers into a mask.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <opencv2/core/matx.hpp>

#include <scanline/heightmap.h>
#include "geometry/distance.h"
#include "geometry/raster_line.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

constexpr float kOccupied = 1000000.0F;
/// A mask value above this, compared in double precision, is occupied.
constexpr double kEmptyMax = 0.0001;

/// One axis of the image.
struct PixelAxis {
  double min;
  double scale;
  int edge;

  [[nodiscard]] int pixelOf(double position) const {
    const int wholeUnits = static_cast<int>(position - min);
    return static_cast<int>(static_cast<double>(wholeUnits) / scale + edge);
  }
};

/// Draws scan lines into the two images.
class Projector {
 public:
  Projector(const PixelAxis& columns,
            const PixelAxis& rows,
            double zLimit,
            double maxLinkDist,
            cv::Mat& mask,
            cv::Mat& backIndexing)
      : columns_(columns),
        rows_(rows),
        zLimit_(zLimit),
        maxLinkDist_(maxLinkDist),
        mask_(mask),
        backIndexing_(backIndexing) {}

  void projectLine(int lineIdx, const STesk3DPosition* line, int sampleCount) {
    const STesk3DPoint* previous = nullptr;
    STesk2DPoint previousPixel = {-1, -1};
    for (int i = 0; i < sampleCount; ++i) {
      const STesk3DPoint& point = line[i].pt3D;
      if (isSkipped(point.z)) {
        continue;
      }
      assert(std::isfinite(point.x) && std::isfinite(point.y));
      const STesk2DPoint pixel = {columns_.pixelOf(point.x), rows_.pixelOf(point.y)};
      assert(pixel.x >= 0 && pixel.x < mask_.cols && pixel.y >= 0 && pixel.y < mask_.rows);
      backIndexing_.ptr<cv::Vec2i>(pixel.y)[pixel.x] = {lineIdx, i};
      occupy(pixel);
      // Both ends are occupied already, so pixels that touch need no link.
      if (previous != nullptr && !touch(previousPixel, pixel) &&
          maxLinkDist_ > detail::distanceInSpace(*previous, point)) {
        link(previousPixel, pixel);
      }
      previous = &point;
      previousPixel = pixel;
    }
  }

 private:
  [[nodiscard]] bool isSkipped(double z) const {
    return detail::isMissing(z) || (zLimit_ > 0.0 && z > zLimit_);
  }

  static bool touch(const STesk2DPoint& a, const STesk2DPoint& b) {
    return std::abs(b.x - a.x) <= 1 && std::abs(b.y - a.y) <= 1;
  }

  void occupy(const STesk2DPoint& pixel) {
    mask_.ptr<float>(pixel.y)[pixel.x] = kOccupied;
  }

  void link(const STesk2DPoint& from, const STesk2DPoint& to) {
    detail::forEachRasterPoint(from.x, from.y, to.x, to.y, [this](int x, int y) {
      occupy({x, y});
    });
  }

  PixelAxis columns_;
  PixelAxis rows_;
  double zLimit_;
  double maxLinkDist_;
  cv::Mat& mask_;
  cv::Mat& backIndexing_;
};

/// Fills the gaps of a row between occupied pixels that are less than `gapLimit` apart.
void fillGaps(float* row, int cols, double gapLimit) {
  int last = -1;
  for (int c = 0; c < cols; ++c) {
    if (!(static_cast<double>(row[c]) > kEmptyMax)) {
      continue;
    }
    const int gap = c - last;
    if (last >= 0 && gap > 1 && gap < gapLimit) {
      std::fill(row + last + 1, row + c, kOccupied);
    }
    last = c;
  }
}

}  // namespace

void pointClout2DProjection(std::vector<std::vector<STesk3DPosition>>& scanLines,
                            STeskRangeD xRange,
                            STeskRangeD yRange,
                            double scale,
                            double zLimit,
                            int edge,
                            double maxLinkDist,
                            cv::Mat& projectionMask,
                            cv::Mat& backIndexing) {
  if (scanLines.empty()) {
    return;
  }
  assert(scale > 0.0);
  assert(projectionMask.type() == CV_32F && backIndexing.type() == CV_32SC2);
  assert(projectionMask.size() == backIndexing.size());
  Projector projector({xRange.min, scale, edge}, {yRange.min, scale, edge}, zLimit, maxLinkDist,
                      projectionMask, backIndexing);
  const int sampleCount = static_cast<int>(scanLines.front().size());
  for (std::size_t l = 0; l < scanLines.size(); ++l) {
    assert(scanLines[l].size() >= scanLines.front().size());
    projector.projectLine(static_cast<int>(l), scanLines[l].data(), sampleCount);
  }
  // Not converted to int, which a limit may exceed.
  const double gapLimit = std::trunc(maxLinkDist / scale);
  for (int r = 0; r < projectionMask.rows; ++r) {
    fillGaps(projectionMask.ptr<float>(r), projectionMask.cols, gapLimit);
  }
}
