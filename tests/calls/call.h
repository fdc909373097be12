#pragma once

/// One call of an exported function with arguments of its own, built from the types of its
/// parameters, and the table of all such calls.

#include <array>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "archive.h"
#include "inputs.h"

namespace calls {

/// Holds what is passed for a parameter of type P.
template <typename P>
struct Held {
  std::decay_t<P> value{};
  P pass() {
    return value;
  }
};
template <typename T>
struct Held<T*> {
  std::remove_const_t<T> value{};
  T* pass() {
    return &value;
  }
};
template <typename T>
struct Held<T (*)[3]> {
  std::remove_const_t<T> value[3][3] = {};
  T (*pass())[3] {
    return value;
  }
};
template <>
struct Held<const double*> {
  double value[9] = {};
  const double* pass() {
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
struct HeldImage {
  Image value;
  cv::Mat& pass() {
    return value.view;
  }
};
template <>
struct Held<cv::Mat> : HeldImage {};
template <>
struct Held<cv::Mat&> : HeldImage {};
template <>
struct Held<const cv::Mat&> : HeldImage {};

class Call {
 public:
  virtual ~Call() = default;
  virtual void run() = 0;
  /// Number of arguments.
  [[nodiscard]] virtual int count() const = 0;
  /// Visits the numbers of an argument, or of the result at index `count()`.
  virtual void visit(int argument, const Visitor& visitor) = 0;
};

struct NoResult {};

inline int sizeOf(const std::vector<STesk3DPosition>& line) {
  return static_cast<int>(line.size());
}
inline int sizeOf(const PointerScan& scan) {
  return static_cast<int>(scan.lines.size());
}

template <typename R, typename... P>
class BoundCall : public Call {
 public:
  using Arguments = std::tuple<Held<P>...>;

  template <typename... Adjust>
  BoundCall(R (*function)(P...), Scene& scene, const Adjust&... adjust) : function_(function) {
    std::apply([&scene](auto&... held) { (fillArgument(scene, held.value), ...); }, arguments_);
    (adjust(scene, arguments_), ...);
    setCounts(std::index_sequence_for<P...>{});
  }

  void run() override {
    std::apply(
        [this](auto&... held) {
          if constexpr (std::is_void_v<R>) {
            function_(held.pass()...);
          } else {
            result_ = function_(held.pass()...);
          }
        },
        arguments_);
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

 private:
  /// Whether argument `I` is an int after a pointer to samples or lines, which is their number.
  template <std::size_t I>
  static constexpr bool isCount() {
    if constexpr (I > 0) {
      using Before = std::tuple_element_t<I - 1, std::tuple<P...>>;
      return std::is_same_v<std::tuple_element_t<I, std::tuple<P...>>, int> &&
             (std::is_same_v<Before, STesk3DPosition*> ||
              std::is_same_v<Before, STesk3DLaserLine*>);
    }
    return false;
  }

  template <std::size_t... I>
  void visitOne(int argument, const Visitor& visitor, std::index_sequence<I...> /*all*/) {
    ((!isCount<I>() && argument == static_cast<int>(I)
          ? walk(std::get<I>(arguments_).value, visitor)
          : void()),
     ...);
  }

  template <std::size_t... I>
  void setCounts(std::index_sequence<I...> /*all*/) {
    (setCount<I>(), ...);
  }
  template <std::size_t I>
  void setCount() {
    if constexpr (isCount<I>()) {
      std::get<I>(arguments_).value = sizeOf(std::get<I - 1>(arguments_).value);
    }
  }

  R (*function_)(P...);
  Arguments arguments_;
  std::conditional_t<std::is_void_v<R>, NoResult, std::decay_t<R>> result_{};
};
/// One exported function: how to build a call of it, and what it promises.
struct Row {
  std::string name;
  std::function<std::unique_ptr<Call>(unsigned seed, int size)> make;
  std::vector<int> incomplete;  ///< Arguments that an exception leaves valid but incomplete.
  std::vector<int> fixed;       ///< Arguments whose numbers must be consistent with the others.
  std::vector<int> indices;     ///< Arguments of which only the ints must be.
  int minSize = 0;              ///< Smallest size of input that is allowed.

  Row mayLose(std::initializer_list<int> arguments) && {
    incomplete = arguments;
    return std::move(*this);
  }
  Row keep(std::initializer_list<int> arguments) && {
    fixed = arguments;
    return std::move(*this);
  }
  Row keepInts(std::initializer_list<int> arguments) && {
    indices = arguments;
    return std::move(*this);
  }
  Row atLeast(int size) && {
    minSize = size;
    return std::move(*this);
  }
};

/// A row whose arguments are filled by their types and then adjusted.
template <typename R, typename... P, typename... Adjust>
Row row(const char* name, R (*function)(P...), Adjust... adjust) {
  const auto make = [=](unsigned seed, int size) -> std::unique_ptr<Call> {
    Scene scene(seed, size);
    return std::make_unique<BoundCall<R, P...>>(function, scene, adjust...);
  };
  return {name, make, {}, {}, {}, 0};
}

/// Picks argument `I` from a list of choices.
template <int I, typename... T>
auto at(T... choices) {
  return [=](Scene& scene, auto& arguments) {
    std::get<I>(arguments).value = scene.random.pick({choices...});
  };
}

/// Builds argument `I` by `build(scene)`.
template <int I, typename Build>
auto by(Build build) {
  return [=](Scene& scene, auto& arguments) { std::get<I>(arguments).value = build(scene); };
}

/// All exported functions by name.
const std::vector<Row>& table();

}  // namespace calls

/// Name and address of a function.
#define NAMED(function) #function, &(function)
