#include "arrays.h"

#include <cstdint>
#include <limits>

namespace binding {

namespace {

bool areEquivalent(const py::dtype& a, const py::dtype& b) {
  return a.is(b) || py::detail::npy_api::get().PyArray_EquivTypes_(a.ptr(), b.ptr());
}

std::string nameOf(const Wanted& wanted) {
  const auto names = wanted.dtype.attr("names");
  std::string type = py::str(static_cast<py::object>(wanted.dtype));
  if (!names.is_none()) {
    type = "records with the fields " + std::string(py::str(names));
  }
  const std::string shape =
      wanted.columns > 1 ? " and the shape (n, " + std::to_string(wanted.columns) + ")" : "";
  return std::to_string(wanted.dimensions + (wanted.columns > 1 ? 1 : 0)) +
         "-dimensional array of " + type + shape;
}

void checkStrides(const Block& block, const Name& name, const Wanted& wanted) {
  for (int axis = 0; axis < wanted.dimensions; ++axis) {
    const py::ssize_t stride = block.strides[axis];
    if (block.shape[axis] > 1 && stride % static_cast<py::ssize_t>(wanted.alignment) != 0) {
      failValue(name, "an aligned array",
                "strides of " + std::to_string(stride) + " bytes; copy it");
    }
    if (block.shape[axis] > 1 && wanted.isWritten && stride == 0) {
      failValue(name, "an array whose elements have memory of their own", "a broadcast view");
    }
  }
}

}  // namespace

bool copyElement(py::handle value, const py::dtype& dtype, void* record) {
  if (std::strcmp(Py_TYPE(value.ptr())->tp_name, "numpy.void") != 0) {
    return false;
  }
  const py::array element = py::array::ensure(value);
  if (!element || !areEquivalent(element.dtype(), dtype)) {
    return false;
  }
  std::memcpy(record, element.data(), static_cast<std::size_t>(dtype.itemsize()));
  return true;
}

Block checkedBlock(py::handle value, const Name& name, const Wanted& wanted) {
  if (!py::isinstance<py::array>(value)) {
    failKind(name, "a " + nameOf(wanted), value);
  }
  Block block;
  block.owner = py::reinterpret_borrow<py::array>(value);
  const py::array& array = block.owner;
  const int axes = wanted.dimensions + (wanted.columns > 1 ? 1 : 0);
  if (!areEquivalent(array.dtype(), wanted.dtype) || array.ndim() != axes ||
      (wanted.columns > 1 && array.shape(axes - 1) != wanted.columns)) {
    failValue(name, "a " + nameOf(wanted), kindOf(value) + wanted.hint);
  }
  block.data = const_cast<char*>(static_cast<const char*>(array.data()));
  if (array.size() > 0 && reinterpret_cast<std::uintptr_t>(block.data) % wanted.alignment != 0) {
    failValue(name, "an aligned array", "memory at an odd address; copy it");
  }
  for (int axis = 0; axis < wanted.dimensions; ++axis) {
    block.shape[axis] = array.shape(axis);
    block.strides[axis] = array.strides(axis);
    if (block.shape[axis] > std::numeric_limits<int>::max()) {
      failValue(name, "at most 2147483647 elements", std::to_string(block.shape[axis]));
    }
  }
  if (wanted.columns > 1 && array.size() > 0 &&
      array.strides(axes - 1) != static_cast<py::ssize_t>(array.itemsize())) {
    failValue(name, "coordinates that follow one another in memory", "a strided view; copy it");
  }
  checkStrides(block, name, wanted);
  if (wanted.isWritten && !array.writeable()) {
    failValue(name, "an array that can be written", "a read-only one");
  }
  return block;
}

}  // namespace binding
