#include "roads/split_outlines.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <opencv2/imgproc.hpp>
#include <utility>

#include "roads/split_contacts.h"

namespace program {
namespace {

constexpr double kDegrees = 180.0 / 3.14159265358979323846;

/// A region without what is thinner than three pixels. Corners stay.
cv::Mat withoutWhiskers(const cv::Mat& region) {
  const cv::Mat window = cv::Mat::ones(3, 3, CV_8U);
  cv::Mat kept;
  cv::morphologyEx(region, kept, cv::MORPH_OPEN, window);
  cv::dilate(kept, kept, window);
  return kept & region;
}

/// Walks around the largest piece of a region, and fills `piece` with it.
std::vector<cv::Point> rimOf(const cv::Mat& region, cv::Mat& piece) {
  std::vector<std::vector<cv::Point>> rims;
  cv::findContours(withoutWhiskers(region), rims, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
  piece = cv::Mat::zeros(region.size(), CV_8U);
  if (rims.empty()) {
    return {};
  }
  const auto largest = std::max_element(rims.begin(), rims.end(), [](const auto& a, const auto& b) {
    return cv::contourArea(a) < cv::contourArea(b);
  });
  cv::drawContours(piece, rims, static_cast<int>(largest - rims.begin()), 255, cv::FILLED);
  return std::move(*largest);
}

/// A pixel on the rim of an object, and the sample on it that lies outermost.
struct RimPixel {
  std::size_t object;
  cv::Point2d outwards;
  double reach;  ///< Of the sample in that direction.
  STesk3DPoint outermost;
};

/// Away from the object: the sum of the steps to the neighbours that do not belong to it.
cv::Point2d outwardsAt(const cv::Mat& labels, cv::Point at) {
  const cv::Rect image({0, 0}, labels.size());
  cv::Point sum;
  for (int step = 0; step < 9; ++step) {
    const cv::Point way(step % 3 - 1, step / 3 - 1);
    if (!image.contains(at + way) || labels.at<int>(at + way) != labels.at<int>(at)) {
      sum += way;
    }
  }
  return sum;
}

/// The pixels on all rims, and their places in the map as indices, -1 elsewhere.
struct Rims {
  std::vector<RimPixel> pixels;
  cv::Mat indices;
};

Rims rimsOf(const cv::Mat& labels, const std::vector<std::vector<cv::Point>>& outlines) {
  Rims rims = {{}, cv::Mat(labels.size(), CV_32S, cv::Scalar(-1))};
  for (std::size_t object = 0; object < outlines.size(); ++object) {
    for (const cv::Point at : outlines[object]) {
      // The way around a neck passes some pixels twice.
      if (rims.indices.at<int>(at) < 0) {
        rims.indices.at<int>(at) = static_cast<int>(rims.pixels.size());
        rims.pixels.push_back(
            {object, outwardsAt(labels, at), -std::numeric_limits<double>::infinity(), {}});
      }
    }
  }
  return rims;
}

/// Finds the outermost samples, and the heights of the samples of each object.
std::vector<std::vector<float>> visitSamples(const Scan& scan,
                                             double beltZ,
                                             double minHeight,
                                             const MapGrid& grid,
                                             const cv::Mat& labels,
                                             Rims& rims,
                                             std::size_t count) {
  std::vector<std::vector<float>> heights(count);
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      const STesk3DPoint& p = sample.pt3D;
      const auto at =
          isMeasured(sample) && beltZ - p.z >= minHeight ? grid.pixelOf(p) : std::nullopt;
      const int label = at ? labels.at<int>(*at) : 0;
      if (label == 0) {
        continue;
      }
      heights[static_cast<std::size_t>(label) - 1].push_back(static_cast<float>(beltZ - p.z));
      const int index = rims.indices.at<int>(*at);
      if (index >= 0) {
        RimPixel& pixel = rims.pixels[static_cast<std::size_t>(index)];
        const double reach = pixel.outwards.dot({p.x - grid.x, p.y - grid.y});
        if (reach > pixel.reach) {
          pixel.reach = reach;
          pixel.outermost = p;
        }
      }
    }
  }
  return heights;
}

/// The height that only a fiftieth of the samples exceeds.
double topOf(std::vector<float>& heights) {
  constexpr std::size_t kShare = 50;
  const auto top = heights.end() - 1 - static_cast<std::ptrdiff_t>(heights.size() / kShare);
  std::nth_element(heights.begin(), top, heights.end());
  return static_cast<double>(*top);
}

/// How far the edges on both sides of an object lie beyond its outermost samples, together. Along
/// the axes of the scan that is half a spacing each, on average. An edge of some length that is not
/// parallel to them comes closer to a sample the more lines or samples it crosses.
double beyondSamples(const cv::Point2d& across, double edgeLength, const Extent& extent) {
  const double u = std::abs(across.x);
  const double v = std::abs(across.y);
  const double step = std::max(u * extent.lineSpacing, v * extent.sampleSpacing);
  const double drift = edgeLength * std::min(u, v);
  return step > 0.0 ? step / (1.0 + drift / step) : 0.0;
}

void measureRectangle(SplitObject& object, const Extent& extent) {
  const STesk3DPoint& origin = object.outline.front();
  // Single precision only holds places near the origin.
  std::vector<cv::Point2f> points;
  for (const STesk3DPoint& p : object.outline) {
    points.emplace_back(static_cast<float>(p.x - origin.x), static_cast<float>(p.y - origin.y));
  }
  const cv::RotatedRect box = cv::minAreaRect(points);
  cv::Point2f corners[4];
  box.points(corners);
  const cv::Point2d a = corners[1] - corners[0];
  const cv::Point2d b = corners[2] - corners[1];
  const auto [side, shortSide] = cv::norm(a) >= cv::norm(b) ? std::pair(a, b) : std::pair(b, a);
  const double length = cv::norm(side);
  const double width = cv::norm(shortSide);
  object.x = origin.x + static_cast<double>(box.center.x);
  object.y = origin.y + static_cast<double>(box.center.y);
  const cv::Point2d along = length > 0.0 ? side / length : cv::Point2d(1.0, 0.0);
  object.length = length + beyondSamples(along, width, extent);
  object.width = width + beyondSamples({-along.y, along.x}, length, extent);
  const double angle = std::atan2(side.y, side.x) * kDegrees;
  object.angle = angle > 90.0 ? angle - 180.0 : angle <= -90.0 ? angle + 180.0 : angle;
}

/// Enclosed by the outline through the middles of the outermost cells, and the halves of these
/// cells outside of it (theorem of Pick).
double areaOf(const std::vector<STesk3DPoint>& outline, const Extent& extent) {
  double twice = 0.0;
  double rim = 0.0;
  for (std::size_t i = 0; i < outline.size(); ++i) {
    const STesk3DPoint& a = outline[i];
    const STesk3DPoint& b = outline[(i + 1) % outline.size()];
    const STesk3DPoint& origin = outline.front();
    twice += (a.x - origin.x) * (b.y - origin.y) - (b.x - origin.x) * (a.y - origin.y);
    rim += std::max(std::abs(b.x - a.x) * extent.sampleSpacing,
                    std::abs(b.y - a.y) * extent.lineSpacing);
  }
  return 0.5 * std::abs(twice) + 0.5 * rim + extent.lineSpacing * extent.sampleSpacing;
}

}  // namespace

