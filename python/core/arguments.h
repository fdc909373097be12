#pragma once

/// What a parameter of an exported function is in Python, by its role and its C++ type: which
/// object stands for it, how it is passed, and what comes back.

#include <array>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "images.h"
#include "tree_list.h"

namespace binding {

/// Only read.
struct In {
  static constexpr const char* text = "read";
};
/// The caller's object is changed.
struct InOut {
  static constexpr const char* text = "changed";
};
/// Returned; a list that the function appends to can be given by keyword.
struct Out {
  static constexpr const char* text = "returned";
};
/// Read and changed, and returned as a new array since its size changes.
struct Changed {
  static constexpr const char* text = "read and returned";
};
/// Trees: returned, and the caller's list is continued if given by keyword.
struct Grown {
  static constexpr const char* text = "continued and returned";
};
/// The number of samples or lines to which the preceding parameter points.
struct Count {
  static constexpr const char* text = "count";
};
/// A pointer to the record of one line, which is changed.
struct OneLine : InOut {};
/// An image of a `CV_` type, only read.
template <int type>
struct Image : In {};
/// The same, changed in place.
template <int type>
struct ChangedImage : InOut {};
/// An image of zeros and ones of any type, only read.
struct BinaryImage : In {};

/// The object given for a parameter; null for one that is not given.
struct Source {
  py::handle value;
  Name name;
};

enum class Given { kNever, kPosition, kKeyword };

/// The base of all: not given, not returned, and without work on samples.
struct ArgumentBase {
  static constexpr Given given = Given::kPosition;
  static constexpr bool isReturned = false;
  static constexpr bool visitsSamples = false;
  void finish() {}
};

template <typename Role, typename P, typename = void>
struct Argument;

template <typename T>
using Bare = std::remove_cv_t<std::remove_pointer_t<std::remove_reference_t<T>>>;
template <typename T>
constexpr bool isNumber = std::is_arithmetic_v<T>;

// --- Numbers and records -------------------------------------------------------------------------

template <typename P>
struct Argument<In, P, std::enable_if_t<isNumber<P>>> : ArgumentBase {
  P value;
  explicit Argument(const Source& source) : value(numberFrom<P>(source.value, source.name)) {}
  P pass() {
    return value;
  }
  static std::string annotation() {
    return numberAnnotation<P>();
  }
};

template <typename P>
struct Argument<In, P, std::enable_if_t<IsRecord<Bare<P>>::value && !std::is_pointer_v<P>>>
    : ArgumentBase {
  Bare<P> value;
  explicit Argument(const Source& source) : value(recordFrom<Bare<P>>(source.value, source.name)) {}
  Bare<P>& pass() {
    return value;
  }
  static std::string annotation() {
    const std::string name = Fields<Bare<P>>::name;
    return name + " | Mapping[str, Any]" + (isPlain<Bare<P>>() ? " | Sequence[float]" : "");
  }
};

/// A record that the function changes: an object of its class, not a copy.
template <typename P>
struct Argument<InOut, P, std::enable_if_t<IsRecord<Bare<P>>::value && !std::is_pointer_v<P>>>
    : ArgumentBase {
  Bare<P>* object;
  Bare<P> value;
  explicit Argument(const Source& source) : object(&objectFrom(source)), value(*object) {}
  static Bare<P>& objectFrom(const Source& source) {
    py::detail::make_caster<Bare<P>> caster;
    if (!caster.load(source.value, false)) {
      failKind(source.name, "an object of " + std::string(Fields<Bare<P>>::name), source.value);
    }
    return py::detail::cast_op<Bare<P>&>(caster);
  }
  Bare<P>& pass() {
    return value;
  }
  void finish() {
    *object = value;
  }
  static std::string annotation() {
    return Fields<Bare<P>>::name;
  }
};

/// NaN in all floating-point numbers: they stay NaN where the function leaves a result unset.
template <typename T>
T unsetValue() {
  T value{};
  if constexpr (std::is_floating_point_v<T>) {
    value = std::numeric_limits<T>::quiet_NaN();
  } else if constexpr (std::is_same_v<T, STesk3DPoint>) {
    value.x = value.y = value.z = unsetValue<double>();
  }
  return value;
}

/// A result by pointer or reference.
template <typename P>
struct Argument<Out, P, std::enable_if_t<isNumber<Bare<P>> || IsRecord<Bare<P>>::value>>
    : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  Bare<P> value = unsetValue<Bare<P>>();
  explicit Argument(const Source& /*source*/) {}
  P pass() {
    if constexpr (std::is_pointer_v<P>) {
      return &value;
    } else {
      return value;
    }
  }
  py::object result() {
    return toPython(value);
  }
  static std::string annotation() {
    if constexpr (isNumber<Bare<P>>) {
      return numberAnnotation<Bare<P>>();
    } else {
      return Fields<Bare<P>>::name;
    }
  }
};

