#include "checks.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <iomanip>
#include <sstream>

namespace calls {

namespace {

std::uint64_t bitsOf(Number number, bool rounded) {
  return std::visit(
      [rounded](auto at) -> std::uint64_t {
        if constexpr (std::is_same_v<decltype(at), Broken>) {
          return 0xBADBADBAD;
        } else if constexpr (std::is_floating_point_v<std::remove_pointer_t<decltype(at)>>) {
          double value = *at;
          if (std::isnan(value)) {
            return 0x7FF8000000000000;
          }
          if (rounded) {
            char text[32];
            std::snprintf(text, sizeof text, "%.6e", std::abs(value) < 1e-8 ? 0.0 : value);
            value = std::strtod(text, nullptr);
          }
          std::uint64_t bits = 0;
          std::memcpy(&bits, &value, sizeof bits);
          return bits;
        } else {
          return static_cast<std::uint64_t>(*at);
        }
      },
      number);
}

}  // namespace

Numbers numbersOf(Call& call, int argument) {
  Numbers numbers;
  call.visit(argument, [&numbers](Number number) { numbers.push_back(bitsOf(number, false)); });
  return numbers;
}

std::uint64_t hashOf(Call& call, bool rounded) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (int argument = 0; argument <= call.count(); ++argument) {
    call.visit(argument, [&](Number number) {
      hash = (hash ^ bitsOf(number, rounded)) * 0x100000001B3;
      hash ^= hash >> 32;
    });
  }
  return hash;
}

std::uint64_t hashOfSeeds(const Row& row, int first, int last, bool rounded) {
  std::uint64_t hash = 0;
  for (int seed = first; seed < last; ++seed) {
    const int size = seed % 16 == 15 ? 150 : 10 + seed * 7 % 41;
    const auto call = row.make(static_cast<unsigned>(seed), size);
    call->run();
    hash = hash * 31 + hashOf(*call, rounded);
  }
  return hash;
}

std::string resultsOf(const Row& row, bool rounded) {
  std::ostringstream text;
  text << std::hex << std::setw(16) << std::setfill('0') << hashOfSeeds(row, 0, 128, rounded);
  return text.str();
}

}  // namespace calls