std::vector<std::vector<cv::Point>> walkOutlines(cv::Mat& labels, int count) {
  const std::vector<cv::Rect> boxes = boxesOf(labels, count);
  std::vector<std::vector<cv::Point>> rims(static_cast<std::size_t>(count));
  for (int label = 1; label <= count; ++label) {
    const cv::Rect box = boxes[static_cast<std::size_t>(label)];
    if (box.empty()) {
      continue;
    }
    cv::Mat part = labels(box);
    const cv::Mat region = part == label;
    cv::Mat piece;
    std::vector<cv::Point>& rim = rims[static_cast<std::size_t>(label) - 1];
    rim = rimOf(region, piece);
    part.setTo(0, region & ~piece);
    for (cv::Point& at : rim) {
      at += box.tl();
    }
  }
  return rims;
}

std::vector<SplitObject> measureObjects(const Scan& scan,
                                        double beltZ,
                                        const Extent& extent,
                                        double minHeight,
                                        const MapGrid& grid,
                                        const cv::Mat& labels,
                                        const std::vector<std::vector<cv::Point>>& outlines) {
  Rims rims = rimsOf(labels, outlines);
  std::vector<std::vector<float>> heights =
      visitSamples(scan, beltZ, minHeight, grid, labels, rims, outlines.size());
  std::vector<SplitObject> objects(outlines.size());
  for (const RimPixel& pixel : rims.pixels) {
    if (std::isfinite(pixel.reach)) {
      objects[pixel.object].outline.push_back(pixel.outermost);
    }
  }
  for (std::size_t i = 0; i < objects.size(); ++i) {
    SplitObject& object = objects[i];
    constexpr std::size_t kFewest = 3;
    if (object.outline.size() < kFewest) {
      object.outline.clear();
      continue;
    }
    measureRectangle(object, extent);
    object.area = areaOf(object.outline, extent);
    object.samples = static_cast<long long>(heights[i].size());
    object.height = topOf(heights[i]);
  }
  return objects;
}

}  // namespace program
