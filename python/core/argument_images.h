#pragma once

/// Images as arguments and results.

#include <string>

#include "images.h"
#include "roles.h"

namespace binding {

inline std::string imageAnnotation(int type) {
  return std::string("NDArray[np.") + depthName(type) + "]";
}

template <int type, typename P>
struct Argument<Image<type>, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& source)
      : value(imageFrom(source.value, source.name, type, false)) {}
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return imageAnnotation(type);
  }
};

template <int type, typename P>
struct Argument<ChangedImage<type>, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& source)
      : value(imageFrom(source.value, source.name, type, true)) {}
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return imageAnnotation(type);
  }
};

template <typename P>
struct Argument<BinaryImage, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  py::object owner;
  cv::Mat value;
  explicit Argument(const Source& source);
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return "NDArray[Any]";
  }
};
/// Checks that an array is a binary image; `owner` keeps its memory.
cv::Mat binaryImage(const Source& source, py::object& owner);
template <typename P>
Argument<BinaryImage, P>::Argument(const Source& source) : value(binaryImage(source, owner)) {}

template <>
struct Argument<Out, cv::Mat&> : ResultBase {
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& /*source*/) {}
  cv::Mat& pass() {
    return value;
  }
  py::object result() {
    return arrayOf(value);
  }
  static std::string annotation() {
    return "NDArray[Any]";
  }
};

/// The image of a watershed: both planes are copied in, and the markers back.
template <>
struct Argument<InOut, SJU_waterShedImage&> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat gray;
  cv::Mat markers;
  py::object object;
  SJU_waterShedImage value;
  explicit Argument(const Source& source);
  SJU_waterShedImage& pass() {
    return value;
  }
  void finish();
  static std::string annotation() {
    return "SJU_waterShedImage";
  }
};

/// Defines the class of watershed images.
void defineWatershedImage(py::module_& module);

}  // namespace binding
