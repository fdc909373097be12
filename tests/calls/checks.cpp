#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "calls.h"

namespace calls {

namespace {

std::uint64_t bitsOf(double value, bool rounded) {
  if (std::isnan(value)) {
    return 0x7FF8000000000000;
  }
  if (rounded) {
    // The last digits may differ between mathematics libraries, and tiny values may be noise.
    char text[32];
    std::snprintf(text, sizeof text, "%.6e", std::abs(value) < 1e-8 ? 0.0 : value);
    value = std::strtod(text, nullptr);
  }
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

std::uint64_t bitsOf(Number number, bool rounded) {
  return std::visit(
      [rounded](auto at) -> std::uint64_t {
        if constexpr (std::is_same_v<decltype(at), Broken>) {
          return 0xBADBADBAD;
        } else if constexpr (std::is_same_v<decltype(at), std::uint64_t>) {
          return at;
        } else if constexpr (std::is_same_v<decltype(at), int*>) {
          return static_cast<std::uint64_t>(*at);
        } else {
          return bitsOf(static_cast<double>(*at), rounded);
        }
      },
      number);
}

}  // namespace

bool contains(const std::vector<int>& arguments, int argument) {
  return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
}

Numbers numbersOf(Call& call, int argument) {
  Numbers numbers;
  call.visit(argument, [&numbers](Number number) { numbers.push_back(bitsOf(number, false)); });
  return numbers;
}

bool isValid(Call& call) {
  bool valid = true;
  for (int argument = 0; argument <= call.count(); ++argument) {
    call.visit(argument, [&valid](Number number) {
      valid = valid && !std::holds_alternative<Broken>(number);
    });
  }
  return valid;
}

int sizeOf(unsigned seed) {
  return seed % 16 == 15 ? 150 : 10 + static_cast<int>(seed * 7 % 41);
}

std::uint64_t hashOf(const Row& row, int seeds, bool rounded) {
  std::uint64_t hash = 0;
  for (unsigned seed = 0; seed < static_cast<unsigned>(seeds); ++seed) {
    const auto call = row.make(seed, sizeOf(seed));
    call->run();
    for (int argument = 0; argument <= call->count(); ++argument) {
      call->visit(argument, [&](Number number) {
        hash = (hash ^ bitsOf(number, rounded)) * 0x100000001B3;
        hash ^= hash >> 32;
      });
    }
  }
  return hash;
}

std::string resultsOf(const Row& row, bool rounded) {
  char hash[17];
  std::snprintf(hash, sizeof hash, "%016" PRIx64, hashOf(row, 128, rounded));
  return row.name + ' ' + hash;
}

}  // namespace calls
