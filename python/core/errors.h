#pragma once

/// Errors that name the argument, what was expected and what was found.

#include <pybind11/pybind11.h>

#include <string>

namespace binding {

namespace py = pybind11;

/// Name of an argument, or of a place inside one such as `cornerPara.scale` or `lines[3]`. It is
/// written out only for an error.
struct Name {
  const char* text;              ///< Name of an argument or a field; unused with an index.
  const Name* parent = nullptr;  ///< The argument or record around it.
  py::ssize_t index = -1;        ///< Position in a list, or negative.

  [[nodiscard]] std::string full() const;
};

/// What a message calls an object: its type, and for an array dtype and shape.
std::string kindOf(py::handle value);

[[noreturn]] void failKind(const Name& name, const std::string& expected, py::handle found);
[[noreturn]] void failValue(const Name& name,
                            const std::string& expected,
                            const std::string& found);

}  // namespace binding
