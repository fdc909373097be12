// Computes for each pixel the cost of the cheapest way of steps to an empty pixel.
#include <algorithm>
#include <array>
#include <cassert>
#include <cmath>
#include <cstddef>

#include <scanline/heightmap.h>
#include "heightmap/chamfer_kernel.h"
#include "records/new_image.h"

namespace {

using scanline::detail::ChamferChunk;
using scanline::detail::ChamferWeights;
using scanline::detail::kChamferChunk;
using scanline::detail::kChamferRows;

ChamferWeights chamferWeights(int distType) {
  switch (distType) {
    case 0:
      return {1.0F, std::sqrt(2.0F)};
    case 1:
      return {1.0F, 2.0F};
    default:
      return {1.0F, 1.0F};
  }
}

/**
 * One pass of the chamfer scan. The comments describe the forward pass. The backward pass is its
 * mirror image in both axes, with rows and columns counted from the last pixel.
 *
 * A pixel depends on three pixels in the adjacent rows, and on the one before it. So groups of rows
 * are worked as a skewed wavefront: each row of a group lags the row above it by one chunk. The
 * numbers are the steps in which the chunks of a group are relaxed:
 *
 *             chunk 0   1   2   3
 *     row 1         0   1   2   3
 *     row 2         1   2   3   4
 *     row 3         2   3   4   5
 *
 * The pixels that a chunk reads are finished in the row above and untouched in the row below, as in
 * a scan row by row. The chunks of a step do not depend on each other.
 */
template <int kDirection>
class ChamferPass {
 public:
  /// `from` may be `to`. If it is not, `to` must hold its first column and both outer rows.
  ChamferPass(const cv::Mat& from, cv::Mat& to, const ChamferWeights& weights)
      : rows_(from.rows),
        cols_(from.cols),
        from_(plane(from.ptr<float>(), from)),
        to_(plane(to.ptr<float>(), to)),
        weights_(weights) {}

  void run() {
    const int chunks = (cols_ - 1 + kChamferChunk - 1) / kChamferChunk;
    for (int row = 1; row < rows_ - 1; row += kChamferRows) {
      const int rowsHere = std::min(kChamferRows, rows_ - 1 - row);
      for (int step = 0; step < chunks + rowsHere - 1; ++step) {
        relaxStep(row, std::max(0, step - chunks + 1), std::min(rowsHere, step + 1), step);
      }
    }
  }

 private:
  /// The pixels of an image, addressed in the direction of the pass.
  template <typename Value>
  struct Plane {
    Value* origin;
    std::ptrdiff_t stride;

    /// The pixel of a chunk with the lowest address.
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

  /// Relaxes one chunk of each of the rows `first` to `end` of a group.
  void relaxStep(int row, int first, int end, int step) {
    for (int i = first; i < end; ++i) {
      load(row + i, 1 + (step - i) * kChamferChunk, i);
    }
    scanline::detail::relaxAlongRow<kDirection>(weights_, before_, work_);
    for (int i = first; i < end; ++i) {
      store(row + i, 1 + (step - i) * kChamferChunk, i);
    }
  }

  static float* lowest(ChamferChunk& chunk, int count) {
    return kDirection > 0 ? chunk.data() : chunk.data() + kChamferChunk - count;
  }

  [[nodiscard]] int countFrom(int col) const {
    return std::min(kChamferChunk, cols_ - col);
  }

  /// Loads a chunk, relaxed across the rows.
  void load(int row, int col, int i) {
    const int count = countFrom(col);
    const float* const pixels = from_.lowest(row, col, count);
    const float* const rowBefore = to_.lowest(row - 1, col, count);
    const float* const rowAfter = pixels + from_.stride;
    float* const result = lowest(work_[i], count);
    before_[i] = *to_.lowest(row, col - 1, 1);
    using scanline::detail::relaxAcrossRows;
    if (count == kChamferChunk) {  // a known length unrolls
      relaxAcrossRows<kDirection>(pixels, rowBefore, rowAfter, kChamferChunk, weights_, result);
    } else {
      relaxAcrossRows<kDirection>(pixels, rowBefore, rowAfter, count, weights_, result);
    }
  }

  void store(int row, int col, int i) {
    const int count = countFrom(col);
    const float* const result = lowest(work_[i], count);
    float* const pixels = to_.lowest(row, col, count);
    if (count == kChamferChunk) {
      std::copy_n(result, kChamferChunk, pixels);  // a known length needs no call
    } else {
      std::copy_n(result, count, pixels);
    }
  }

  int rows_;
  int cols_;
  Plane<const float> from_;
  Plane<float> to_;
  ChamferWeights weights_;
  std::array<ChamferChunk, kChamferRows> work_ = {};  // rows that are not used hold old values
  std::array<float, kChamferRows> before_ = {};       // the pixel before each chunk
};

/// Copies the pixels that the first pass does not write: the outer rows and the first column.
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
  assert(src.empty() || src.type() == CV_32F);
  if (src.empty()) {
    dst = cv::Mat();
    return;
  }
  cv::Mat distances = scanline::detail::newImage(src.rows, src.cols, src.type());
  if (src.rows >= 3 && src.cols >= 2) {
    copyOuterPixels(src, distances);  // the first pass copies the others
    const ChamferWeights weights = chamferWeights(distType);
    ChamferPass<1>(src, distances, weights).run();
    ChamferPass<-1>(distances, distances, weights).run();
  }
  zeroBorder(distances);  // all pixels of a smaller image
  dst = distances;
}
