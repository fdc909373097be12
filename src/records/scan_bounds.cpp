// Finds the bounds of scans and point lists, and the mean spacing of the samples of a scan.
#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include <scanline/scan_bounds.h>
#include "records/sample_rules.h"
#include "records/scan_view.h"

namespace {

using scanline::detail::isMeasured;
using scanline::detail::isMissing;
using scanline::detail::kEmptyRange;
using scanline::detail::LineView;
using scanline::detail::widen;

constexpr double kUnknownStep = -1.0;

/// The bounding box of the points taken so far. All axes take their first value together, so that
/// one test for an empty range serves all three, and the rest is free of branches.
class BoundingBox {
 public:
  void take(const STesk3DPoint& point) {
    if (low_.z > high_.z) {
      low_ = point;
      high_ = point;
      return;
    }
    widen(low_.x, high_.x, point.x);
    widen(low_.y, high_.y, point.y);
    widen(low_.z, high_.z, point.z);
  }
  void takeSamples(const LineView& line) {
    for (const STesk3DPosition& sample : line) {
      if (!isMissing(sample.pt3D.z)) {
        take(sample.pt3D);
      }
    }
  }
  [[nodiscard]] STesk3DRangeD box() const {
    return {{low_.x, high_.x}, {low_.y, high_.y}, {low_.z, high_.z}};
  }

 private:
  STesk3DPoint low_ = {kEmptyRange.min, kEmptyRange.min, kEmptyRange.min};
  STesk3DPoint high_ = {kEmptyRange.max, kEmptyRange.max, kEmptyRange.max};
};

/// The mean distance between neighbours along one axis.
class MeanStep {
 public:
  void add(double difference) {
    sum_ += std::abs(difference);
    ++count_;
  }
  [[nodiscard]] double value() const {
    return count_ > 0 ? sum_ / static_cast<double>(count_) : kUnknownStep;
  }

 private:
  double sum_ = 0.0;
  std::int64_t count_ = 0;
};

[[maybe_unused]] bool noLineIsLongerThanTheOneBefore(
    const std::vector<std::vector<STesk3DPosition>>& scan) {
  return std::is_sorted(scan.begin(), scan.end(),
                        [](const auto& a, const auto& b) { return a.size() > b.size(); });
}

}  // namespace

STesk3DRangeD qo_getScanDataROI(STesk3DLaserLine* lines, int lineNum) {
  assert(lines != nullptr || lineNum <= 0);
  BoundingBox bounds;
  for (int i = 0; i < lineNum; ++i) {
    bounds.takeSamples(LineView(lines[i]));
  }
  return bounds.box();
}

STesk3DRangeD qo_getScanDataROI_vector(std::vector<std::vector<STesk3DPosition>>& scan) {
  BoundingBox bounds;
  for (const std::vector<STesk3DPosition>& line : scan) {
    bounds.takeSamples(LineView(line));
  }
  return bounds.box();
}

STesk3DRangeD ju_getPointCloudROI(std::vector<STesk3DPoint>& points) {
  BoundingBox bounds;
  for (const STesk3DPoint& point : points) {
    if (!isMissing(point.z)) {
      bounds.take(point);
    }
  }
  return bounds.box();
}

SJU_pointCloudPara ju_getPointCloudPara(std::vector<std::vector<STesk3DPosition>>& scan) {
  assert(noLineIsLongerThanTheOneBefore(scan));
  BoundingBox bounds;
  MeanStep betweenLines;
  MeanStep inLine;
  const STesk3DPosition* lineBefore = nullptr;
  for (const std::vector<STesk3DPosition>& line : scan) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const STesk3DPoint& point = line[i].pt3D;
      if (isMissing(point.z)) {
        continue;
      }
      bounds.take(point);
      if (i > 0 && isMeasured(line[i - 1].pt3D.z)) {
        inLine.add(point.y - line[i - 1].pt3D.y);
      }
      if (lineBefore != nullptr && isMeasured(lineBefore[i].pt3D.z)) {
        betweenLines.add(point.x - lineBefore[i].pt3D.x);
      }
    }
    lineBefore = line.data();
  }
  const STesk3DRangeD box = bounds.box();
  return {box.xRange, box.yRange, box.zRange, betweenLines.value(), inLine.value()};
}
