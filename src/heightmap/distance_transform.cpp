#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "heightmap.h"

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
  ChamferPass(cv::Mat& image, const StepCosts& costs)
      : rows_(image.rows),
        cols_(image.cols),
        stride_(static_cast<std::ptrdiff_t>(image.step1()) * kDirection),
        origin_(kDirection > 0 ? image.ptr<float>(0) : image.ptr<float>(rows_ - 1) + cols_ - 1),
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
  static constexpr int kRows = 8;
  static constexpr int kChunk = 32;
  using Chunk = std::array<float, kChunk>;

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

  /// Pixel of the lowest address of a chunk.
  [[nodiscard]] float* lowest(int row, int col, int count) const {
    float* pixel = origin_ + row * stride_;
    return kDirection > 0 ? pixel + col : pixel - col - (count - 1);
  }

  static float* lowest(Chunk& chunk, int count) {
    return kDirection > 0 ? chunk.data() : chunk.data() + kChunk - count;
  }

  [[nodiscard]] int countFrom(int col) const {
    return std::min(kChunk, cols_ - col);
  }

  void takeFromOtherRows(int row, int col, int i) {
    const int count = countFrom(col);
    const float* const pixel = lowest(row, col, count);
    float* const result = lowest(work_[i], count);
    before_[i] = *lowest(row, col - 1, 1);
    if (count == kChunk) {
      takeSteps(pixel, result, kChunk);  // a known length unrolls
    } else {
      takeSteps(pixel, result, count);
    }
  }

  void takeSteps(const float* pixel, float* __restrict result, int count) const {
    const float* const rowBefore = pixel - stride_;
    const float* const rowAfter = pixel + stride_;
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
    float* const pixel = lowest(row, col, count);
    if (count == kChunk) {
      std::copy_n(result, kChunk, pixel);  // a few moves; the other is a call
    } else {
      std::copy_n(result, count, pixel);
    }
  }

  int rows_;
  int cols_;
  std::ptrdiff_t stride_;
  float* origin_;
  StepCosts costs_;
  std::array<Chunk, kRows> work_ = {};    // rows that are not under way work on leftovers
  std::array<float, kRows> before_ = {};  // the pixel before each chunk
};

void zeroBorder(cv::Mat& image) {
  if (image.empty()) {
    return;
  }
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

void qo_distanceTrans(cv::Mat src, cv::Mat& dst, int distType) {
  src = src.clone();  // the caller's pixels stay as they are
  if (src.rows >= 3 && src.cols >= 2) {
    const StepCosts costs = stepCosts(distType);
    ChamferPass<1>(src, costs).run();
    ChamferPass<-1>(src, costs).run();
  }
  zeroBorder(src);
  dst = src;
}
