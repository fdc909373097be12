#pragma once

/// The random numbers and sizes from which the inputs of a call are built.

#include <algorithm>
#include <cmath>
#include <opencv2/core.hpp>
#include <utility>

#include "archive.h"
#include "builders.h"

namespace calls {

/// The random numbers and sizes that the arguments of one call share.
struct Scene {
  Scene(unsigned seed, int aSize)
      : random(seed),
        size(aSize),
        columns(size < 4 ? size : 3 + static_cast<int>(std::sqrt(size))),
        rows(size < 4 ? size : 3 + static_cast<int>(2.0 * std::sqrt(size))),
        line(random.whole(2, 5)) {}

  /// One of the choices.
  template <typename... T>
  auto operator()(T... choices) {
    return random.pick({choices...});
  }
  double grid(double low, double high) {
    return random.grid(low, high);
  }
  int whole(int low, int high) {
    return random.whole(low, high);
  }
  /// A point on the current line, with few different y and z.
  STesk3DPoint onLine() {
    return {3.5 + line + (*this)(0.0, 0.0, 0.0, 0.5), random.grid(10.0, 16.0, 0.5),
            random.grid(30.0, 32.0, 0.5)};
  }

  build::Random random;
  int size;     ///< Samples of a line, points of a list.
  int columns;  ///< Lines of a scan, columns of an image.
  int rows;     ///< Samples of each line of a scan, rows of an image.
  int line;     ///< Index of the line that features are on.
};

/// An image with values from `value()`, as a view with a margin of known bytes.
template <typename Value>
Image makeImage(int rows, int columns, int type, const Value& value) {
  Image image;
  image.whole.create(rows + 2, columns + 3, type);
  std::fill_n(image.whole.data, image.whole.total() * image.whole.elemSize(), Image::kMargin);
  image.view = image.whole(cv::Rect(1, 1, columns, rows));
  cv::Mat values(rows, columns * image.view.channels(), CV_64F);
  std::generate(values.begin<double>(), values.end<double>(), value);
  values.reshape(image.view.channels()).convertTo(image.view, type);
  return image;
}

inline PointerScan makePointerScan(build::Scan scan) {
  PointerScan result;
  result.scan = std::move(scan);
  result.lines = build::pointerForm(result.scan);
  return result;
}

}  // namespace calls
