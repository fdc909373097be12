#include "pipeline.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <tuple>
#include <utility>

namespace examples {
namespace {

/// Runs the steps one by one, and tells their times and the progress.
class Steps {
 public:
  Steps(std::vector<StepTime>& times, Progress& progress) : times_(times), progress_(progress) {}

  template <typename Work>
  void run(const char* name, Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    times_.push_back({name, took.count()});
    progress_.advance();
  }

 private:
  std::vector<StepTime>& times_;
  Progress& progress_;
};

/// Half of the widths of what is left out around steps, in samples and lines.
cv::Size stepReach(const PixelGrid& grid, const SplitParams& params) {
  const double reach = grid.linkDist;
  return {static_cast<int>(std::ceil(reach / params.ptStep)),
          static_cast<int>(std::ceil(reach / params.lineStep))};
}

/// A middle as a sample: the nearest pixel that holds one.
SQO_2DValueI sampleAt(const cv::Mat& samples, const SQO_2DValueI& pixel) {
  SQO_2DValueI found = pixel;
  int nearest = samples.rows + samples.cols;
  for (int row = 0; row < samples.rows; ++row) {
    for (int col = 0; col < samples.cols; ++col) {
      const auto& at = samples.at<cv::Vec2i>(row, col);
      const int distance = std::abs(row - pixel.y) + std::abs(col - pixel.x);
      if (at[0] >= 0 && distance < nearest) {
        nearest = distance;
        found.x = at[0];
        found.y = at[1];
      }
    }
  }
  return found;
}

/// The samples of one object.
struct Members {
  std::vector<double> z;
  STesk3DRangeD box{};  ///< In x and y.
};

std::vector<Members> membersOf(const Scan& scan, const cv::Mat& labels, int count) {
  std::vector<Members> members(static_cast<std::size_t>(count) + 1);
  for (int col = 0; col < labels.cols; ++col) {
    for (int row = 0; row < labels.rows; ++row) {
      const STesk3DPoint& p =
          scan[static_cast<std::size_t>(col)][static_cast<std::size_t>(row)].pt3D;
      Members& of = members[static_cast<std::size_t>(labels.at<int>(row, col))];
      if (labels.at<int>(row, col) > 0) {
        fold(of.box.xRange, p.x, of.z.empty());
        fold(of.box.yRange, p.y, of.z.empty());
        of.z.push_back(p.z);
      }
    }
  }
  return members;
}

/// The z that only a fiftieth of the samples lies above.
double topOf(std::vector<double> z) {
  constexpr std::ptrdiff_t kShare = 50;
  const auto top = z.begin() + static_cast<std::ptrdiff_t>(z.size()) / kShare;
  std::nth_element(z.begin(), top, z.end());
  return *top;
}

double reachFrom(const STesk3DPoint& middle, const STesk3DRangeD& box) {
  return std::max({middle.x - box.xRange.min, box.xRange.max - middle.x, middle.y - box.yRange.min,
                   box.yRange.max - middle.y});
}

/// The points of all sides, in turn around a centre. Most are on two sides.
std::vector<cv::Point2d> inTurn(const Outline& outline, const Scan& scan, cv::Point2d centre) {
  std::vector<std::tuple<double, double, double>> turned;
  for (const std::vector<SQO_2DValueI>& side : outline.points) {
    for (const SQO_2DValueI& point : side) {
      const STesk3DPoint& p =
          scan[static_cast<std::size_t>(point.x)][static_cast<std::size_t>(point.y)].pt3D;
      turned.emplace_back(std::atan2(p.y - centre.y, p.x - centre.x), p.x, p.y);
    }
  }
  std::sort(turned.begin(), turned.end());
  turned.erase(std::unique(turned.begin(), turned.end()), turned.end());
  std::vector<cv::Point2d> points;
  points.reserve(turned.size());
  for (const auto& [angle, x, y] : turned) {
    points.emplace_back(x, y);
  }
  return points;
}

/// Size and place of an object with a known outline.
FoundObject measure(const SQO_2DValueI& middle,
                    const Members& members,
                    Outline outline,
                    const SplitResult& result) {
  FoundObject object{};
  object.label = middle.value;
  object.outline = std::move(outline);
  const STesk3DPoint& p =
      result.scan[static_cast<std::size_t>(middle.x)][static_cast<std::size_t>(middle.y)].pt3D;
  object.outlinePoints = inTurn(object.outline, result.scan, {p.x, p.y});
  std::vector<cv::Point2f> points(object.outlinePoints.begin(), object.outlinePoints.end());
  if (!points.empty()) {
    const cv::RotatedRect around = cv::minAreaRect(points);
    object.centre = around.center;
    object.length = static_cast<double>(std::max(around.size.width, around.size.height));
    object.width = static_cast<double>(std::min(around.size.width, around.size.height));
  }
  object.placeOnBelt = placeOnBelt(result.frame, object.centre);
  object.height = result.frame.calibration.planeHeight - topOf(members.z);
  return object;
}

/// Walks from each middle to the ends of its object.
std::vector<FoundObject> outlineObjects(SplitResult& result,
                                        const cv::Mat& samples,
                                        const SplitParams& params) {
  const cv::Mat labels = labelSamples(result.scan, result.grid, result.regions);
  cv::Mat edges =
      markEdges(result.scan, labels,
                {result.grid.linkDist, params.stepLimit, stepReach(result.grid, params)});
  const std::vector<Members> members = membersOf(result.scan, labels, result.regions.count);
  std::vector<STesk3DLaserLine> lines = pointerForm(result.scan);
  std::vector<FoundObject> objects;
  for (const SQO_2DValueI& peak : result.peaks) {
    const SQO_2DValueI middle = sampleAt(samples, peak);
    const Members& own = members[static_cast<std::size_t>(peak.value)];
    const STesk3DPoint& at = lines[static_cast<std::size_t>(middle.x)].p3DPosition[middle.y].pt3D;
    Outline outline = findOutline(lines, edges, middle, reachFrom(at, own.box) + params.lineStep);
    objects.push_back(measure(middle, own, std::move(outline), result));
  }
  std::stable_sort(objects.begin(), objects.end(), [](const FoundObject& a, const FoundObject& b) {
    return a.placeOnBelt.x < b.placeOnBelt.x;
  });
  return objects;
}

}  // namespace

SplitResult splitObjects(Scan& heights, const SplitParams& params, Progress& progress) {
  SplitResult result{};
  Projection all;
  Projection calm;
  Steps steps(result.times, progress);
  steps.run("find the belt", [&] { result.frame = findBelt(heights); });
  steps.run("level and cut", [&] {
    result.scan = levelAndCut(heights, result.frame, params.cutHeight);
    result.grid = gridFor(result.scan, params.lineStep, params.ptStep);
  });
  steps.run("project", [&] {
    all = project(result.scan, result.grid);
    Scan unstepped = withoutSteps(result.scan, params.stepLimit, stepReach(result.grid, params));
    calm = project(unstepped, result.grid);
    result.mask = all.mask;
  });
  steps.run("find middles", [&] {
    result.distances = distancesInside(calm);
    result.peaks = findMiddles(result.distances, params.minWidth / result.grid.scale);
  });
  steps.run("divide", [&] {
    const cv::Mat depths = result.distances - distancesOutside(calm);
    result.regions = divide(all.mask, depths, result.peaks);
  });
  steps.run("outline", [&] { result.objects = outlineObjects(result, calm.samples, params); });
  return result;
}

}  // namespace examples
