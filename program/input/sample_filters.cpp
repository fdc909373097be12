#include "input/sample_filters.h"

#include <algorithm>

#include "base/extent.h"
#include "base/number.h"
#include "input/readers.h"

namespace program {
namespace {

constexpr double kLargestCoordinate = 1e9;

/// Takes the value of the samples for which `isMissing(point)` holds. Returns their count.
template <typename IsMissing>
long long blank(Scan& scan, IsMissing isMissing) {
  std::vector<long long> counts(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    for (STesk3DPosition& sample : scan[l]) {
      if (!std::isnan(sample.pt3D.z) && isMissing(sample.pt3D)) {
        sample.pt3D = noPoint();
        ++counts[l];
      }
    }
  });
  long long sum = 0;
  for (const long long count : counts) {
    sum += count;
  }
  return sum;
}

bool isInside(const STesk3DPoint& p, const std::array<double, 6>& roi) {
  return p.x >= roi[0] && p.x <= roi[1] && p.y >= roi[2] && p.y <= roi[3] && p.z >= roi[4] &&
         p.z <= roi[5];
}

/// Limits that only strays exceed: the middle 98 % of an axis, widened on both sides by three times
/// the largest such width of the three axes.
struct Limits {
  STesk3DPoint min;
  STesk3DPoint max;
};

Limits limitsOf(const Scan& scan) {
  constexpr double kWidths = 3.0;
  STeskRangeD ranges[3];
  double widest = 0.0;
  for (int axis = 0; axis < 3; ++axis) {
    std::vector<double> values = sampledValues(scan, axis);
    ranges[axis] = {quantile(values, 0.01), quantile(values, 0.99)};
    widest = std::max(widest, ranges[axis].max - ranges[axis].min);
  }
  const double margin = kWidths * widest;
  return {{ranges[0].min - margin, ranges[1].min - margin, ranges[2].min - margin},
          {ranges[0].max + margin, ranges[1].max + margin, ranges[2].max + margin}};
}

bool isOutside(const STesk3DPoint& p, const Limits& limits) {
  return p.x < limits.min.x || p.x > limits.max.x || p.y < limits.min.y || p.y > limits.max.y ||
         p.z < limits.min.z || p.z > limits.max.z;
}

}  // namespace

long long countHoles(const Scan& scan) {
  long long holes = 0;
  for (const Line& line : scan) {
    holes += std::count_if(line.begin(), line.end(),
                           [](const STesk3DPosition& sample) { return std::isnan(sample.pt3D.z); });
  }
  return holes;
}

void removeImpossible(Scan& scan) {
  blank(scan, [](const STesk3DPoint& p) {
    return !(std::abs(p.x) <= kLargestCoordinate && std::abs(p.y) <= kLargestCoordinate &&
             std::abs(p.z) <= kLargestCoordinate);
  });
}

long long removeOutside(Scan& scan, const std::array<double, 6>& region) {
  return blank(scan, [&](const STesk3DPoint& p) { return !isInside(p, region); });
}

void removeStrays(LoadedScan& loaded, Messages& messages) {
  const Limits limits = limitsOf(loaded.scan);
  loaded.strays = blank(loaded.scan, [&](const STesk3DPoint& p) { return isOutside(p, limits); });
  if (loaded.strays > 0) {
    messages.warn("strays", "took " + counted(loaded.strays, "sample") +
                                " far outside of the scan for missing");
  }
}

/// Turns heights into distances from just above the highest sample.
void turnIntoDistances(LoadedScan& loaded) {
  double highest = -kLargestCoordinate;
  double lowest = kLargestCoordinate;
  for (const Line& line : loaded.scan) {
    for (const STesk3DPosition& sample : line) {
      if (!std::isnan(sample.pt3D.z)) {
        highest = std::max(highest, sample.pt3D.z);
        lowest = std::min(lowest, sample.pt3D.z);
      }
    }
  }
  constexpr double kMarginOfSpan = 0.01;
  loaded.heightOrigin = highest + std::max(1.0, kMarginOfSpan * (highest - lowest));
  changeMeasured(loaded.scan, [&](STesk3DPoint& p) { p.z = loaded.heightOrigin - p.z; });
}

/// What has no value, or none that the library takes for one, becomes missing.
void markMissing(LoadedScan& loaded, Messages& messages) {
  constexpr double kLeastDistance = 0.0001;
  // Scanners write 0 for no value, beside an x and a y that they know.
  loaded.holes += blank(loaded.scan, [](const STesk3DPoint& p) { return p.z == 0.0; });
  loaded.notPositive =
      blank(loaded.scan, [](const STesk3DPoint& p) { return !(p.z > kLeastDistance); });
  for (Line& line : loaded.scan) {
    for (STesk3DPosition& sample : line) {
      sample.pt3D.z = std::isnan(sample.pt3D.z) ? 0.0 : sample.pt3D.z;
    }
  }
  if (loaded.notPositive > 0) {
    messages.warn("not-positive",
                  "took " + counted(loaded.notPositive, "distance") +
                      " at or below zero for missing. If z is a height, use --z-is-height");
  }
}

}  // namespace program