// --- Matrices and points of OpenCV ---------------------------------------------------------------

/// `count` numbers of any shape.
template <std::size_t count>
std::array<double, count> numbersFrom(const Source& source) {
  using Matrix = py::array_t<double, py::array::c_style>;
  double values[count];
  if (Matrix::check_(source.value)) {
    const auto matrix = py::reinterpret_borrow<Matrix>(source.value);
    if (matrix.size() == static_cast<py::ssize_t>(count)) {
      std::array<double, count> result;
      std::copy_n(matrix.data(), count, result.begin());
      return result;
    }
  }
  assignFrom(values, source.value, source.name);
  std::array<double, count> result;
  std::copy_n(values, count, result.begin());
  return result;
}

template <>
struct Argument<In, const double*> : ArgumentBase {
  std::array<double, 9> value;
  explicit Argument(const Source& source) : value(numbersFrom<9>(source)) {}
  const double* pass() {
    return value.data();
  }
  static std::string annotation() {
    return "ArrayLike";
  }
};

template <>
struct Argument<In, const double (*)[3]> : ArgumentBase {
  double value[3][3];
  explicit Argument(const Source& source) {
    const auto numbers = numbersFrom<9>(source);
    std::copy(numbers.begin(), numbers.end(), &value[0][0]);
  }
  const double (*pass())[3] {
    return value;
  }
  static std::string annotation() {
    return "ArrayLike";
  }
};

template <>
struct Argument<Out, double (*)[3]> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  double value[3][3] = {};
  explicit Argument(const Source& /*source*/) {}
  double (*pass())[3] {
    return value;
  }
  py::object result() {
    return arrayOf(cv::Mat(3, 3, CV_64F, value).clone());
  }
  static std::string annotation() {
    return "NDArray[np.float64]";
  }
};

template <>
struct Argument<In, const cv::Point3_<double>&> : ArgumentBase {
  cv::Point3_<double> value;
  explicit Argument(const Source& source) {
    const auto point = recordFrom<STesk3DPoint>(source.value, source.name);
    value = {point.x, point.y, point.z};
  }
  const cv::Point3_<double>& pass() {
    return value;
  }
  static std::string annotation() {
    return "STesk3DPoint | Sequence[float]";
  }
};

template <>
struct Argument<Out, cv::Point3_<double>&> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  cv::Point3_<double> value;
  explicit Argument(const Source& /*source*/) {}
  cv::Point3_<double>& pass() {
    return value;
  }
  py::object result() {
    return toPython(STesk3DPoint{value.x, value.y, value.z});
  }
  static std::string annotation() {
    return "STesk3DPoint";
  }
};

// --- Lines by pointer: the array's own memory ----------------------------------------------------

/// A contiguous row of samples: that of the array, or a copy of it with a warning.
struct SampleRow {
  Block block;
  std::vector<STesk3DPosition> copy;
  STesk3DPosition* data = nullptr;
  int size = 0;
};
SampleRow sampleRow(const Source& source, bool isWritten);

