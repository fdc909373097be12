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

constexpr double kUnknownStep = -1.0;

/// Folds points into a box. The axes take their first value together and are never empty again, so
/// that one test serves all three and leaves the rest free of branches.
class BoxFold {
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
  static void widen(double& low, double& high, double value) {
    if (low > value) {
      low = value;
    }
    if (value > high) {
      high = value;
    }
  }

  STesk3DPoint low_ = {kEmptyRange.min, kEmptyRange.min, kEmptyRange.min};
  STesk3DPoint high_ = {kEmptyRange.max, kEmptyRange.max, kEmptyRange.max};
};

/// The running mean of the distances between neighbours in one direction.
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

}  // namespace

STesk3DRangeD qo_getScanDataROI(STesk3DLaserLine* lines, int lineNum) {
  BoxFold fold;
  for (int i = 0; i < lineNum; ++i) {
    fold.takeSamples(LineView(lines[i]));
  }
  return fold.box();
}

STesk3DRangeD qo_getScanDataROI_vector(std::vector<std::vector<STesk3DPosition>>& scan) {
  BoxFold fold;
  for (const std::vector<STesk3DPosition>& line : scan) {
    fold.takeSamples(LineView(line));
  }
  return fold.box();
}

STesk3DRangeD ju_getPointCloudROI(std::vector<STesk3DPoint>& points) {
  BoxFold fold;
  for (const STesk3DPoint& point : points) {
    if (!isMissing(point.z)) {
      fold.take(point);
    }
  }
  return fold.box();
}

SJU_pointCloudPara ju_getPointCloudPara(std::vector<std::vector<STesk3DPosition>>& scan) {
  BoxFold fold;
  MeanStep betweenLines;
  MeanStep inLine;
  const STesk3DPosition* lineBefore = nullptr;
  for (const std::vector<STesk3DPosition>& line : scan) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      const STesk3DPoint& point = line[i].pt3D;
      if (isMissing(point.z)) {
        continue;
      }
      fold.take(point);
      if (i > 0 && isMeasured(line[i - 1].pt3D.z)) {
        inLine.add(point.y - line[i - 1].pt3D.y);
      }
      if (lineBefore != nullptr && isMeasured(lineBefore[i].pt3D.z)) {
        betweenLines.add(point.x - lineBefore[i].pt3D.x);
      }
    }
    lineBefore = line.data();
  }
  const STesk3DRangeD box = fold.box();
  return {box.xRange, box.yRange, box.zRange, betweenLines.value(), inLine.value()};
}
