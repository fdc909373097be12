#include "numbers.h"

#include <pybind11/numpy.h>

namespace binding {

double realFrom(py::handle value, const Name& name) {
  if (PyFloat_CheckExact(value.ptr()) != 0) {
    return PyFloat_AS_DOUBLE(value.ptr());
  }
  const double number = py::isinstance<py::array>(value) ? -1.0 : PyFloat_AsDouble(value.ptr());
  if (py::isinstance<py::array>(value) || (number == -1.0 && PyErr_Occurred() != nullptr)) {
    PyErr_Clear();
    failKind(name, "a number", value);
  }
  return number;
}

bool boolFrom(py::handle value, const Name& name) {
  if (PyBool_Check(value.ptr()) == 0 &&
      std::string(Py_TYPE(value.ptr())->tp_name) != "numpy.bool_") {
    failKind(name, "True or False", value);
  }
  return PyObject_IsTrue(value.ptr()) == 1;
}

std::int64_t integerFrom(py::handle value, const Name& name, std::int64_t low, std::int64_t high) {
  const auto index = py::reinterpret_steal<py::object>(
      py::isinstance<py::array>(value) ? nullptr : PyNumber_Index(value.ptr()));
  if (!index) {
    PyErr_Clear();
    failKind(name, "an integer", value);
  }
  int overflow = 0;
  const long long number = PyLong_AsLongLongAndOverflow(index.ptr(), &overflow);
  if (overflow != 0 || number < low || number > high) {
    failValue(name, "an integer from " + std::to_string(low) + " to " + std::to_string(high),
              py::str(index));
  }
  return number;
}

std::uint64_t wordFrom(py::handle value, const Name& name) {
  const auto index = py::reinterpret_steal<py::object>(
      py::isinstance<py::array>(value) ? nullptr : PyNumber_Index(value.ptr()));
  const auto number = index ? PyLong_AsUnsignedLongLong(index.ptr()) : 0;
  if (PyErr_Occurred() != nullptr) {
    PyErr_Clear();
    failKind(name, "an integer from 0 to 2**64 - 1", value);
  }
  return number;
}

}  // namespace binding
