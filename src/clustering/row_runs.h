#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <opencv2/core/mat.hpp>
#include <vector>

/// The pixels of a binary image as runs of foreground, row by row.
namespace scanline::detail {

constexpr int kForeground = 1;

/// The runs of foreground in one row of an image, without the outer columns.
class RowRuns {
 public:
  explicit RowRuns(int cols)
      : inner_(cols - 2),
        changes_((static_cast<std::size_t>(inner_) + kWord) / kWord * kWord),
        edges_(changes_.size() + kWord + 2, kBeyond) {}

  /// Number of runs.
  [[nodiscard]] int count() const {
    return count_;
  }

  /// The first column of each run and the one after its last, in turn; then `kBeyond` twice.
  [[nodiscard]] const int* edges() const {
    return edges_.data();
  }

  void find(const int* row) {
    markChanges(row, inner_, changes_.data());
    int found = 0;
    for (std::size_t word = 0; word < changes_.size(); word += kWord) {
      if (anyChange(word)) {
        for (std::size_t i = word; i < word + kWord; ++i) {
          edges_[found] = static_cast<int>(i) + 1;
          found += changes_[i];
        }
      }
    }
    edges_[found] = kBeyond;
    edges_[found + 1] = kBeyond;
    count_ = found / 2;
  }

 private:
  static constexpr std::size_t kWord = sizeof(std::uint64_t);
  static constexpr int kBeyond = INT_MAX;

  /// Without branches in the loop, so that it compiles to vector instructions.
  static void markChanges(const int* row, int inner, unsigned char* changes) {
    changes[0] = static_cast<unsigned char>(row[1] == kForeground);
    for (int i = 1; i < inner; ++i) {
      changes[i] =
          static_cast<unsigned char>((row[i] == kForeground) != (row[i + 1] == kForeground));
    }
    changes[inner] = static_cast<unsigned char>(row[inner] == kForeground);
  }

  [[nodiscard]] bool anyChange(std::size_t word) const {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &changes_[word], kWord);
    return bits != 0;
  }

  int inner_;
  int count_ = 0;
  std::vector<unsigned char> changes_;  // from column 1 on; 1 where a run begins or has just ended
  std::vector<int> edges_;
};

/// The type of an image with the channels of `image` as integers.
inline int labelType(const cv::Mat& image) {
  return CV_MAKETYPE(CV_32S, image.channels());
}

/// Rows of an image as integers, converted a few at a time. So no image of labels is needed, nor is
/// that of the caller written, before all memory has been allocated.
class IntegerRows {
 public:
  explicit IntegerRows(const cv::Mat& image)
      : image_(image), pixels_(kBand * static_cast<std::size_t>(image.cols) * image.channels()) {}

  /// Row `r`. Rows must be requested one after the other, from 1 on.
  const int* next(int r) {
    const int inBand = (r - 1) % kBand;
    const int count = std::min(kBand, image_.rows - r);
    if (inBand == 0) {
      cv::Mat band(count, image_.cols, labelType(image_), pixels_.data());
      image_.rowRange(r, r + count).convertTo(band, CV_32S);
    }
    return pixels_.data() + pixels_.size() / kBand * inBand;
  }

 private:
  static constexpr int kBand = 32;

  const cv::Mat& image_;
  std::vector<int> pixels_;
};

}  // namespace scanline::detail
