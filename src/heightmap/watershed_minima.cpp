#include "heightmap/watershed_minima.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>

#include "heightmap/padded_plane.h"
#include "heightmap/row_kernels.h"

namespace scanline::detail {

namespace {

// The window around a pixel, in rows and in columns.
constexpr int kReachBack = 7;
constexpr int kReachAhead = 6;

// If the minimum of each value and the one this many places after it is taken, step by step, the
// results are the minima of 2, 4, 8 and 14 values.
constexpr std::array<int, 4> kFoldSteps = {1, 2, 4, 6};
static_assert(1 + 1 + 2 + 4 + 6 == kReachBack + 1 + kReachAhead);

/**
 * The minimum over the window of each pixel, row by row from the top: the minima of 14 values along
 * each row, combined in the same four steps with those of the rows above it.
 */
class SlidingMinimum {
 public:
  SlidingMinimum(const PixelRows& gray, int height, int width)
      : gray_(gray),
        height_(height),
        width_(width),
        line_(width + kReachBack + kReachAhead),
        result_(width) {
    for (std::size_t k = 0; k < kFoldSteps.size(); ++k) {
      // Rows outside the image hold the largest value, so they do not matter.
      recent_[k].assign(kFoldSteps[k] + 1, std::vector<int>(width, INT_MAX));
      folded_[k].resize(line_.size());
    }
    for (int r = 0; r < kReachAhead; ++r) {
      advance();
    }
  }

  /// The minima of the next row of pixels; valid until the next call.
  const int* nextRow() {
    advance();
    return result_.data();
  }

 private:
  /// Takes the next row of the image and combines it with the rows above it.
  void advance() {
    foldAlongRow(recentRow(0, 0));
    for (std::size_t k = 0; k < kFoldSteps.size(); ++k) {
      int* const out = k + 1 < kFoldSteps.size() ? recentRow(k + 1, 0) : result_.data();
      minimumOfRows(recentRow(k, 0), recentRow(k, kFoldSteps[k]), width_, out);
    }
    ++row_;
  }

  /// The minima of the windows along the next row.
  void foldAlongRow(int* out) {
    if (row_ >= height_) {
      std::fill_n(out, width_, INT_MAX);
      return;
    }
    std::fill_n(line_.begin(), kReachBack, INT_MAX);
    std::copy_n(gray_[row_].data(), width_, line_.begin() + kReachBack);
    std::fill_n(line_.end() - kReachAhead, kReachAhead, INT_MAX);
    const int* values = line_.data();
    std::size_t count = line_.size();
    for (std::size_t k = 0; k < kFoldSteps.size(); ++k) {
      count -= kFoldSteps[k];
      int* const folded = k + 1 < kFoldSteps.size() ? folded_[k].data() : out;
      minimumOfRows(values, values + kFoldSteps[k], count, folded);
      values = folded;
    }
  }

  /// The row of step k, `ago` rows ago.
  int* recentRow(std::size_t k, int ago) {
    const int slots = kFoldSteps[k] + 1;
    return recent_[k][(row_ + slots - ago) % slots].data();
  }

  const PixelRows& gray_;
  int height_;
  int width_;
  int row_ = 0;
  std::vector<int> line_;  // a row of the image, with the largest value on both sides
  std::vector<int> result_;
  std::array<std::vector<int>, kFoldSteps.size()> folded_;
  std::array<PixelRows, kFoldSteps.size()> recent_;  // by step, the last rows before it
};

/// Gives a pixel the next label. But if a neighbour has a label above 1, the first such neighbour
/// is overwritten with the marker of the pixel instead.
void markMinimum(PixelRows& markers, int row, int column, int& label) {
  int* const above = markers[row - 1].data() + column;
  int* const pixel = markers[row].data() + column;
  int* const below = markers[row + 1].data() + column;
  for (int* neighbour :
       {above - 1, pixel - 1, below - 1, above, below, above + 1, pixel + 1, below + 1}) {
    if (*neighbour > 1) {
      *neighbour = *pixel;
      return;
    }
  }
  *pixel = ++label;
}

}  // namespace

void markMinima(SJU_waterShedImage& image) {
  const int height = image.height;
  const int width = image.width;
  if (std::min(height, width) < 3) {
    return;
  }
  SlidingMinimum window(image.gray, height, width);
  window.nextRow();  // the border row marks nothing
  int label = 1;
  for (int r = 1; r < height - 1; ++r) {
    const int* lowest = window.nextRow();
    const int* values = image.gray[r].data();
    const int* markers = image.markers[r].data();
    for (int c = 1; c < width - 1; ++c) {
      if (values[c] <= lowest[c] && markers[c] != 1) {
        markMinimum(image.markers, r, c, label);
      }
    }
  }
}

}  // namespace scanline::detail
