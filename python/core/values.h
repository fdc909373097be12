#pragma once

/// Numbers, records and the fields of records, from and to Python.

#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include "arrays.h"
#include "numbers.h"

namespace binding {

template <typename Record>
Record recordFrom(py::handle value, const Name& name);

/// Whether a field has a value that a tuple of numbers can stand for: a point or a range.
template <typename Record>
constexpr bool isPlain() {
  return std::is_same_v<Record, STesk3DPoint> || std::is_same_v<Record, STesk2DPoint> ||
         std::is_same_v<Record, STesk2DPointD> || std::is_same_v<Record, STeskRangeD>;
}

/// Sets a field of a record, or its equal.
template <typename T>
void assignFrom(T& field, py::handle value, const Name& name) {
  if constexpr (IsRecord<T>::value) {
    field = recordFrom<T>(value, name);
  } else if constexpr (IsVector<T>::value) {
    using Item = typename T::value_type;
    const Block block = checkedBlock(value, name, wanted<Item>(1, false));
    copyFrom(Row{block.data, block.shape[0], block.strides[0]}, field);
  } else if constexpr (std::is_array_v<T>) {
    constexpr std::size_t kCount = std::extent_v<T>;
    const auto flat = py::module_::import("numpy").attr("ravel")(value);
    if (py::len(flat) != kCount) {
      failValue(name, std::to_string(kCount) + " numbers", std::to_string(py::len(flat)));
    }
    std::size_t i = 0;
    for (const py::handle item : flat) {
      field[i++] = numberFrom<std::remove_extent_t<T>>(item, name);
    }
  } else {
    field = numberFrom<T>(value, name);
  }
}

template <typename Record>
std::string fieldNames() {
  std::string names;
  std::apply(
      [&](const auto&... field) {
        ((names += (names.empty() ? "" : ", "), names += field.name), ...);
      },
      Fields<Record>::all);
  return names;
}

/// A record from a mapping that has all of its fields and nothing else.
template <typename Record>
Record recordFromFields(const py::dict& fields, const Name& name) {
  Record record{};
  std::size_t count = 0;
  forEachField(record, [&](const char* field, auto& member) {
    const py::handle value = PyDict_GetItemString(fields.ptr(), field);
    if (!value) {
      throw py::type_error(name.full() + ": the field '" + field + "' is missing; all of " +
                           fieldNames<Record>() + " are needed");
    }
    assignFrom(member, value, Name{field, &name});
    ++count;
  });
  if (fields.size() != count) {
    for (const auto& item : fields) {
      const std::string key = py::str(item.first);
      if ((", " + fieldNames<Record>() + ",").find(" " + key + ",") == std::string::npos) {
        throw py::type_error(name.full() + ": there is no field '" + key + "'; the fields are " +
                             fieldNames<Record>());
      }
    }
  }
  return record;
}

/// A record from an object of its class, a dict of its fields, an element of an array, or for a
/// point or a range from a sequence of its numbers.
template <typename Record>
Record recordFrom(py::handle value, const Name& name) {
  py::detail::make_caster<Record> caster;
  if (caster.load(value, false)) {
    return py::detail::cast_op<Record&>(caster);
  }
  if (PyDict_Check(value.ptr()) != 0) {
    return recordFromFields<Record>(py::reinterpret_borrow<py::dict>(value), name);
  }
  Record record{};
  if constexpr (hasDtype<Record>()) {
    if (copyElement(value, dtypeOf<Record>(), &record)) {
      return record;
    }
  }
  if constexpr (!isPlain<Record>()) {
    failKind(name, "an object of " + std::string(Fields<Record>::name), value);
  }
  if (PySequence_Check(value.ptr()) == 0 || PyUnicode_Check(value.ptr()) != 0 ||
      PySequence_Size(value.ptr()) != std::tuple_size_v<decltype(Fields<Record>::all)>) {
    PyErr_Clear();
    failKind(name, std::string(Fields<Record>::name) + " or a tuple of " + fieldNames<Record>(),
             value);
  }
  py::ssize_t i = 0;
  forEachField(record, [&](const char* field, auto& member) {
    const auto item = py::reinterpret_steal<py::object>(PySequence_GetItem(value.ptr(), i++));
    if (!item) {
      throw py::error_already_set();
    }
    assignFrom(member, item, Name{field, &name});
  });
  return record;
}

/// A number, an object of a record's class or an array.
template <typename T>
py::object toPython(const T& value) {
  if constexpr (IsRecord<T>::value) {
    return py::cast(value);
  } else if constexpr (IsVector<T>::value) {
    return arrayOf(T(value));
  } else if constexpr (std::is_array_v<T>) {
    using Item = std::remove_all_extents_t<T>;
    return arrayOf(std::vector<Item>(std::begin(value), std::end(value)));
  } else {
    return py::cast(value);
  }
}

}  // namespace binding
