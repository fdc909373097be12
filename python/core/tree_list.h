#pragma once

/// The list of trees that a grower continues from line to line.

#include <string>
#include <utility>
#include <vector>

#include "record_class.h"

namespace binding {

/// A list of trees in C++, so that a call for one more line converts none of them.
template <typename Tree>
struct TreeList {
  std::vector<Tree> trees;
  bool isInUse = false;  ///< A call without the interpreter's lock is changing the list.

  std::vector<Tree>& checked() {
    if (isInUse) {
      throw std::runtime_error("this list of trees is in use: another thread is growing it");
    }
    return trees;
  }
};

template <typename Tree>
std::string listName() {
  return std::string(Fields<Tree>::name) + "s";
}

template <typename Tree>
const Tree& itemAt(TreeList<Tree>& list, py::ssize_t index) {
  const auto size = static_cast<py::ssize_t>(list.checked().size());
  if (index < -size || index >= size) {
    throw py::index_error("tree " + std::to_string(index) + " of " + std::to_string(size));
  }
  return list.trees[static_cast<std::size_t>(index < 0 ? index + size : index)];
}

/// A tree that a grower can continue: it has a node.
template <typename Tree>
Tree treeFrom(py::handle value, const Name& name) {
  Tree tree = recordFrom<Tree>(value, name);
  if (tree.treeNodes.empty()) {
    failValue(Name{"treeNodes", &name}, "at least one node", "none");
  }
  return tree;
}

template <typename Tree>
TreeList<Tree> treesFrom(const py::iterable& trees) {
  TreeList<Tree> list;
  py::ssize_t i = 0;
  const Name name{"trees"};
  for (const py::handle tree : trees) {
    list.trees.push_back(treeFrom<Tree>(tree, Name{nullptr, &name, i++}));
  }
  return list;
}

/// Defines the class of a list of trees. Its items are copies: changing one leaves the list.
template <typename Tree>
void defineTreeList(py::module_& module) {
  using List = TreeList<Tree>;
  const std::string name = listName<Tree>();
  const std::string text = std::string("A list of ") + Fields<Tree>::name +
                           ", which a grower continues from line to line.\n\nIts items are copies.";
  py::class_<List> type(module, name.c_str(), text.c_str());
  type.def(py::init<>());
  type.def(py::init(&treesFrom<Tree>), py::arg("trees"));
  type.def("__len__", [](List& list) { return list.checked().size(); });
  type.def("__iter__", [](const py::object& list) {
    return py::reinterpret_steal<py::object>(PySeqIter_New(list.ptr()));
  });
  type.def("__getitem__", &itemAt<Tree>, py::return_value_policy::copy);
  type.def("__getitem__", [](List& list, const py::slice& slice) {
    std::size_t start = 0;
    std::size_t stop = 0;
    std::size_t step = 0;
    std::size_t length = 0;
    if (!slice.compute(list.checked().size(), &start, &stop, &step, &length)) {
      throw py::error_already_set();
    }
    List part;
    for (std::size_t i = 0; i < length; ++i, start += step) {
      part.trees.push_back(list.trees[start]);
    }
    return part;
  });
  type.def("append", [](List& list, py::handle tree) {
    list.checked().push_back(treeFrom<Tree>(tree, Name{"tree"}));
  });
  type.def("__repr__", [name](List& list) {
    std::string items;
    for (const Tree& tree : list.checked()) {
      items += (items.empty() ? "" : ", ") + textOf(tree);
    }
    return name + "([" + items + "])";
  });
  type.def("__eq__",
           [](List& list, List& other) { return areEqual(list.checked(), other.checked()); });
  type.def(py::pickle(
      [](List& list) {
        py::list trees;
        for (const Tree& tree : list.checked()) {
          trees.append(tree);
        }
        return py::make_tuple(trees);
      },
      [](const py::tuple& state) { return treesFrom<Tree>(state[0]); }));
}

}  // namespace binding
