#include "roads/split_middles.h"

#include <algorithm>
#include <numeric>

#include <scanline/heightmap.h>

namespace program {
namespace {

constexpr float kAnyDistance = 1e6F;

/// The library's distances are up to 41 % too large towards two of the four diagonals, and up to 8
/// % towards the others. Those of the mirrored image have it the other way round, so that the
/// smaller of both has no preferred direction: a bent strip would seem to have waists.
cv::Mat distancesIn(const cv::Mat& covered) {
  constexpr int kEuclidean = 0;
  constexpr int kAroundY = 1;
  cv::Mat distances;
  qo_distanceTrans(covered, distances, kEuclidean);
  cv::Mat mirrored;
  cv::flip(covered, mirrored, kAroundY);
  qo_distanceTrans(mirrored, mirrored, kEuclidean);
  cv::flip(mirrored, mirrored, kAroundY);
  return cv::min(distances, mirrored);
}

/// The covered pixels as indices, the deepest first.
std::vector<int> deepestFirst(const cv::Mat& distances) {
  std::vector<int> pixels;
  const auto* values = distances.ptr<float>();
  for (int i = 0; i < static_cast<int>(distances.total()); ++i) {
    if (values[i] > 0.0F) {
      pixels.push_back(i);
    }
  }
  std::sort(pixels.begin(), pixels.end(), [values](int a, int b) {
    return values[a] > values[b] || (values[a] == values[b] && a < b);
  });
  return pixels;
}

/**
 * Joins pixels from the deepest outwards. The first pixel of each joined area is its peak, and the
 * distance at which two areas meet is the waist between their peaks.
 */
class Areas {
 public:
  explicit Areas(const cv::Mat& distances)
      : distances_(distances.ptr<float>()), parent_(distances.total(), kNone) {}

  void start(int pixel) {
    parent_[static_cast<std::size_t>(pixel)] = pixel;
  }
  [[nodiscard]] bool isStarted(int pixel) const {
    return parent_[static_cast<std::size_t>(pixel)] != kNone;
  }
  /// The peak of the area that a pixel belongs to.
  int peakOf(int pixel) {
    int* at = &parent_[static_cast<std::size_t>(pixel)];
    while (*at != parent_[static_cast<std::size_t>(*at)]) {
      *at = parent_[static_cast<std::size_t>(*at)];
      at = &parent_[static_cast<std::size_t>(*at)];
    }
    return *at;
  }
  /// Joins two areas and returns the lower of their peaks.
  int join(int a, int b) {
    const bool aIsLower =
        distances_[a] < distances_[b] || (distances_[a] == distances_[b] && a > b);
    const int lower = aIsLower ? a : b;
    parent_[static_cast<std::size_t>(lower)] = aIsLower ? b : a;
    return lower;
  }

 private:
  static constexpr int kNone = -1;
  const float* distances_;
  std::vector<int> parent_;
};

}  // namespace

cv::Mat distancesInside(const cv::Mat& mask) {
  return distancesIn(mask);
}

cv::Mat distancesOutside(const cv::Mat& mask) {
  cv::Mat outside(mask.size(), CV_32F, cv::Scalar(0.0));
  outside.setTo(kAnyDistance, mask <= 0.0F);
  return distancesIn(outside);
}

std::vector<SQO_2DValueI> findMiddles(const cv::Mat& distances, double lowest, double waist) {
  const auto* values = distances.ptr<float>();
  const int cols = distances.cols;
  // Neighbours exist: the outer pixels of a map of distances are 0.
  const int neighbours[] = {-cols - 1, -cols, -cols + 1, -1, 1, cols - 1, cols, cols + 1};
  std::vector<bool> isMiddle(distances.total());
  Areas areas(distances);
  const std::vector<int> pixels = deepestFirst(distances);
  for (const int pixel : pixels) {
    areas.start(pixel);
    isMiddle[static_cast<std::size_t>(pixel)] = true;
    for (const int step : neighbours) {
      if (!areas.isStarted(pixel + step)) {
        continue;
      }
      const int a = areas.peakOf(pixel);
      const int b = areas.peakOf(pixel + step);
      if (a != b) {
        const int lower = areas.join(a, b);
        const bool isOneObject =
            static_cast<double>(values[pixel]) > waist * static_cast<double>(values[lower]);
        isMiddle[static_cast<std::size_t>(lower)] = !isOneObject;
      }
    }
  }
  std::vector<SQO_2DValueI> middles;
  for (const int pixel : pixels) {
    const auto depth = static_cast<double>(values[pixel]);
    if (isMiddle[static_cast<std::size_t>(pixel)] && depth >= lowest) {
      middles.push_back({pixel % cols, pixel / cols, 0, depth, 0});
    }
  }
  return middles;
}

}  // namespace program
