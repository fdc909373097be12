#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <ostream>
#include <string>

#include "calls.h"

namespace calls {

namespace {

template <typename Bits, typename Real>
std::string bitsOf(const char* format, Real value) {
  value = std::isnan(value) ? std::numeric_limits<Real>::quiet_NaN() : value;
  Bits bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  char text[24];
  std::snprintf(text, sizeof text, format, bits);
  return text;
}

std::string wordOf(const Number& number) {
  if (double* const* real = std::get_if<double*>(&number)) {
    return bitsOf<std::uint64_t>("d%016" PRIx64, **real);
  }
  if (float* const* single = std::get_if<float*>(&number)) {
    return bitsOf<std::uint32_t>("f%08" PRIx32, **single);
  }
  if (int* const* whole = std::get_if<int*>(&number)) {
    return "i" + std::to_string(**whole);
  }
  const std::uint64_t* size = std::get_if<std::uint64_t>(&number);
  return size != nullptr ? "n" + std::to_string(*size) : "broken";
}

void prepare(Call& call, const Preparation& preparation) {
  if (!preparation.replacement) {
    call.clear(preparation.argument);
    return;
  }
  call.visit(preparation.argument, [&preparation](Number number) {
    if (int* const* whole = std::get_if<int*>(&number)) {
      **whole = *preparation.replacement;
    }
  });
}

void listArgument(Call& call, int argument, std::ostream& out) {
  const char* space = "";
  call.visit(argument, [&](Number number) {
    out << space << wordOf(number);
    space = " ";
  });
  out << '\n';
}

}  // namespace

void listNumbers(const Row& row,
                 unsigned seed,
                 const std::vector<Preparation>& preparations,
                 std::ostream& out) {
  const auto call = row.make(seed, sizeOf(seed));
  for (const Preparation& preparation : preparations) {
    prepare(*call, preparation);
  }
  out << row.name << ' ' << seed << ' ' << call->count() << '\n';
  for (int argument = 0; argument < call->count(); ++argument) {
    listArgument(*call, argument, out);
  }
  call->run();
  for (int argument = 0; argument <= call->count(); ++argument) {
    listArgument(*call, argument, out);
  }
}

}  // namespace calls
