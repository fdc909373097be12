#include "errors.h"

#include <pybind11/numpy.h>

namespace binding {

std::string Name::full() const {
  if (parent == nullptr) {
    return text;
  }
  return index < 0 ? parent->full() + "." + text
                   : parent->full() + "[" + std::to_string(index) + "]";
}

std::string kindOf(py::handle value) {
  if (!py::isinstance<py::array>(value)) {
    return Py_TYPE(value.ptr())->tp_name;
  }
  const auto array = py::reinterpret_borrow<py::array>(value);
  std::string type = py::str(static_cast<py::object>(array.dtype()));
  if (array.dtype().has_fields()) {
    type = "records of the dtype " + type;
  }
  return "an array of shape " + std::string(py::str(array.attr("shape"))) + " of " + type;
}

void failKind(const Name& name, const std::string& expected, py::handle found) {
  throw py::type_error(name.full() + ": expected " + expected + ", got " + kindOf(found));
}

void failValue(const Name& name, const std::string& expected, const std::string& found) {
  throw py::value_error(name.full() + ": expected " + expected + ", got " + found);
}

}  // namespace binding
