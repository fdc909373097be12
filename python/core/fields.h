#pragma once

/// Names, types and places of the fields of a record, from which its dtype and its class are made.

#include <pybind11/numpy.h>

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <vector>

namespace binding {

/// A field of a record.
template <typename Record, typename T>
struct Field {
  using Type = T;
  const char* name;
  T Record::*member;
  std::size_t offset;
};

/// The fields of a record in their order; see SCANLINE_RECORD.
template <typename Record>
struct Fields;

template <typename Record, typename = void>
struct IsRecord : std::false_type {};
template <typename Record>
struct IsRecord<Record, std::void_t<decltype(Fields<Record>::all)>> : std::true_type {};

template <typename T>
struct IsVector : std::false_type {};
template <typename T>
struct IsVector<std::vector<T>> : std::true_type {};

/// Whether the record holds no list, so that arrays of it have a dtype.
template <typename Record>
constexpr bool hasDtype() {
  return std::apply(
      [](const auto&... field) {
        return (!IsVector<typename std::decay_t<decltype(field)>::Type>::value && ...);
      },
      Fields<Record>::all);
}

constexpr std::size_t alignedUp(std::size_t offset, std::size_t alignment) {
  return (offset + alignment - 1) / alignment * alignment;
}

/// Whether the fields are listed in their order and fill the record, padding aside.
template <typename Record, typename... T>
constexpr bool fillRecord(const std::tuple<Field<Record, T>...>& fields) {
  return std::apply(
      [](const auto&... field) {
        std::size_t end = 0;
        bool inOrder = true;
        ((inOrder = inOrder && field.offset == alignedUp(end, alignof(T)),
          end = field.offset + sizeof(T)),
         ...);
        return inOrder && sizeof(Record) == alignedUp(end, alignof(Record));
      },
      fields);
}

/// Calls `action` with the name and the value of each field.
template <typename Record, typename Action>
void forEachField(Record& record, const Action& action) {
  using Plain = std::remove_const_t<Record>;
  std::apply([&](const auto&... field) { (action(field.name, record.*field.member), ...); },
             Fields<Plain>::all);
}

}  // namespace binding

#define SCANLINE_FIELD(Record, field) \
  (Field<Record, decltype(Record::field)>{#field, &Record::field, offsetof(Record, field)})

/// Describes a record by its fields, all of them and in their order.
#define SCANLINE_RECORD(Record, ...)                                             \
  template <>                                                                    \
  struct Fields<Record> {                                                        \
    static constexpr const char* name = #Record;                                 \
    static constexpr auto all =                                                  \
        std::make_tuple(PYBIND11_MAP_LIST(SCANLINE_FIELD, Record, __VA_ARGS__)); \
  };                                                                             \
  static_assert(fillRecord<Record>(Fields<Record>::all), "a field of " #Record " is missing")
