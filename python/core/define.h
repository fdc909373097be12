#pragma once

/// Defines the Python function of an exported function from the roles of its parameters.

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "argument_images.h"
#include "argument_lines.h"
#include "argument_lists.h"
#include "argument_objects.h"
#include "argument_values.h"
#include "documentation.h"
#include "type_text.h"

namespace binding {

/// What the stub and the tests are made from.
struct Signature {
  py::list parameters;     ///< Of (name, annotation, kind).
  py::list results;        ///< Of (name, annotation).
  py::list arguments;      ///< Those of C++ in their order: (name, type, role).
  std::string resultType;  ///< That of C++, or nothing.
  bool isChecked = false;  ///< Whether preconditions are checked here.
};

/// Puts a function's signature on record in `module`, and returns the type of its results: a named
/// tuple, or nothing if there are fewer than two.
py::object recordSignature(py::module_& module, const char* name, const Signature& signature);
/// The docstring: signature, text of the header, and how results come back.
std::string docstring(const FunctionText& text, const Signature& signature);
py::object packed(const py::object& type, const py::list& results);
/// Fails with the name of the argument that has the data, which the library's error lacks.
[[noreturn]] void failUnsuited(const char* argument, const std::length_error& error);

template <std::size_t>
using Handle = py::handle;

template <auto function, auto check, typename Type, typename... Role>
class Binding;

template <auto function, auto check, typename R, typename... P, typename... Role>
class Binding<function, check, R (*)(P...), Role...> {
  static_assert(sizeof...(P) == sizeof...(Role), "each parameter needs a role");
  using Arguments = std::tuple<Argument<Role, P>...>;
  using All = std::index_sequence_for<P...>;
  template <std::size_t I>
  using At = std::tuple_element_t<I, Arguments>;

 public:
  static void define(py::module_& module, const char* name) {
    const FunctionText& text = functionText(name);
    for (std::size_t i = 0; i < sizeof...(P); ++i) {
      names_[i] = text.parameters[i].name;
    }
    const Signature signature = signatureOf(All{});
    resultType_ = recordSignature(module, name, signature).release();
    const std::string doc = docstring(text, signature);
    defineWith(module, name, doc.c_str(), std::make_index_sequence<count(Given::kPosition)>{},
               std::make_index_sequence<count(Given::kKeyword)>{});
  }

 private:
  static constexpr std::size_t count(Given given) {
    return (std::size_t{Argument<Role, P>::given == given} + ... + 0U);
  }

  /// The parameters that Python gives, in its order: by position first.
  static constexpr auto order() {
    std::array<std::size_t, count(Given::kPosition) + count(Given::kKeyword) + 1> result{};
    constexpr Given kGiven[] = {Argument<Role, P>::given..., Given::kNever};
    std::size_t end = 0;
    for (const Given given : {Given::kPosition, Given::kKeyword}) {
      for (std::size_t i = 0; i < sizeof...(P); ++i) {
        if (kGiven[i] == given) {
          result[end++] = i;
        }
      }
    }
    return result;
  }

  template <std::size_t... Position, std::size_t... Keyword>
  static void defineWith(py::module_& module,
                         const char* name,
                         const char* doc,
                         std::index_sequence<Position...> /*positions*/,
                         std::index_sequence<Keyword...> /*keywords*/) {
    constexpr auto kOrder = order();
    constexpr std::size_t kFirst = sizeof...(Position);
    const auto call = [](Handle<Position>... given, Handle<Keyword>... lists) {
      const py::handle handles[] = {given..., lists..., py::handle()};
      return callWith(handles, All{});
    };
    if constexpr (sizeof...(Keyword) == 0) {
      module.def(name, call, py::arg(names_[kOrder[Position]])..., doc);
    } else {
      module.def(name, call, py::arg(names_[kOrder[Position]])..., py::kw_only(),
                 (py::arg(names_[kOrder[kFirst + Keyword]]) = py::none())..., doc);
    }
  }

