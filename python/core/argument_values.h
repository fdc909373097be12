#pragma once

/// Numbers, records and matrices as arguments and results.

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "images.h"
#include "roles.h"
#include "values.h"

namespace binding {

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
    : ResultBase {
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
struct Argument<Out, double (*)[3]> : ResultBase {
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
struct Argument<Out, cv::Point3_<double>&> : ResultBase {
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

}  // namespace binding
