#include <algorithm>
#include <cmath>

#include <scanline/calibration.h>
#include <scanline/conditioning.h>
#include <scanline/geometry.h>
#include <scanline/scan_bounds.h>
#include "cost.h"

// Conditioning of lines and scans, calibration and fits.

namespace cost {
namespace {

constexpr int kSamples = 4000;

int zigzag(int i) {
  return 100 + i % 2;
}

/// A scan with as many lines as samples on each line, about `size` samples in all.
Scan squareScan(int size, double step) {
  const int side = static_cast<int>(std::sqrt(size));
  Scan scan(side);
  for (int l = 0; l < side; ++l) {
    scan[l] = makeLine(side, [=](int i) {
      return STesk3DPoint{1.0 * l, 1.0 * i, 100.0 + step * ((l + i) % 7)};
    });
  }
  return scan;
}

/// With a window `reach` times as long as the line.
std::function<std::function<void()>(int)> smoothing(double reach) {
  return [reach](int size) {
    const int window = static_cast<int>(reach * size);
    return [line = profile(size, zigzag), window, out = Line{}]() mutable {
      qo_lineDataSmoothing(line, window, out);
    };
  };
}

std::function<void()> segSmoothing(int size) {
  return [line = profile(size, zigzag), size, out = Line{}]() mutable {
    qo_lineSegSmoothing(line, kBeyond, kBeyond, 2 * size, out);
  };
}

std::function<void()> outliers(int size) {
  return [line = profile(size, zigzag), out = Line{}, noise = std::vector<int>{}]() mutable {
    qo_lineDataRemoveOutlier(line.data(), static_cast<int>(line.size()), {0.5, kBeyond}, out,
                             noise);
  };
}

std::function<void()> noiseFilter(int size) {
  return [scan = squareScan(size, 1.0), errCode = 0]() mutable {
    ju_noiseFilter(scan, {0.5, 3.0}, &errCode);
  };
}

/// A zigzag that widens, so that each cut takes off no more than an end.
std::function<void()> splitZigzag(int size) {
  Line line = profile(size, [size](int i) { return 2.0 * size + (i % 2 ? 1.0 : -1.0) * i; });
  return [line, pieces = std::vector<SQO_RUN>{}]() mutable {
    split({0, static_cast<int>(line.size()), 0}, line, 0.5, pieces);
  };
}

/// An arc, whose pieces are cut in half.
std::function<void()> surfaceSegments(int size) {
  const double radius = size;
  Line line = profile(size, [=](int i) {
    const double y = i - 0.5 * size;
    return 10.0 + radius - std::sqrt(radius * radius - y * y);
  });
  return [line, best = std::vector<SQO_featureSemiCircle>{},
          others = std::vector<SQO_featureSemiCircle>{}]() mutable {
    ju_surfaceLineSegment(line, 0, {0.0, kBeyond}, {kBeyond, kBeyond, 0.01}, best, others);
  };
}

/// Two levels of a thousand samples, and one stray sample at the height `size`.
std::function<void()> strayHeight(int size) {
  Scan scan = {profile(1000, [](int i) { return i % 2 ? 10.0 : 30.0 + 0.01 * i; })};
  scan[0][500].pt3D.z = size;
  return [scan]() mutable { qo_getPlaneCalibPara2(scan); };
}

std::function<void()> spreadHeights(int size) {
  Scan scan = {profile(size, [](int i) { return 10.0 + 3.0 * i; })};
  return [scan]() mutable { qo_getPlaneCalibPara2(scan); };
}

/// Every sample lies in the last of 16 regions only.
std::function<void()> regions(int size) {
  std::vector<STesk3DRangeD> rois(15, {{1.0, 0.0}, {1.0, 0.0}, {1.0, 0.0}});
  rois.push_back({{-1.0, kBeyond}, {-1.0, kBeyond}, {0.0, kBeyond}});
  return [scan = squareScan(size, 0.01), rois]() mutable {
    std::vector<STesk3DLaserLine> lines = pointerForm(scan);
    qo_getPlaneCalibPara_ROIs(lines.data(), static_cast<int>(lines.size()), rois);
  };
}

std::function<void()> wholeLines(int size) {
  return [scan = squareScan(size, 0.01)]() mutable { qo_getHolePlaneCalibPara(scan); };
}

/// Steep zigzags at the end of each line, which are cut into pieces for the ground.
std::function<void()> ground(int size) {
  return [scan = squareScan(size, 8.0)]() mutable { qo_HCameraVScan_getGroundCalibPara(scan); };
}

std::function<void()> bounds(int size) {
  return [scan = squareScan(size, 1.0)]() mutable { ju_getPointCloudPara(scan); };
}

std::function<void()> rasterLine(int size) {
  return [size, points = std::vector<STesk2DPoint>{}]() mutable {
    drawLine(0, 0, size, size / 3, points);
  };
}

std::function<void()> parabola(int size) {
  std::vector<cv::Point_<double>> points;
  for (int i = 0; i < size; ++i) {
    points.emplace_back(0.01 * i, 1.0 * zigzag(i));
  }
  return [points]() {
    double a, b, c, mse, maxError;
    leastSquareParabolaFitEigen(points, a, b, c, mse, maxError);
  };
}

std::function<void()> line3D(int size) {
  std::vector<STesk3DPoint> points;
  for (int i = 0; i < size; ++i) {
    points.push_back({1.0 * i, 0.5 * i, 1.0 * zigzag(i)});
  }
  return [points]() {
    STesk3DPoint center;
    STesk3DPoint direction;
    fitLine3DLeastSquares(points, center, direction);
  };
}

std::function<void()> rigidTransform(int size) {
  std::vector<cv::Point3_<double>> points;
  for (int i = 0; i < size; ++i) {
    points.emplace_back(1.0 * i, 1.0 * (i % 7), 1.0 * zigzag(i));
  }
  return [points]() {
    cv::Mat R, T;
    cv::Point3_<double> center1, center2;
    caculateRT(points, points, R, T, center1, center2);
  };
}

}  // namespace

std::vector<Case> lineCases() {
  const auto linear = Growth::kLinear;
  return {
      {"records/bounds/scan", linear, kSamples, bounds},
      {"geometry/draw-line/long", linear, kSamples, rasterLine},
      {"geometry/parabola/many-points", linear, kSamples, parabola},
      {"geometry/line-3d/many-points", linear, kSamples, line3D},
      {"geometry/rigid-transform/many-points", linear, kSamples, rigidTransform},
      {"calibration/by-heights/stray-height", Growth::kNone, 1000000, strayHeight},
      {"calibration/by-heights/spread-heights", linear, kSamples, spreadHeights},
      {"calibration/regions/last-of-many", linear, kSamples, regions},
      {"calibration/whole-lines/scan", linear, kSamples, wholeLines},
      {"calibration/ground/zigzag", linear, kSamples, ground},
      {"conditioning/smoothing/window-beyond-line", linear, kSamples, smoothing(2.0)},
      {"conditioning/smoothing/window-of-half-line", Growth::kQuadratic, 1000, smoothing(0.5)},
      {"conditioning/seg-smoothing/window-beyond-line", linear, kSamples, segSmoothing},
      {"conditioning/outliers/every-sample", linear, kSamples, outliers},
      {"conditioning/noise-filter/every-sample", linear, kSamples, noiseFilter},
      {"conditioning/surface-segments/arc", linear, kSamples, surfaceSegments},
      {"conditioning/split/widening-zigzag", Growth::kQuadratic, 1000, splitZigzag},
  };
}

}  // namespace cost
