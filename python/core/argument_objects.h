#pragma once

/// Lists of records that hold lists themselves, and lists of trees.

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "argument_lists.h"
#include "tree_list.h"

namespace binding {

template <typename P>
constexpr bool isObjectList() {
  if constexpr (IsVector<Bare<P>>::value) {
    if constexpr (IsRecord<ItemOf<P>>::value) {
      return !hasDtype<ItemOf<P>>() && !HasNodes<ItemOf<P>>::value;
    }
  }
  return false;
}

/// Objects of the class. Changes are written back into the memory of their lists.
template <typename Role, typename P>
struct Argument<
    Role,
    P,
    std::enable_if_t<(std::is_same_v<Role, In> || std::is_same_v<Role, InOut>)&&isObjectList<P>()>>
    : ArgumentBase {
  using Item = ItemOf<P>;
  static constexpr bool visitsSamples = true;
  py::tuple objects;
  Bare<P> value;
  explicit Argument(const Source& source) {
    if (PySequence_Check(source.value.ptr()) == 0) {
      failKind(source.name, "a list of " + std::string(Fields<Item>::name), source.value);
    }
    objects = py::tuple(py::reinterpret_borrow<py::object>(source.value));
    value = recordsFrom<Item>(objects, source.name);
  }
  Bare<P>& pass() {
    return value;
  }
  void finish() {
    for (std::size_t i = 0; std::is_same_v<Role, InOut> && i < value.size(); ++i) {
      writeBack(value[i], objects[i]);
    }
  }
  static std::string annotation() {
    return "Sequence[" + std::string(Fields<Item>::name) + "]";
  }

 private:
  /// Keeps the memory of the lists, which arrays may share; their sizes are as before.
  static void writeBack(const Item& changed, py::handle object) {
    py::detail::make_caster<Item> caster;
    if (!caster.load(object, false)) {
      return;  // made from a dict
    }
    Item& original = py::detail::cast_op<Item&>(caster);
    std::apply(
        [&](const auto&... field) {
          (copyField(changed.*field.member, original.*field.member), ...);
        },
        Fields<Item>::all);
  }
  template <typename T>
  static void copyField(const T& from, T& to) {
    if constexpr (IsVector<T>::value) {
      std::copy(from.begin(), from.end(), to.begin());
    } else {
      to = from;
    }
  }
};

/// A Python list of what the function appends: of objects of the class, or of arrays.
template <typename P>
struct Argument<Out, P, std::enable_if_t<isObjectList<P>() || isNestedList<P>()>> : ResultBase {
  static constexpr bool visitsSamples = true;
  Bare<P> value;
  explicit Argument(const Source& /*source*/) {}
  Bare<P>& pass() {
    return value;
  }
  py::object result() {
    py::list items;
    for (auto& item : value) {
      if constexpr (isObjectList<P>()) {
        items.append(py::cast(std::move(item)));
      } else {
        items.append(arrayOf(std::move(item)));
      }
    }
    return std::move(items);
  }
  static std::string annotation() {
    if constexpr (isObjectList<P>()) {
      return "list[" + std::string(Fields<ItemOf<P>>::name) + "]";
    } else {
      return "list[NDArray[np.void]]";
    }
  }
};

template <typename P>
constexpr bool isTreeList() {
  if constexpr (IsVector<Bare<P>>::value) {
    return HasNodes<ItemOf<P>>::value;
  }
  return false;
}

/// A list of trees, which is marked as in use during the call.
template <typename Role, typename P>
struct Argument<
    Role,
    P,
    std::enable_if_t<(std::is_same_v<Role, InOut> || std::is_same_v<Role, Grown>)&&isTreeList<P>()>>
    : ArgumentBase {
  using Tree = ItemOf<P>;
  using List = TreeList<Tree>;
  static constexpr bool isReturned = std::is_same_v<Role, Grown>;
  static constexpr Given given = isReturned ? Given::kKeyword : Given::kPosition;
  static constexpr bool visitsSamples = true;
  py::object object;
  List* list;
  explicit Argument(const Source& source)
      : object(isReturned && source.value.is_none()
                   ? py::cast(List{})
                   : py::reinterpret_borrow<py::object>(source.value)) {
    py::detail::make_caster<List> caster;
    if (!caster.load(object, false)) {
      failKind(source.name, "a list of the class " + listName<Tree>(), object);
    }
    list = &py::detail::cast_op<List&>(caster);
    if (list->isInUse) {
      failValue(source.name, "a list of its own", "one that is in use, here or in another thread");
    }
    list->isInUse = true;
  }
  ~Argument() {
    list->isInUse = false;
  }
  Argument(const Argument&) = delete;
  Argument& operator=(const Argument&) = delete;
  std::vector<Tree>& pass() {
    return list->trees;
  }
  py::object result() {
    return object;
  }
  static std::string annotation() {
    return listName<Tree>();
  }
};

}  // namespace binding
