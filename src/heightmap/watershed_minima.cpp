#include "heightmap/watershed_minima.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>

namespace scanline::detail {

namespace {

constexpr int kBefore = 7;  // what a window holds before its pixel, in rows and in columns
constexpr int kBehind = 6;  // and behind it

// Taking minima with oneself this far on, step by step, gives minima of 2, 4, 8 and 14 values.
constexpr std::array<int, 4> kFoldSteps = {1, 2, 4, 6};
static_assert(1 + 1 + 2 + 4 + 6 == kBefore + 1 + kBehind);

/// The minimum over each pixel's window, row by row from the top.
class WindowMinimum {
 public:
  WindowMinimum(const PixelRows& gray, int height, int width)
      : gray_(gray), height_(height), width_(width), line_(width + kBefore + kBehind) {
    for (std::size_t k = 0; k < kFoldSteps.size(); ++k) {
      delayed_[k].assign(kFoldSteps[k], std::vector<int>(width, INT_MAX));
    }
    for (int r = 0; r < kBehind; ++r) {
      advance();
    }
  }

  /// The minima of the next row of pixels; valid until the next call.
  const int* nextRow() {
    advance();
    return line_.data();
  }

 private:
  /// Leaves in `line_` the minima of the windows whose last row is the next one.
  void advance() {
    foldColumns();
    for (std::size_t k = 0; k < kFoldSteps.size(); ++k) {
      foldRows(delayed_[k][row_ % kFoldSteps[k]]);
    }
    ++row_;
  }

  void foldColumns() {
    std::fill(line_.begin(), line_.end(), INT_MAX);
    if (row_ >= height_) {
      return;
    }
    std::copy_n(gray_[row_].data(), width_, line_.begin() + kBefore);
    std::size_t count = line_.size();
    for (const int step : kFoldSteps) {
      count -= step;
      for (std::size_t i = 0; i < count; ++i) {
        line_[i] = std::min(line_[i], line_[i + step]);
      }
    }
  }

  /// `earlier` holds a row of some steps ago, and makes room for the present one.
  void foldRows(std::vector<int>& earlier) {
    for (int c = 0; c < width_; ++c) {
      const int present = line_[c];
      line_[c] = std::min(present, earlier[c]);
      earlier[c] = present;
    }
  }

  const PixelRows& gray_;
  int height_;
  int width_;
  int row_ = 0;
  std::vector<int> line_;
  std::array<PixelRows, kFoldSteps.size()> delayed_;  // the last rows before each step
};

/// Marks the pixel with the next label, unless it has a neighbour with a basin's label.
void markMinimum(int* pixel, std::ptrdiff_t stride, int& label) {
  const std::array<std::ptrdiff_t, 8> neighbours = {-stride - 1, -1, stride - 1, -stride, stride,
                                                    -stride + 1, 1,  stride + 1};
  for (const std::ptrdiff_t step : neighbours) {
    if (pixel[step] > 1) {
      pixel[step] = *pixel;
      return;
    }
  }
  *pixel = ++label;
}

}  // namespace

void ju_findWatershedMinima(const PixelRows& gray, int height, int width, PaddedPlane& labels) {
  if (height < 3 || width < 3) {
    return;
  }
  WindowMinimum window(gray, height, width);
  window.nextRow();  // the border row marks nothing
  int label = 1;
  for (int r = 1; r < height - 1; ++r) {
    const int* lowest = window.nextRow();
    const int* values = gray[r].data();
    int* pixels = labels.row(r);
    for (int c = 1; c < width - 1; ++c) {
      if (values[c] <= lowest[c] && pixels[c] != 1) {
        markMinimum(pixels + c, labels.stride(), label);
      }
    }
  }
}

}  // namespace scanline::detail
