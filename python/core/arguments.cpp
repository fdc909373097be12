#include "arguments.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <opencv2/core.hpp>
#include <utility>

namespace binding {

namespace {

/// The row of a block that starts at a sample and has `stride` bytes from each to the next.
SampleRow rowOf(Block block, const Name& name, bool isWritten) {
  SampleRow row;
  row.size = static_cast<int>(block.shape[0]);
  row.data = reinterpret_cast<STesk3DPosition*>(block.data);
  if (row.size > 1 && block.strides[0] != static_cast<py::ssize_t>(sizeof(STesk3DPosition))) {
    if (isWritten) {
      failValue(name, "consecutive samples, since they are changed", "a view with other strides");
    }
    const std::string text = name.full() + " is a view with strides and was copied";
    const auto category = py::module_::import("scanline._core").attr("CopyWarning");
    if (PyErr_WarnEx(category.ptr(), text.c_str(), 1) != 0) {
      throw py::error_already_set();
    }
    copyFrom(Row{block.data, block.shape[0], block.strides[0]}, row.copy);
    row.data = row.copy.data();
  }
  row.block = std::move(block);
  return row;
}

/// Line `i` of a two-dimensional block.
Block lineOf(const Block& scan, py::ssize_t i) {
  Block line;
  line.owner = scan.owner;
  line.data = scan.data + i * scan.strides[0];
  line.shape[0] = scan.shape[1];
  line.strides[0] = scan.strides[1];
  return line;
}

[[noreturn]] void failShared(const Name& name) {
  failValue(name, "lines with memory of their own, since they are changed",
            "lines that share memory");
}

/// Refuses a list that holds memory of one array twice.
void checkNoOverlap(const std::vector<Block>& rows, std::size_t itemSize, const Name& name) {
  struct Range {
    const char* first;
    const char* end;
  };
  std::vector<Range> ranges;
  for (const Block& row : rows) {
    if (row.shape[0] > 0) {
      const char* first = row.data;
      const char* last = first + (row.shape[0] - 1) * row.strides[0];
      if (std::less<>()(last, first)) {
        std::swap(first, last);
      }
      ranges.push_back({first, last + itemSize});
    }
  }
  const auto before = [](const Range& a, const Range& b) {
    return std::less<>()(a.first, b.first);
  };
  std::sort(ranges.begin(), ranges.end(), before);
  const auto overlap = [](const Range& a, const Range& b) { return std::less<>()(b.first, a.end); };
  if (std::adjacent_find(ranges.begin(), ranges.end(), overlap) != ranges.end()) {
    failShared(name);
  }
}

/// Refuses an array whose steps may lead from different places to the same memory.
void checkNoOverlap(const Block& scan, py::ssize_t itemSize, const Name& name) {
  const auto reaches = [itemSize](py::ssize_t stride, py::ssize_t count, py::ssize_t otherStride) {
    return std::abs(otherStride) < std::abs(stride) * (count - 1) + itemSize;
  };
  if (scan.shape[0] > 1 && scan.shape[1] > 1 &&
      reaches(scan.strides[1], scan.shape[1], scan.strides[0]) &&
      reaches(scan.strides[0], scan.shape[0], scan.strides[1])) {
    failShared(name);
  }
}

void checkLineCount(std::size_t count, const Name& name) {
  if (count > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    failValue(name, "at most 2147483647 lines", std::to_string(count));
  }
}

}  // namespace

SampleRow sampleRow(const Source& source, bool isWritten) {
  return rowOf(checkedBlock(source.value, source.name, wanted<STesk3DPosition>(1, isWritten)),
               source.name, isWritten);
}

std::vector<Block> rowBlocks(const Source& source, const Wanted& wantedRow) {
  std::vector<Block> rows;
  if (py::isinstance<py::array>(source.value)) {
    Wanted wantedScan = wantedRow;
    wantedScan.dimensions = 2;
    const Block scan = checkedBlock(source.value, source.name, wantedScan);
    if (wantedRow.isWritten) {
      checkNoOverlap(scan, wantedRow.dtype.itemsize(), source.name);
    }
    for (py::ssize_t i = 0; i < scan.shape[0]; ++i) {
      rows.push_back(lineOf(scan, i));
    }
    return rows;
  }
  if (PyList_Check(source.value.ptr()) == 0 && PyTuple_Check(source.value.ptr()) == 0) {
    failKind(source.name, "a two-dimensional array or a list of lines", source.value);
  }
  for (const py::handle line : py::tuple(py::reinterpret_borrow<py::object>(source.value))) {
    const Name place{nullptr, &source.name, static_cast<py::ssize_t>(rows.size())};
    rows.push_back(checkedBlock(line, place, wantedRow));
  }
  checkLineCount(rows.size(), source.name);
  if (wantedRow.isWritten) {
    checkNoOverlap(rows, static_cast<std::size_t>(wantedRow.dtype.itemsize()), source.name);
  }
  return rows;
}

Argument<In, STesk3DLaserLine*>::Argument(const Source& source) {
  std::vector<Block> blocks = rowBlocks(source, wanted<STesk3DPosition>(1, false));
  rows.reserve(blocks.size());
  for (Block& block : blocks) {
    rows.push_back(rowOf(std::move(block), source.name, false));
    lines.push_back({rows.back().data, rows.back().size, 0});
  }
  lines.push_back({nullptr, -1, 0});  // the end, for checks of functions without a count
}

Argument<OneLine, STeskXYZRGBDLaserLine*>::Argument(const Source& source)
    : block(checkedBlock(source.value, source.name, wanted<STeskXYZRGBDPoint>(1, true))),
      line{reinterpret_cast<STeskXYZRGBDPoint*>(block.data), static_cast<int>(block.shape[0])} {
  if (line.nPointCnt > 1 &&
      block.strides[0] != static_cast<py::ssize_t>(sizeof(STeskXYZRGBDPoint))) {
    failValue(source.name, "consecutive points, since they are changed",
              "a view with other strides");
  }
}

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
