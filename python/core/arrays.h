#pragma once

/// NumPy arrays of records, numbers and points: checked views of the caller's memory, and arrays
/// that own the results.

#include <pybind11/numpy.h>

#include <cstring>
#include <opencv2/core/types.hpp>
#include <string>
#include <utility>
#include <vector>

#include "errors.h"
#include "records.h"

namespace binding {

/// The dtype of a record, with its layout and alignment.
template <typename Record>
py::dtype recordDtype();

/// What an array holds for elements of type T: its dtype, and a second axis for points of OpenCV.
template <typename T>
struct Element {
  using Scalar = T;
  static constexpr int kColumns = 1;
};
template <typename T>
struct Element<cv::Point_<T>> {
  using Scalar = T;
  static constexpr int kColumns = 2;
};
template <typename T>
struct Element<cv::Point3_<T>> {
  using Scalar = T;
  static constexpr int kColumns = 3;
};

template <typename T>
py::dtype dtypeOf() {
  if constexpr (IsRecord<T>::value) {
    return recordDtype<T>();
  } else if constexpr (Element<T>::kColumns > 1) {
    return dtypeOf<typename Element<T>::Scalar>();
  } else {
    return py::dtype::of<T>();
  }
}

/// The dtype as a message and a stub name it.
template <typename T>
std::string dtypeName() {
  if constexpr (IsRecord<T>::value) {
    return std::string(Fields<T>::name) + ".dtype";
  } else {
    return py::str(static_cast<py::object>(dtypeOf<T>()));
  }
}

template <typename Record>
py::object fieldFormat(const Record* /*type*/) {
  return dtypeOf<Record>();
}
template <typename T, std::size_t count>
py::object fieldFormat(const T (* /*type*/)[count]) {
  return py::make_tuple(dtypeOf<T>(), py::make_tuple(count));
}

template <typename Record>
py::dtype makeRecordDtype() {
  py::list names;
  py::list formats;
  py::list offsets;
  std::apply(
      [&](const auto&... field) {
        ((names.append(field.name), offsets.append(field.offset),
          formats.append(fieldFormat(
              static_cast<const typename std::decay_t<decltype(field)>::Type*>(nullptr)))),
         ...);
      },
      Fields<Record>::all);
  py::dict layout;
  layout["names"] = names;
  layout["formats"] = formats;
  layout["offsets"] = offsets;
  layout["itemsize"] = sizeof(Record);
  using py::literals::operator""_a;
  return py::module_::import("numpy").attr("dtype")(layout, "align"_a = true);
}

template <typename Record>
py::dtype recordDtype() {
  // Made once and never freed: comparing with it by address is quick.
  static const py::handle dtype = makeRecordDtype<Record>().release();
  return py::reinterpret_borrow<py::dtype>(dtype);
}

/// What an array must be.
struct Wanted {
  py::dtype dtype;
  const char* hint;       ///< What to do about another dtype; may be empty.
  std::size_t alignment;  ///< Of an element.
  int dimensions;         ///< Without the axis of the coordinates of points.
  int columns;            ///< Length of that axis, or 1 for no such axis.
  bool isWritten;
};

/// Memory of a checked array. The array is kept alive.
struct Block {
  py::array owner;
  char* data = nullptr;
  py::ssize_t shape[2] = {1, 1};
  py::ssize_t strides[2] = {0, 0};
};

/// Whether an element of an array of records has the dtype; copies it to `record` then.
bool copyElement(py::handle value, const py::dtype& dtype, void* record);

/// Checks an array: its kind, dtype, shape, address, strides, and whether it can be written.
Block checkedBlock(py::handle value, const Name& name, const Wanted& wanted);

template <typename T>
Wanted wanted(int dimensions, bool isWritten) {
  const bool isSample = std::is_same_v<T, STesk3DPosition>;
  return {dtypeOf<T>(),         isSample ? "; see scanline.as_scan" : "",
          alignof(T),           dimensions,
          Element<T>::kColumns, isWritten};
}

/// Consecutive elements of a block, which may be a strided view.
struct Row {
  char* data;
  py::ssize_t size;
  py::ssize_t stride;
};

template <typename T>
void copyFrom(const Row& row, std::vector<T>& list) {
  if (row.stride == static_cast<py::ssize_t>(sizeof(T))) {
    const T* first = reinterpret_cast<const T*>(row.data);
    list.assign(first, first + row.size);
    return;
  }
  list.resize(static_cast<std::size_t>(row.size));
  for (py::ssize_t i = 0; i < row.size; ++i) {
    std::memcpy(&list[static_cast<std::size_t>(i)], row.data + i * row.stride, sizeof(T));
  }
}

template <typename T>
void copyTo(const Row& row, const std::vector<T>& list) {
  if (list.empty()) {
    return;  // and then there may be no memory to copy to
  }
  if (row.stride == static_cast<py::ssize_t>(sizeof(T))) {
    std::memcpy(row.data, list.data(), list.size() * sizeof(T));
    return;
  }
  for (py::ssize_t i = 0; i < row.size; ++i) {
    std::memcpy(row.data + i * row.stride, &list[static_cast<std::size_t>(i)], sizeof(T));
  }
}

/// A view of elements that `base` keeps alive.
template <typename T>
py::array arrayView(const T* data, std::size_t size, py::handle base) {
  using Scalar = typename Element<T>::Scalar;
  const auto count = static_cast<py::ssize_t>(size);
  if constexpr (Element<T>::kColumns > 1) {
    return {dtypeOf<Scalar>(), {count, py::ssize_t{Element<T>::kColumns}}, data, base};
  } else {
    return {dtypeOf<Scalar>(), {count}, data, base};
  }
}

/// An array that owns the elements of a list.
template <typename T>
py::array arrayOf(std::vector<T>&& list) {
  auto* const owned = new std::vector<T>(std::move(list));
  const py::capsule base(owned, [](void* p) { delete static_cast<std::vector<T>*>(p); });
  return arrayView(owned->data(), owned->size(), base);
}

}  // namespace binding