template <typename Role>
struct Argument<Role,
                STesk3DPosition*,
                std::enable_if_t<std::is_same_v<Role, In> || std::is_same_v<Role, InOut>>>
    : ArgumentBase {
  static constexpr bool visitsSamples = true;
  SampleRow row;
  explicit Argument(const Source& source) : row(sampleRow(source, std::is_same_v<Role, InOut>)) {}
  STesk3DPosition* pass() {
    return row.data;
  }
  [[nodiscard]] int size() const {
    return row.size;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

template <>
struct Argument<OneLine, STesk3DLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  SampleRow row;
  STesk3DLaserLine line;
  explicit Argument(const Source& source)
      : row(sampleRow(source, true)), line{row.data, row.size, 0} {}
  STesk3DLaserLine* pass() {
    return &line;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

template <>
struct Argument<OneLine, STeskXYZRGBDLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  Block block;
  STeskXYZRGBDLaserLine line;
  explicit Argument(const Source& source);
  STeskXYZRGBDLaserLine* pass() {
    return &line;
  }
  static std::string annotation() {
    return "NDArray[np.void]";
  }
};

/// A scan whose lines are rows of the caller's arrays.
template <>
struct Argument<In, STesk3DLaserLine*> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  std::vector<SampleRow> rows;
  std::vector<STesk3DLaserLine> lines;
  explicit Argument(const Source& source);
  STesk3DLaserLine* pass() {
    return lines.data();
  }
  [[nodiscard]] int size() const {
    return static_cast<int>(lines.size()) - 1;
  }
  static std::string annotation() {
    return "Scan";
  }
};

/// Not given; its value is the size of the preceding argument.
template <>
struct Argument<Count, int> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  explicit Argument(const Source& /*source*/) {}
};

// --- Lists: copied in, and back if changed -------------------------------------------------------

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

template <typename P>
struct Argument<Out, P, std::enable_if_t<isNestedList<P>()>> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  static constexpr bool visitsSamples = true;
  Bare<P> value;
  explicit Argument(const Source& /*source*/) {}
  Bare<P>& pass() {
    return value;
  }
  py::object result() {
    py::list lists;
    for (auto& list : value) {
      lists.append(arrayOf(std::move(list)));
    }
    return std::move(lists);
  }
  static std::string annotation() {
    return "list[NDArray[np.void]]";
  }
};

// --- Lists of records that hold lists ------------------------------------------------------------

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

template <typename P>
struct Argument<Out, P, std::enable_if_t<isObjectList<P>()>> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  static constexpr bool visitsSamples = true;
  Bare<P> value;
  explicit Argument(const Source& /*source*/) {}
  Bare<P>& pass() {
    return value;
  }
  py::object result() {
    py::list objects;
    for (auto& item : value) {
      objects.append(py::cast(std::move(item)));
    }
    return std::move(objects);
  }
  static std::string annotation() {
    return "list[" + std::string(Fields<ItemOf<P>>::name) + "]";
  }
};

// --- Trees ---------------------------------------------------------------------------------------

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

// --- Images --------------------------------------------------------------------------------------

inline std::string imageAnnotation(int type) {
  return std::string("NDArray[np.") + depthName(type) + "]";
}

template <int type, typename P>
struct Argument<Image<type>, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& source)
      : value(imageFrom(source.value, source.name, type, false)) {}
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return imageAnnotation(type);
  }
};

template <int type, typename P>
struct Argument<ChangedImage<type>, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& source)
      : value(imageFrom(source.value, source.name, type, true)) {}
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return imageAnnotation(type);
  }
};

template <typename P>
struct Argument<BinaryImage, P> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  py::object owner;
  cv::Mat value;
  explicit Argument(const Source& source);
  cv::Mat& pass() {
    return value;
  }
  static std::string annotation() {
    return "NDArray[Any]";
  }
};
/// Checks that an array is a binary image; `owner` keeps its memory.
cv::Mat binaryImage(const Source& source, py::object& owner);
template <typename P>
Argument<BinaryImage, P>::Argument(const Source& source) : value(binaryImage(source, owner)) {}

template <>
struct Argument<Out, cv::Mat&> : ArgumentBase {
  static constexpr Given given = Given::kNever;
  static constexpr bool isReturned = true;
  static constexpr bool visitsSamples = true;
  cv::Mat value;
  explicit Argument(const Source& /*source*/) {}
  cv::Mat& pass() {
    return value;
  }
  py::object result() {
    return arrayOf(value);
  }
  static std::string annotation() {
    return "NDArray[Any]";
  }
};

/// The image of a watershed: both planes are copied in, and the markers back.
template <>
struct Argument<InOut, SJU_waterShedImage&> : ArgumentBase {
  static constexpr bool visitsSamples = true;
  cv::Mat gray;
  cv::Mat markers;
  py::object object;
  SJU_waterShedImage value;
  explicit Argument(const Source& source);
  SJU_waterShedImage& pass() {
    return value;
  }
  void finish();
  static std::string annotation() {
    return "SJU_waterShedImage";
  }
};

/// Defines the class of watershed images.
void defineWatershedImage(py::module_& module);

}  // namespace binding
