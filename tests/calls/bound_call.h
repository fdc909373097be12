#pragma once

/// Builds calls from the signatures of the functions.

#include <cstddef>
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "archive.h"
#include "inputs.h"

namespace calls {

/// Holds the argument for a parameter of type P.
template <typename P>
struct Held {
  std::decay_t<P> value{};
  P pass() {
    return value;
  }
};
/// One number or record, or nine numbers of a matrix.
template <typename T>
struct Held<T*> {
  static constexpr int kCount = std::is_same_v<T, const double> ? 9 : std::is_array_v<T> ? 3 : 1;
  std::remove_const_t<T> value[kCount] = {};
  T* pass() {
    return value;
  }
};
template <>
struct Held<STesk3DPosition*> {
  std::vector<STesk3DPosition> value;
  STesk3DPosition* pass() {
    return value.data();
  }
};
template <>
struct Held<STesk3DLaserLine*> {
  PointerScan value;
  STesk3DLaserLine* pass() {
    return value.lines.data();
  }
};
template <>
struct Held<STeskXYZRGBDLaserLine*> {
  ColourLine value;
  STeskXYZRGBDLaserLine* pass() {
    return &value.line;
  }
};
template <>
struct Held<cv::Mat&> {
  Image value;
  cv::Mat& pass() {
    return value.view;
  }
};
template <>
struct Held<const cv::Mat&> : Held<cv::Mat&> {};
template <>
struct Held<cv::Mat> : Held<cv::Mat&> {};

struct NoResult {};

template <typename R, typename... P>
class BoundCall : public Call {
 public:
  template <typename... Adjust>
  BoundCall(R (*function)(P...), Scene& scene, const Adjust&... adjust) : function_(function) {
    fillAll(scene, std::index_sequence_for<P...>{});
    (adjust(scene, arguments_), ...);
  }

  void run() override {
    const auto call = [this](auto&... held) { return function_(held.pass()...); };
    if constexpr (std::is_void_v<R>) {
      std::apply(call, arguments_);
    } else {
      result_ = std::apply(call, arguments_);
    }
  }

  [[nodiscard]] int count() const override {
    return sizeof...(P);
  }

  void visit(int argument, const Visitor& visitor) override {
    visitOne(argument, visitor, std::index_sequence_for<P...>{});
    if (argument == count()) {
      walk(result_, visitor);
    }
  }

  void clear(int argument) override {
    clearOne(argument, std::index_sequence_for<P...>{});
    visit(argument, [](Number number) {
      if (double* const* real = std::get_if<double*>(&number)) {
        **real = std::numeric_limits<double>::quiet_NaN();
      }
    });
  }

 private:
  template <std::size_t I>
  using Parameter = std::tuple_element_t<I, std::tuple<P...>>;

  /// Whether parameter I is the number of the samples or lines to which the preceding one points.
  template <std::size_t I>
  static constexpr bool isCount() {
    if constexpr (I > 0) {
      using Before = Parameter<I - 1>;
      return std::is_same_v<Parameter<I>, int> && (std::is_same_v<Before, STesk3DPosition*> ||
                                                   std::is_same_v<Before, STesk3DLaserLine*>);
    }
    return false;
  }

  template <std::size_t... I>
  void fillAll(Scene& scene, std::index_sequence<I...> /*all*/) {
    (fillOne<I>(scene), ...);
  }
  template <std::size_t I>
  void fillOne(Scene& scene) {
    auto& value = std::get<I>(arguments_).value;
    if constexpr (isCount<I>()) {
      value = std::is_same_v<Parameter<I - 1>, STesk3DPosition*> ? scene.size : scene.columns;
    } else if constexpr (std::is_same_v<Parameter<I>, int>) {
      value = scene.line;
    } else {
      fill(scene, value);
    }
  }

  template <std::size_t... I>
  void visitOne(int argument, const Visitor& visitor, std::index_sequence<I...> /*all*/) {
    ((argument == static_cast<int>(I) && !isCount<I>()
          ? walk(std::get<I>(arguments_).value, visitor)
          : void()),
     ...);
  }

  template <std::size_t... I>
  void clearOne(int argument, std::index_sequence<I...> /*all*/) {
    const auto renew = [](auto& held) { held = std::decay_t<decltype(held)>(); };
    ((argument == static_cast<int>(I) ? renew(std::get<I>(arguments_)) : void()), ...);
  }

  R (*function_)(P...);
  std::tuple<Held<P>...> arguments_;
  std::conditional_t<std::is_void_v<R>, NoResult, R> result_{};
};

/// A row whose arguments are filled by their types and then adjusted.
template <typename R, typename... P, typename... Adjust>
Row row(const char* name, R (*function)(P...), Adjust... adjust) {
  return {name, [=](unsigned seed, int size) -> std::unique_ptr<Call> {
            Scene scene(seed, size);
            return std::make_unique<BoundCall<R, P...>>(function, scene, adjust...);
          }};
}

/// Picks argument `I` from a list of choices.
template <int I, typename... T>
auto at(T... choices) {
  return [=](Scene& scene, auto& all) { std::get<I>(all).value = scene(choices...); };
}

/// Builds argument `I` by `build(scene)`.
template <int I, typename Build>
auto by(Build build) {
  return [=](Scene& scene, auto& all) { std::get<I>(all).value = build(scene); };
}

}  // namespace calls

/// Name and address of a function.
#define NAMED(function) #function, &(function)