  template <std::size_t... I>
  static py::object callWith(const py::handle* handles, std::index_sequence<I...> /*all*/) {
    constexpr auto kOrder = order();
    Source sources[sizeof...(P) + 1] = {Source{{}, Name{names_[I]}}..., Source{{}, Name{""}}};
    for (std::size_t i = 0; i + 1 < kOrder.size(); ++i) {
      sources[kOrder[i]].value = handles[i];
    }
    Arguments arguments(sources[I]...);
    if constexpr (check != nullptr) {
      check(pass<I>(arguments)...);
    }
    py::list results;
    if constexpr (std::is_void_v<R>) {
      run([&] { function(pass<I>(arguments)...); });
    } else {
      R result{};
      run([&] { result = function(pass<I>(arguments)...); });
      results.append(toPython(result));
    }
    (std::get<I>(arguments).finish(), ...);
    (appendResult(results, std::get<I>(arguments)), ...);
    return packed(py::reinterpret_borrow<py::object>(resultType_), results);
  }

  template <std::size_t I>
  static decltype(auto) pass(Arguments& arguments) {
    if constexpr (std::is_same_v<std::tuple_element_t<I, std::tuple<Role...>>, Count>) {
      return std::get<I - 1>(arguments).size();
    } else {
      return std::get<I>(arguments).pass();
    }
  }

  /// Without the interpreter's lock if the call visits samples.
  template <typename Call>
  static void run(const Call& call) {
    if constexpr ((Argument<Role, P>::visitsSamples || ...)) {
      try {
        const py::gil_scoped_release unlocked;
        call();
      } catch (const std::length_error& error) {
        failUnsuited(names_[0], error);
      }
    } else {
      call();
    }
  }

  template <typename One>
  static void appendResult(py::list& results, One& argument) {
    if constexpr (One::isReturned) {
      results.append(argument.result());
    }
  }

  template <std::size_t... I>
  static Signature signatureOf(std::index_sequence<I...> /*all*/) {
    Signature signature;
    signature.isChecked = check != nullptr;
    if constexpr (!std::is_void_v<R>) {
      signature.resultType = typeText<R>();
      signature.results.append(py::make_tuple("result", resultAnnotation()));
    }
    (addToSignature<At<I>, std::tuple_element_t<I, std::tuple<Role...>>>(signature, names_[I]),
     ...);
    (signature.arguments.append(py::make_tuple(names_[I], argumentText<Role, P>(), Role::text)),
     ...);
    return signature;
  }
  template <typename OneRole, typename Parameter>
  static std::string argumentText() {
    const std::string text = typeText<Parameter>();
    return std::is_same_v<OneRole, OneLine> && text[1] == '[' ? text.substr(1, text.size() - 2)
                                                              : text;
  }
  static std::string resultAnnotation() {
    if constexpr (isNumber<R>) {
      return numberAnnotation<R>();
    } else {
      return Fields<R>::name;
    }
  }
  template <typename One, typename OneRole>
  static void addToSignature(Signature& signature, const char* name) {
    if constexpr (!std::is_same_v<OneRole, Count>) {
      const std::string annotation = One::annotation();
      if constexpr (One::given == Given::kPosition) {
        signature.parameters.append(py::make_tuple(name, annotation, "position"));
      } else if constexpr (One::given == Given::kKeyword) {
        const std::string taken =
            std::is_same_v<OneRole, Grown> ? annotation : "list[" + annotation + "]";
        signature.parameters.append(py::make_tuple(name, taken + " | None", "keyword"));
      }
      if constexpr (One::isReturned) {
        signature.results.append(py::make_tuple(name, annotation));
      }
    }
  }

  static inline const char* names_[sizeof...(P) + 1] = {};
  static inline py::handle resultType_;
};

}  // namespace binding

/// Defines an exported function: SCANLINE_DEFINE(module, function, role of each parameter...).
#define SCANLINE_DEFINE(module, function, ...) \
  (Binding<&(function), nullptr, decltype(&(function)), __VA_ARGS__>::define(module, #function))
/// The same with a function `check` of the same parameters, which throws py::value_error if the
/// arguments break a precondition.
#define SCANLINE_DEFINE_CHECKED(module, function, check, ...) \
  (Binding<&(function), &(check), decltype(&(function)), __VA_ARGS__>::define(module, #function))
