#pragma once

/// The Python class of a record: fields, construction by keywords, repr, equality and pickling.

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "documentation.h"
#include "values.h"

namespace binding {

/// Text from which Python can make the value again.
template <typename T>
std::string textOf(const T& value) {
  if constexpr (IsRecord<T>::value) {
    std::string text = std::string(Fields<T>::name) + "(";
    forEachField(value, [&text](const char* name, const auto& field) {
      text += (text.back() == '(' ? "" : ", ") + std::string(name) + "=" + textOf(field);
    });
    return text + ")";
  } else if constexpr (IsVector<T>::value) {
    using Item = typename T::value_type;
    const auto list = toPython(value).attr("tolist")();
    return "numpy.array(" + std::string(py::repr(list)) + ", dtype=" + dtypeName<Item>() + ")";
  } else if constexpr (std::is_array_v<T>) {
    std::string text;
    for (const auto& item : value) {
      text += (text.empty() ? "" : ", ") + textOf(item);
    }
    return "[" + text + "]";
  } else {
    const std::string text = py::repr(py::cast(value));
    const bool isFinite = std::isfinite(static_cast<double>(value));
    return isFinite ? text : "float('" + text + "')";
  }
}

template <typename T>
bool areEqual(const T& a, const T& b) {
  if constexpr (IsRecord<T>::value) {
    return std::apply(
        [&](const auto&... field) { return (areEqual(a.*field.member, b.*field.member) && ...); },
        Fields<T>::all);
  } else if constexpr (IsVector<T>::value || std::is_array_v<T>) {
    return std::equal(std::begin(a), std::end(a), std::begin(b), std::end(b),
                      [](const auto& x, const auto& y) { return areEqual(x, y); });
  } else {
    return a == b;
  }
}

template <typename Record>
py::tuple stateOf(const Record& record) {
  py::list state;
  forEachField(record,
               [&](const char* /*name*/, const auto& field) { state.append(toPython(field)); });
  return py::tuple(state);
}

template <typename Record>
Record fromState(const py::tuple& state) {
  Record record{};
  std::size_t i = 0;
  forEachField(record, [&](const char* name, auto& field) {
    const py::object item = state[i++];
    assignFrom(field, item, Name{name});
  });
  return record;
}

template <typename Record, typename T>
void defineField(py::class_<Record>& type, const Field<Record, T>& field) {
  const auto member = field.member;
  const char* name = field.name;
  const char* text = documentation(Fields<Record>::name, name);
  const auto set = [member, name](Record& record, py::handle value) {
    assignFrom(record.*member, value, Name{name});
  };
  if constexpr (IsRecord<T>::value) {
    type.def_property(
        name, [member](Record& record) -> T& { return record.*member; }, set, text);
  } else if constexpr (IsVector<T>::value) {
    // No setter: arrays that views of the list share would lose their memory.
    type.def_property_readonly(
        name,
        [member](py::object self) {
          const T& list = self.cast<Record&>().*member;
          return arrayView(list.data(), list.size(), self);
        },
        text);
  } else if constexpr (std::is_array_v<T>) {
    type.def_property(
        name,
        [member](py::object self) {
          auto& values = self.cast<Record&>().*member;
          return arrayView(&values[0], std::extent_v<T>, self);
        },
        set, text);
  } else {
    type.def_property(
        name, [member](const Record& record) { return record.*member; }, set, text);
  }
}

template <typename Record, typename = void>
struct HasNodes : std::false_type {};
template <typename Record>
struct HasNodes<Record, std::void_t<decltype(Record::treeNodes)>> : std::true_type {};

/// Defines the class of a record, and the dtype of its arrays as its attribute `dtype`.
template <typename Record>
void defineRecord(py::module_& module) {
  const char* name = Fields<Record>::name;
  py::class_<Record> type(module, name, documentation(name));
  type.def(py::init([name](const py::args& values, const py::kwargs& fields) {
    if (!values.empty()) {
      throw py::type_error(std::string(name) + ": name the fields, as in " + name + "(" +
                           std::get<0>(Fields<Record>::all).name + "=...)");
    }
    return recordFromFields<Record>(fields, Name{name});
  }));
  std::apply([&](const auto&... field) { (defineField(type, field), ...); }, Fields<Record>::all);
  type.def("__repr__", [](const Record& record) { return textOf(record); });
  type.def("__eq__", [](const Record& record, py::handle other) -> py::object {
    py::detail::make_caster<Record> caster;
    if (!caster.load(other, false)) {
      return py::reinterpret_borrow<py::object>(Py_NotImplemented);
    }
    return py::cast(areEqual(record, py::detail::cast_op<Record&>(caster)));
  });
  type.def(py::pickle(&stateOf<Record>, &fromState<Record>));
  if constexpr (HasNodes<Record>::value) {
    type.def_property_readonly(
        "nodes", [](py::object self) { return self.attr("treeNodes"); }, "The same as treeNodes.");
  }
  if constexpr (hasDtype<Record>()) {
    type.attr("dtype") = dtypeOf<Record>();
  }
}

}  // namespace binding
