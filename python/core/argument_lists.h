#pragma once

/// Lists of numbers and records: arrays that are copied in, and back if they are changed.

#include <string>
#include <utility>
#include <vector>

#include "arrays.h"
#include "roles.h"
#include "values.h"

namespace binding {

template <typename P>
using ItemOf = typename Bare<P>::value_type;

/// The records of a Python list.
template <typename Record>
std::vector<Record> recordsFrom(py::handle list, const Name& name) {
  std::vector<Record> records;
  for (const py::handle item : py::tuple(py::reinterpret_borrow<py::object>(list))) {
    const Name place{nullptr, &name, static_cast<py::ssize_t>(records.size())};
    records.push_back(recordFrom<Record>(item, place));
  }
  return records;
}

template <typename T>
std::string arrayAnnotation() {
  return IsRecord<T>::value ? "NDArray[np.void]" : "NDArray[np." + dtypeName<T>() + "]";
}

template <typename P>
constexpr bool isFlatList() {
  if constexpr (IsVector<Bare<P>>::value) {
    using Item = ItemOf<P>;
    if constexpr (IsRecord<Item>::value) {
      return hasDtype<Item>();
    } else {
      return !IsVector<Item>::value;
    }
  }
  return false;
}

/// Elements of one array, or a list of objects. Changes are written back into the array.
template <typename Role, typename P>
struct Argument<
    Role,
    P,
    std::enable_if_t<(std::is_same_v<Role, In> || std::is_same_v<Role, InOut>)&&isFlatList<P>()>>
    : ArgumentBase {
  static constexpr bool visitsSamples = true;
  static constexpr bool isWritten = std::is_same_v<Role, InOut>;
  Block block;
  Bare<P> value;
  explicit Argument(const Source& source) {
    if constexpr (!isWritten && IsRecord<ItemOf<P>>::value) {
      if (PyList_Check(source.value.ptr()) != 0) {
        value = recordsFrom<ItemOf<P>>(source.value, source.name);
        return;
      }
    }
    block = checkedBlock(source.value, source.name, wanted<ItemOf<P>>(1, isWritten));
    copyFrom(row(), value);
  }
  Bare<P>& pass() {
    return value;
  }
  void finish() {
    if constexpr (isWritten) {
      copyTo(row(), value);
    }
  }
  static std::string annotation() {
    return arrayAnnotation<typename Element<ItemOf<P>>::Scalar>();
  }

 private:
  [[nodiscard]] Row row() const {
    return {block.data, block.shape[0], block.strides[0]};
  }
};

/// A list that the function replaces or appends to, and one that it also reads.
template <typename Role, typename P>
struct Argument<
    Role,
    P,
    std::enable_if_t<(std::is_same_v<Role, Out> || std::is_same_v<Role, Changed>)&&isFlatList<P>()>>
    : ArgumentBase {
  static constexpr bool isRead = std::is_same_v<Role, Changed>;
  static constexpr Given given = isRead ? Given::kPosition : Given::kKeyword;
  static constexpr bool isReturned = true;
  static constexpr bool visitsSamples = true;
  py::handle list;
  Bare<P> value;
  explicit Argument(const Source& source) {
    if constexpr (isRead) {
      value = Argument<In, P>(source).value;
    } else if (!source.value.is_none()) {
      if (PyList_Check(source.value.ptr()) == 0) {
        failKind(source.name, "a list or None", source.value);
      }
      list = source.value;
    }
  }
  Bare<P>& pass() {
    return value;
  }
  py::object result() {
    py::array array = arrayOf(std::move(value));
    if (list && PyList_Append(list.ptr(), array.ptr()) != 0) {
      throw py::error_already_set();
    }
    return std::move(array);
  }
  static std::string annotation() {
    return arrayAnnotation<typename Element<ItemOf<P>>::Scalar>();
  }
};

/// The rows of a two-dimensional array, or one-dimensional arrays.
std::vector<Block> rowBlocks(const Source& source, const Wanted& wantedRow);

template <typename P>
constexpr bool isNestedList() {
  if constexpr (IsVector<Bare<P>>::value) {
    return IsVector<ItemOf<P>>::value;
  }
  return false;
}

template <typename Role, typename P>
struct Argument<
    Role,
    P,
    std::enable_if_t<(std::is_same_v<Role, In> || std::is_same_v<Role, InOut>)&&isNestedList<P>()>>
    : ArgumentBase {
  using Item = typename ItemOf<P>::value_type;
  static constexpr bool visitsSamples = true;
  static constexpr bool isWritten = std::is_same_v<Role, InOut>;
  std::vector<Block> blocks;
  Bare<P> value;
  explicit Argument(const Source& source)
      : blocks(rowBlocks(source, wanted<Item>(1, isWritten))), value(blocks.size()) {
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      copyFrom(row(i), value[i]);
    }
  }
  Bare<P>& pass() {
    return value;
  }
  void finish() {
    for (std::size_t i = 0; isWritten && i < blocks.size(); ++i) {
      copyTo(row(i), value[i]);
    }
  }
  static std::string annotation() {
    return "Scan";
  }

 private:
  [[nodiscard]] Row row(std::size_t i) const {
    return {blocks[i].data, blocks[i].shape[0], blocks[i].strides[0]};
  }
};

}  // namespace binding
