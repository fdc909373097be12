#pragma once

/// Walks over every number of an argument, whatever its type: to compare, to hash, to replace.

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <opencv2/core.hpp>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <scanline/scanline.h>

namespace calls {

/// What must never be: a tree without nodes, an image with a size but no data or with a changed
/// margin.
struct Broken {};

/// Where a number is. Sizes are only shown.
using Number = std::variant<double*,
                            float*,
                            int*,
                            std::uint32_t*,
                            std::uint64_t*,
                            bool*,
                            std::uint8_t*,
                            const std::size_t*,
                            Broken>;
using Visitor = std::function<void(Number)>;

/// An image that is a view of a larger one, whose other pixels must stay.
struct Image {
  cv::Mat whole;
  cv::Mat view;
};

/// Whether the margin of an image still holds its bytes.
bool marginIsKept(const Image& image);

/// A scan in pointer form with what it points to.
struct PointerScan {
  std::vector<std::vector<STesk3DPosition>> scan;
  std::vector<STesk3DLaserLine> lines;
};

struct ColourLine {
  std::vector<STeskXYZRGBDPoint> points;
  STeskXYZRGBDLaserLine line;
};

/// Takes the place of any field, to count those of a record.
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
  if constexpr (std::is_same_v<T, SQO_planeCalibPara>) {
    action(record.levelMatrix, record.planeHeight, record.invLevelMatrix);
  } else if constexpr (std::is_same_v<T, SQO_basicFeatureGap>) {
    action(record.lineIdx, record.reserved1, record.gapStart, record.gapEnd, record.reserved2);
  } else if constexpr (fieldCount<T>() == 2) {
    auto& [a, b] = record;
    action(a, b);
  } else if constexpr (fieldCount<T>() == 3) {
    auto& [a, b, c] = record;
    action(a, b, c);
  } else if constexpr (fieldCount<T>() == 4) {
    auto& [a, b, c, d] = record;
    action(a, b, c, d);
  } else if constexpr (fieldCount<T>() == 5) {
    auto& [a, b, c, d, e] = record;
    action(a, b, c, d, e);
  } else if constexpr (fieldCount<T>() == 6) {
    auto& [a, b, c, d, e, f] = record;
    action(a, b, c, d, e, f);
  } else if constexpr (fieldCount<T>() == 7) {
    auto& [a, b, c, d, e, f, g] = record;
    action(a, b, c, d, e, f, g);
  } else if constexpr (fieldCount<T>() == 8) {
    auto& [a, b, c, d, e, f, g, h] = record;
    action(a, b, c, d, e, f, g, h);
  } else {
    auto& [a, b, c, d, e, f, g, h, i] = record;
    action(a, b, c, d, e, f, g, h, i);
  }
}

template <typename T, typename = void>
struct IsTree : std::false_type {};
template <typename T>
struct IsTree<T, std::void_t<decltype(T::treeNodes)>> : std::true_type {};

inline void walk(Image& image, const Visitor& visit);
inline void walk(PointerScan& scan, const Visitor& visit);
inline void walk(ColourLine& line, const Visitor& visit);

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
  const std::size_t size = list.size();
  visit(&size);
  for (T& value : list) {
    walk(value, visit);
  }
}

template <typename T>
void walk(T& value, const Visitor& visit) {
  if constexpr (std::is_arithmetic_v<T>) {
    visit(&value);
  } else if constexpr (std::is_array_v<T>) {
    for (auto& element : value) {
      walk(element, visit);
    }
  } else if constexpr (!std::is_empty_v<T>) {
    withFields(value, [&visit](auto&... field) { (walk(field, visit), ...); });
    if constexpr (IsTree<T>::value) {
      if (value.treeNodes.empty()) {
        visit(Broken{});
      }
    }
  }
}

template <typename T>
void walkPixels(cv::Mat& image, const Visitor& visit) {
  for (int row = 0; row < image.rows; ++row) {
    for (int k = 0; k < image.cols * image.channels(); ++k) {
      visit(&image.ptr<T>(row)[k]);
    }
  }
}

inline void walk(Image& image, const Visitor& visit) {
  cv::Mat& view = image.view;
  const std::size_t layout[] = {static_cast<std::size_t>(view.rows),
                                static_cast<std::size_t>(view.cols),
                                static_cast<std::size_t>(view.type())};
  visit(&layout[0]);
  visit(&layout[1]);
  visit(&layout[2]);
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

inline void walk(PointerScan& scan, const Visitor& visit) {
  walk(scan.scan, visit);
  for (STesk3DLaserLine& line : scan.lines) {
    const auto count = static_cast<std::size_t>(line.nPositionCnt);
    visit(&count);
    visit(&line.lineTag);
  }
}

inline void walk(ColourLine& line, const Visitor& visit) {
  walk(line.points, visit);
}

}  // namespace calls
