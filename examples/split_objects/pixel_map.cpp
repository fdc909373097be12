#include "pixel_map.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include <scanline/geometry.h>
#include <scanline/scan_bounds.h>
#include "program.h"

namespace examples {
namespace {

constexpr int kEuclidean = 0;

/// z as an image, a row per line; `hole` where nothing was measured.
cv::Mat depthImage(const Scan& scan, float hole) {
  cv::Mat image(static_cast<int>(scan.size()), static_cast<int>(scan.front().size()), CV_32F,
                cv::Scalar(static_cast<double>(hole)));
  for (int row = 0; row < image.rows; ++row) {
    const Line& line = scan[static_cast<std::size_t>(row)];
    for (int col = 0; col < image.cols; ++col) {
      const STesk3DPosition& sample = line[static_cast<std::size_t>(col)];
      if (isMeasured(sample)) {
        image.at<float>(row, col) = static_cast<float>(sample.pt3D.z);
      }
    }
  }
  return image;
}

cv::Mat windowOf(cv::Size reach) {
  return cv::Mat::ones(2 * reach.height + 1, 2 * reach.width + 1, CV_8U);
}

/// The samples, a row per line, that have a step between them and a neighbour.
cv::Mat stepsIn(const Scan& scan, double stepLimit) {
  constexpr float kFar = 1e9F;
  cv::Mat smallest;
  cv::Mat largest;
  cv::erode(depthImage(scan, kFar), smallest, windowOf({1, 1}));
  cv::dilate(depthImage(scan, -kFar), largest, windowOf({1, 1}));
  return largest - smallest > stepLimit;
}

/// The lowest distance on the way from one peak straight to the other.
float lowestBetween(const cv::Mat& distances, const SQO_2DValueI& a, const SQO_2DValueI& b) {
  std::vector<STesk2DPoint> way;
  drawLine(a.x, a.y, b.x, b.y, way);
  float lowest = distances.at<float>(a.y, a.x);
  for (const STesk2DPoint& p : way) {
    lowest = std::min(lowest, distances.at<float>(p.y, p.x));
  }
  return lowest;
}

/// Whether two peaks belong to one object: there is no waist between them.
bool isOneObject(const cv::Mat& distances, const SQO_2DValueI& high, const SQO_2DValueI& low) {
  constexpr double kWaist = 0.6;
  return static_cast<double>(lowestBetween(distances, high, low)) > kWaist * low.valueD;
}

}  // namespace

cv::Size PixelGrid::size() const {
  const cv::Point last = pixelOf({x.max, y.max, 0.0});
  return {last.x + 1 + edge, last.y + 1 + edge};
}

cv::Point PixelGrid::pixelOf(const STesk3DPoint& point) const {
  const auto index = [this](double from) {
    return static_cast<int>(static_cast<double>(static_cast<int>(from)) / scale + edge);
  };
  return {index(point.x - x.min), index(point.y - y.min)};
}

PixelGrid gridFor(Scan& scan, double lineStep, double ptStep) {
  constexpr double kSlack = 1.2;
  constexpr int kEdge = 3;
  const double scale = std::max(std::ceil(kSlack * std::max(lineStep, ptStep)), 1.0);
  const STesk3DRangeD box = qo_getScanDataROI_vector(scan);
  const double pixels =
      (box.xRange.max - box.xRange.min) / scale * ((box.yRange.max - box.yRange.min) / scale);
  constexpr double kMostPixels = 1e8;
  if (pixels > kMostPixels) {
    throw UserError("the scan covers too large an area for its spacing; cut it up first");
  }
  return {box.xRange, box.yRange, scale, kEdge, 2.0 * scale};
}

Projection project(Scan& scan, const PixelGrid& grid) {
  Projection projection = {cv::Mat::zeros(grid.size(), CV_32F),
                           cv::Mat(grid.size(), CV_32SC2, cv::Scalar::all(-1))};
  constexpr double kNoLimit = 0.0;
  pointClout2DProjection(scan, grid.x, grid.y, grid.scale, kNoLimit, grid.edge, grid.linkDist,
                         projection.mask, projection.samples);
  return projection;
}

Scan withoutSteps(const Scan& scan, double stepLimit, cv::Size reach) {
  cv::Mat leftOut;
  cv::dilate(stepsIn(scan, stepLimit), leftOut, windowOf(reach));
  Scan calm = scan;
  for (int row = 0; row < leftOut.rows; ++row) {
    for (int col = 0; col < leftOut.cols; ++col) {
      if (leftOut.at<uchar>(row, col) != 0) {
        calm[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)].pt3D.z = 0.0;
      }
    }
  }
  return calm;
}

cv::Mat distancesInside(const Projection& projection) {
  cv::Mat distances;
  qo_distanceTrans(projection.mask, distances, kEuclidean);
  return distances;
}

cv::Mat distancesOutside(const Projection& projection) {
  constexpr float kAnyDistance = 1e6F;
  cv::Mat outside(projection.mask.size(), CV_32F, cv::Scalar(0.0));
  outside.setTo(kAnyDistance, projection.mask <= 0.0F);
  qo_distanceTrans(outside, outside, kEuclidean);
  return outside;
}

std::vector<SQO_2DValueI> findMiddles(cv::Mat& distances, double minWidth) {
  const int block = std::max(static_cast<int>(std::lround(minWidth)), 4);
  std::vector<SQO_2DValueI> peaks;
  qo_getLocalPeaks_distTransform(distances, peaks, {block, block});
  std::stable_sort(peaks.begin(), peaks.end(), [](const SQO_2DValueI& a, const SQO_2DValueI& b) {
    return a.valueD > b.valueD;
  });
  std::vector<SQO_2DValueI> middles;
  for (const SQO_2DValueI& peak : peaks) {
    // The steps that are left out around an object make it seem narrower than it is.
    constexpr double kLowest = 0.3;
    const bool isNew = std::none_of(
        middles.begin(), middles.end(),
        [&](const SQO_2DValueI& middle) { return isOneObject(distances, middle, peak); });
    if (isNew && peak.valueD >= kLowest * minWidth) {
      middles.push_back(peak);
    }
  }
  return middles;
}

}  // namespace examples
