#include "argument_images.h"

#include <algorithm>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "documentation.h"

namespace binding {

cv::Mat binaryImage(const Source& source, py::object& owner) {
  owner = py::reinterpret_borrow<py::object>(source.value);
  int type = CV_8U;
  if (py::isinstance<py::array>(owner)) {
    const auto dtype = owner.cast<py::array>().dtype();
    if (dtype.kind() == 'b') {
      owner = owner.attr("view")("uint8");
    }
    for (const int other : {CV_32S, CV_32F, CV_64F}) {
      type = dtype.equal(py::dtype(depthName(other))) ? other : type;
    }
  }
  cv::Mat image = imageFrom(owner, source.name, type, false);
  if (!image.empty() && cv::countNonZero((image != 0) & (image != 1)) > 0) {
    failValue(source.name, "zeros and ones", "other values");
  }
  return image;
}

namespace {

/// The Python object of a watershed image: two arrays of the caller.
struct WatershedImage {
  py::object gray;
  py::object markers;
};

std::vector<std::vector<int>> planeOf(const cv::Mat& image) {
  std::vector<std::vector<int>> rows(static_cast<std::size_t>(image.rows));
  for (int y = 0; y < image.rows; ++y) {
    rows[static_cast<std::size_t>(y)].assign(image.ptr<int>(y), image.ptr<int>(y) + image.cols);
  }
  return rows;
}

}  // namespace

Argument<InOut, SJU_waterShedImage&>::Argument(const Source& source) {
  py::detail::make_caster<WatershedImage> caster;
  if (!caster.load(source.value, false)) {
    failKind(source.name, "an object of SJU_waterShedImage", source.value);
  }
  const auto& image = py::detail::cast_op<WatershedImage&>(caster);
  object = image.markers;
  gray = imageFrom(image.gray, Name{"gray", &source.name}, CV_32S, false);
  markers = imageFrom(image.markers, Name{"markers", &source.name}, CV_32S, true);
  if (gray.size() != markers.size()) {
    failValue(Name{"markers", &source.name}, "an array of the shape of gray",
              kindOf(image.markers));
  }
  value = {gray.cols, gray.rows, planeOf(gray), planeOf(markers)};
}

void Argument<InOut, SJU_waterShedImage&>::finish() {
  for (int y = 0; y < markers.rows; ++y) {
    const std::vector<int>& row = value.markers[static_cast<std::size_t>(y)];
    std::copy(row.begin(), row.end(), markers.ptr<int>(y));
  }
}

void defineWatershedImage(py::module_& module) {
  py::class_<WatershedImage> type(module, "SJU_waterShedImage",
                                  documentation("SJU_waterShedImage"));
  type.def(py::init([](const py::object& gray, const py::object& markers) {
             return WatershedImage{gray, markers};
           }),
           py::kw_only(), py::arg("gray"), py::arg("markers"));
  type.def_readwrite("gray", &WatershedImage::gray, documentation("SJU_waterShedImage", "gray"));
  type.def_readwrite("markers", &WatershedImage::markers,
                     documentation("SJU_waterShedImage", "markers"));
  type.def("__repr__", [](const WatershedImage& image) {
    return "SJU_waterShedImage(gray=" + std::string(py::repr(image.gray)) +
           ", markers=" + std::string(py::repr(image.markers)) + ")";
  });
}

}  // namespace binding
