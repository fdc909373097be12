#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace program {

/// A number in a file whose byte order is the machine's, or the other one.
template <typename Value>
double rawNumber(const char* raw, bool swaps) {
  char bytes[sizeof(Value)];
  std::memcpy(bytes, raw, sizeof bytes);
  if (swaps) {
    std::reverse(bytes, bytes + sizeof bytes);
  }
  Value value{};
  std::memcpy(&value, bytes, sizeof value);
  return static_cast<double>(value);
}

/// Whether the bytes of a file in this order must be reversed on this machine.
inline bool mustSwap(bool isBigEndian) {
  const std::uint16_t probe = 1;
  char first = 0;
  std::memcpy(&first, &probe, 1);
  return isBigEndian == (first == 1);
}

}  // namespace program
