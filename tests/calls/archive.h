#pragma once

/// Visits every number of an argument of any type, to compare, hash or replace it.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <opencv2/core.hpp>
#include <type_traits>
#include <utility>
#include <vector>

#include <scanline/scanline.h>
#include "calls.h"

namespace calls {

/// An image that is a view of a larger one, whose other bytes must not change.
struct Image {
  static constexpr std::uint8_t kMargin = 0xA5;
  cv::Mat whole;
  cv::Mat view;
};

/// A scan in pointer form, with the samples to which it points.
struct PointerScan {
  std::vector<std::vector<STesk3DPosition>> scan;
  std::vector<STesk3DLaserLine> lines;
};

struct ColourLine {
  std::vector<STeskXYZRGBDPoint> points;
  STeskXYZRGBDLaserLine line;
};

/// Converts to the type of any field, to count the fields of a record.
struct AnyField {
  template <typename T>
  operator T() const;  // NOLINT(google-explicit-constructor)
};

template <typename T, std::size_t... I>
auto takes(std::index_sequence<I...>) -> decltype(T{(void(I), AnyField{})...}, std::true_type{});
template <typename T>
std::false_type takes(...);

template <typename T, std::size_t count = 0>
constexpr std::size_t fieldCount() {
  if constexpr (decltype(takes<T>(std::make_index_sequence<count + 1>{}))::value) {
    return fieldCount<T, count + 1>();
  }
  return count;
}

/// Calls `action` with all fields of a record.
template <typename T, typename Action>
void withFields(T& record, const Action& action) {
#define SPLIT_INTO(number, ...)                \
  if constexpr (fieldCount<T>() == (number)) { \
    auto& [__VA_ARGS__] = record;              \
    action(__VA_ARGS__);                       \
  }
  if constexpr (std::is_same_v<T, SQO_planeCalibPara>) {
    action(record.levelMatrix, record.planeHeight, record.invLevelMatrix);
  } else if constexpr (std::is_same_v<T, SQO_basicFeatureGap>) {
    action(record.lineIdx, record.reserved1, record.gapStart, record.gapEnd, record.reserved2);
  } else {
    static_assert(fieldCount<T>() >= 2 && fieldCount<T>() <= 9);
    SPLIT_INTO(2, a, b)
    SPLIT_INTO(3, a, b, c)
    SPLIT_INTO(4, a, b, c, d)
    SPLIT_INTO(5, a, b, c, d, e)
    SPLIT_INTO(6, a, b, c, d, e, f)
    SPLIT_INTO(7, a, b, c, d, e, f, g)
    SPLIT_INTO(8, a, b, c, d, e, f, g, h)
    SPLIT_INTO(9, a, b, c, d, e, f, g, h, i)
  }
#undef SPLIT_INTO
}

template <typename T, typename = void>
struct IsTree : std::false_type {};
template <typename T>
struct IsTree<T, std::void_t<decltype(T::treeNodes)>> : std::true_type {};

template <typename T>
struct IsVector : std::false_type {};
template <typename T>
struct IsVector<std::vector<T>> : std::true_type {};

template <typename T>
void walk(cv::Point_<T>& point, const Visitor& visit) {
  visit(&point.x);
  visit(&point.y);
}

template <typename T>
void walk(cv::Point3_<T>& point, const Visitor& visit) {
  visit(&point.x);
  visit(&point.y);
  visit(&point.z);
}

template <typename T>
void walk(T& value, const Visitor& visit);

template <typename T>
void walk(std::vector<T>& list, const Visitor& visit) {
  visit(std::uint64_t{list.size()});
  for (T& value : list) {
    walk(value, visit);
  }
}

inline void walk(PointerScan& scan, const Visitor& visit) {
  walk(scan.scan, visit);
}

inline void walk(ColourLine& line, const Visitor& visit) {
  walk(line.points, visit);
}

template <typename T>
void walkPixels(cv::Mat& image, const Visitor& visit) {
  for (int row = 0; row < image.rows; ++row) {
    for (int k = 0; k < image.cols * image.channels(); ++k) {
      walk(image.ptr<T>(row)[k], visit);
    }
  }
}

inline bool marginIsKept(const Image& image) {
  cv::Mat rest = image.whole.clone();
  for (int row = 1; row + 1 < rest.rows; ++row) {
    const std::size_t pixel = rest.elemSize();
    std::fill_n(rest.ptr(row) + pixel, pixel * (rest.cols - 3), Image::kMargin);
  }
  return std::all_of(rest.datastart, rest.dataend, [](auto b) { return b == Image::kMargin; });
}

inline void walk(Image& image, const Visitor& visit) {
  cv::Mat& view = image.view;
  visit(static_cast<std::uint64_t>(view.rows));
  visit(static_cast<std::uint64_t>(view.cols));
  visit(static_cast<std::uint64_t>(view.type()));
  if ((view.data == nullptr && view.total() > 0) || !marginIsKept(image)) {
    visit(Broken{});
  } else if (view.depth() == CV_8U) {
    walkPixels<std::uint8_t>(view, visit);
  } else if (view.depth() == CV_32S) {
    walkPixels<int>(view, visit);
  } else if (view.depth() == CV_32F) {
    walkPixels<float>(view, visit);
  } else {
    walkPixels<double>(view, visit);
  }
}

template <typename T>
void walk(T& value, const Visitor& visit) {
  if constexpr (std::is_same_v<T, int> || std::is_floating_point_v<T>) {
    visit(&value);
  } else if constexpr (std::is_integral_v<T>) {
    visit(std::uint64_t{value});
  } else if constexpr (std::is_array_v<T>) {
    for (auto& element : value) {
      walk(element, visit);
    }
  } else if constexpr (!std::is_empty_v<T>) {
    withFields(value, [&visit](auto&... field) { (walk(field, visit), ...); });
  }
  if constexpr (IsTree<T>::value) {
    if (value.treeNodes.empty()) {
      visit(Broken{});
    }
  }
}

}  // namespace calls
