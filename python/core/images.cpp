#include "images.h"

#include <cstdint>
#include <limits>
#include <stdexcept>

namespace binding {

const char* depthName(int type) {
  switch (CV_MAT_DEPTH(type)) {
    case CV_8U:
      return "uint8";
    case CV_32S:
      return "int32";
    case CV_32F:
      return "float32";
    case CV_64F:
      return "float64";
    default:
      throw std::logic_error("no image of this library has this depth");
  }
}

cv::Mat imageFrom(py::handle value, const Name& name, int type, bool isWritten) {
  const int channels = CV_MAT_CN(type);
  const std::string expected = std::string("an array of ") + depthName(type) +
                               " with the shape (rows, columns" +
                               (channels > 1 ? ", " + std::to_string(channels) + ")" : ")");
  if (!py::isinstance<py::array>(value)) {
    failKind(name, expected, value);
  }
  const auto array = py::reinterpret_borrow<py::array>(value);
  const int axes = channels > 1 ? 3 : 2;
  if (!array.dtype().equal(py::dtype(depthName(type))) || array.ndim() != axes ||
      (channels > 1 && array.shape(2) != channels)) {
    failValue(name, expected, kindOf(value));
  }
  constexpr py::ssize_t kMost = std::numeric_limits<int>::max();
  if (array.shape(0) > kMost || array.shape(1) > kMost) {
    failValue(name, "at most 2147483647 rows and columns", kindOf(value));
  }
  if (isWritten && !array.writeable()) {
    failValue(name, "an array that can be written", "a read-only one");
  }
  const int rows = static_cast<int>(array.shape(0));
  const int columns = static_cast<int>(array.shape(1));
  if (array.size() == 0) {
    return {rows, columns, type};
  }
  const auto item = static_cast<py::ssize_t>(array.itemsize());
  const auto pixel = item * channels;
  const py::ssize_t step = rows > 1 ? array.strides(0) : pixel * columns;
  if ((columns > 1 && array.strides(1) != pixel) || (channels > 1 && array.strides(2) != item) ||
      step < pixel * columns || step % item != 0 ||
      reinterpret_cast<std::uintptr_t>(array.data()) % static_cast<std::uintptr_t>(item) != 0) {
    failValue(name, "aligned rows without gaps between pixels, from the top",
              "a view with other strides; copy it");
  }
  return {rows, columns, type, const_cast<void*>(array.data()), static_cast<std::size_t>(step)};
}

py::array arrayOf(const cv::Mat& image) {
  auto* const owned = new cv::Mat(image);
  const py::capsule base(owned, [](void* p) { delete static_cast<cv::Mat*>(p); });
  std::vector<py::ssize_t> shape = {image.rows, image.cols};
  const auto pixel = static_cast<py::ssize_t>(image.elemSize());
  std::vector<py::ssize_t> strides = {
      image.empty() ? pixel * image.cols : static_cast<py::ssize_t>(image.step[0]), pixel};
  if (image.channels() > 1) {
    shape.push_back(image.channels());
    strides.push_back(static_cast<py::ssize_t>(image.elemSize1()));
  }
  return {py::dtype(depthName(image.type())), shape, strides, image.data, base};
}

}  // namespace binding
