#pragma once

/// The names of C++ types, from which the stub and the tests learn what an argument or a field is.

#include <opencv2/core/mat.hpp>
#include <opencv2/core/types.hpp>
#include <string>
#include <type_traits>
#include <vector>

#include "arrays.h"

namespace binding {

template <typename T>
std::string numberText() {
  if constexpr (std::is_same_v<T, bool>) {
    return "bool";
  } else if constexpr (std::is_same_v<T, float>) {
    return "float";
  } else if constexpr (std::is_same_v<T, double>) {
    return "double";
  } else if constexpr (std::is_same_v<T, int>) {
    return "int";
  } else {
    static_assert(std::is_unsigned_v<T>);
    return "uint" + std::to_string(8 * sizeof(T));
  }
}

/// A record by its name, a number by its type, a list as `[item]`, several numbers as `double(3)`.
template <typename T>
std::string typeText() {
  if constexpr (!std::is_same_v<T, std::decay_t<T>> && !std::is_array_v<T>) {
    return typeText<std::decay_t<T>>();
  } else if constexpr (std::is_same_v<T, STesk3DLaserLine*>) {
    return "[[STesk3DPosition]]";
  } else if constexpr (std::is_same_v<T, STesk3DPosition*>) {
    return "[STesk3DPosition]";
  } else if constexpr (std::is_same_v<T, STeskXYZRGBDLaserLine*>) {
    return "[STeskXYZRGBDPoint]";
  } else if constexpr (std::is_same_v<T, const double*> || std::is_same_v<T, double(*)[3]> ||
                       std::is_same_v<T, const double(*)[3]>) {
    return "double(9)";
  } else if constexpr (std::is_pointer_v<T>) {
    return typeText<std::remove_pointer_t<T>>();
  } else if constexpr (IsVector<T>::value) {
    return "[" + typeText<typename T::value_type>() + "]";
  } else if constexpr (std::is_array_v<T>) {
    return typeText<std::remove_extent_t<T>>() + "(" + std::to_string(std::extent_v<T>) + ")";
  } else if constexpr (std::is_same_v<T, cv::Mat>) {
    return "image";
  } else if constexpr (std::is_same_v<T, SJU_waterShedImage>) {
    return "SJU_waterShedImage";
  } else if constexpr (IsRecord<T>::value) {
    return Fields<T>::name;
  } else if constexpr (Element<T>::kColumns > 1) {
    return numberText<typename Element<T>::Scalar>() + "(" + std::to_string(Element<T>::kColumns) +
           ")";
  } else {
    return numberText<T>();
  }
}

}  // namespace binding
