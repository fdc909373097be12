#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include <scanline/heightmap.h>
#include "records/new_image.h"

namespace {

struct StepCosts {
  float axial;
  float diagonal;
};

StepCosts stepCosts(int distType) {
  switch (distType) {
    case 0:
      return {1.0F, std::sqrt(2.0F)};
    case 1:
      return {1.0F, 2.0F};
    default:
      return {1.0F, 1.0F};
  }
}

/// A candidate must be smaller to replace: not-a-numbers neither spread nor vanish.
inline float smaller(float distance, float candidate) {
  return candidate < distance ? candidate : distance;
}

/**
 * One pass of the chamfer scan, told for the forward pass: in the backward pass, its mirror image
 * in both axes, rows and columns count from the last pixel.
 *
 * A pixel takes steps from three pixels of the rows beside its own and from the pixel before it.
 * The former are taken a chunk of a row at a time. The latter are a chain along the row, in which
 * each pixel waits for the one before it; therefore `kRows` rows are under way at once, each a
 * chunk behind the row before it, and their chains run side by side. A row then finds the row
 * before it finished, and the one after it untouched, wherever it looks.
 */
template <int kDirection>
class ChamferPass {
 public:
  /// `from` may be `to`. If it is not, `to` must hold its first column and both outer rows.
  ChamferPass(const cv::Mat& from, cv::Mat& to, const StepCosts& costs)
      : rows_(from.rows),
        cols_(from.cols),
        from_(plane(from.ptr<float>(), from)),
        to_(plane(to.ptr<float>(), to)),
        costs_(costs) {}

  void run() {
    const int chunks = (cols_ - 1 + kChunk - 1) / kChunk;
    for (int row = 1; row < rows_ - 1; row += kRows) {
      const int rowsHere = std::min(kRows, rows_ - 1 - row);
      for (int step = 0; step < chunks + rowsHere - 1; ++step) {
        advance(row, std::max(0, step - chunks + 1), std::min(rowsHere, step + 1), step);
      }
    }
  }

 private:
  static constexpr int kRows = 6;
  static constexpr int kChunk = 32;
  using Chunk = std::array<float, kChunk>;

  /// Where the pixels of an image are, seen in the direction of the pass.
  template <typename Value>
  struct Plane {
    Value* origin;
    std::ptrdiff_t stride;

    /// Pixel of the lowest address of a chunk.
    [[nodiscard]] Value* lowest(int row, int col, int count) const {
      Value* const pixel = origin + row * stride;
      return kDirection > 0 ? pixel + col : pixel - col - (count - 1);
    }
  };

  template <typename Value>
  static Plane<Value> plane(Value* pixels, const cv::Mat& image) {
    const auto stride = static_cast<std::ptrdiff_t>(image.step1());
    if (kDirection > 0) {
      return {pixels, stride};
    }
    return {pixels + (image.rows - 1) * stride + image.cols - 1, -stride};
  }

  /// Moves the rows `first` to `end` of a group on by a chunk each.
  void advance(int row, int first, int end, int step) {
    for (int i = first; i < end; ++i) {
      takeFromOtherRows(row + i, 1 + (step - i) * kChunk, i);
    }
    takeAlongRows();
    for (int i = first; i < end; ++i) {
      store(row + i, 1 + (step - i) * kChunk, i);
    }
  }

  static float* lowest(Chunk& chunk, int count) {
    return kDirection > 0 ? chunk.data() : chunk.data() + kChunk - count;
  }

  [[nodiscard]] int countFrom(int col) const {
    return std::min(kChunk, cols_ - col);
  }

  void takeFromOtherRows(int row, int col, int i) {
    const int count = countFrom(col);
    const float* const pixel = from_.lowest(row, col, count);
    const float* const rowBefore = to_.lowest(row - 1, col, count);
    float* const result = lowest(work_[i], count);
    before_[i] = *to_.lowest(row, col - 1, 1);
    if (count == kChunk) {
      takeSteps(pixel, rowBefore, result, kChunk);  // a known length unrolls
    } else {
      takeSteps(pixel, rowBefore, result, count);
    }
  }

  void takeSteps(const float* pixel,
                 const float* rowBefore,
                 float* __restrict result,
                 int count) const {
    const float* const rowAfter = pixel + from_.stride;
    for (int k = 0; k < count; ++k) {
      float distance = pixel[k];
      distance = smaller(distance, rowBefore[k - kDirection] + costs_.diagonal);
      distance = smaller(distance, rowBefore[k] + costs_.axial);
      result[k] = smaller(distance, rowAfter[k - kDirection] + costs_.diagonal);
    }
  }

  void takeAlongRows() {
    std::array<float, kRows> before = before_;
    for (int k = 0; k < kChunk; ++k) {
      const int at = kDirection > 0 ? k : kChunk - 1 - k;
      for (int i = 0; i < kRows; ++i) {
        before[i] = smaller(work_[i][at], before[i] + costs_.axial);
        work_[i][at] = before[i];
      }
    }
  }

  void store(int row, int col, int i) {
    const int count = countFrom(col);
    const float* const result = lowest(work_[i], count);
    float* const pixel = to_.lowest(row, col, count);
    if (count == kChunk) {
      std::copy_n(result, kChunk, pixel);  // a few moves; the other is a call
    } else {
      std::copy_n(result, count, pixel);
    }
  }

  int rows_;
  int cols_;
  Plane<const float> from_;
  Plane<float> to_;
  StepCosts costs_;
  std::array<Chunk, kRows> work_ = {};    // rows that are not under way work on leftovers
  std::array<float, kRows> before_ = {};  // the pixel before each chunk
};

/// Copies what the first pass does not write: the outer rows and the first column.
void copyOuterPixels(const cv::Mat& from, cv::Mat& to) {
  for (const int r : {0, from.rows - 1}) {
    std::copy_n(from.ptr<float>(r), from.cols, to.ptr<float>(r));
  }
  for (int r = 1; r < from.rows - 1; ++r) {
    *to.ptr<float>(r) = *from.ptr<float>(r);
  }
}

void zeroBorder(cv::Mat& image) {
  const int lastCol = image.cols - 1;
  for (float* row : {image.ptr<float>(0), image.ptr<float>(image.rows - 1)}) {
    std::fill(row, row + image.cols, 0.0F);
  }
  for (int r = 0; r < image.rows; ++r) {
    auto* const row = image.ptr<float>(r);
    row[0] = 0.0F;
    row[lastCol] = 0.0F;
  }
}

}  // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the public signature takes a copy
void qo_distanceTrans(cv::Mat src, cv::Mat& dst, int distType) {
  if (src.empty()) {
    dst = cv::Mat();
    return;
  }
  cv::Mat distances = scanline::detail::newImage(src.rows, src.cols, src.type());
  if (src.rows >= 3 && src.cols >= 2) {
    copyOuterPixels(src, distances);  // the first pass copies the others
    const StepCosts costs = stepCosts(distType);
    ChamferPass<1>(src, distances, costs).run();
    ChamferPass<-1>(distances, distances, costs).run();
  }
  zeroBorder(distances);  // all pixels of a smaller image
  dst = distances;
}
