#include "base/number.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace program {
namespace {

/// Accepts the numbers that `isGood` accepts; else the message is that the text is not `wanted`.
template <typename IsGood>
CLI::Validator numberThat(IsGood isGood, const std::string& wanted) {
  return {[isGood, wanted](std::string& text) {
            const std::optional<double> value = parseNumber(text);
            return value && isGood(*value) ? std::string{} : "'" + text + "' is not " + wanted;
          },
          ""};
}

}  // namespace

bool hasPlus(std::string_view text) {
  return text.size() > 1 && text[0] == '+' && text[1] != '-';
}

std::optional<double> parseNumber(std::string_view text) {
  text.remove_prefix(hasPlus(text) ? 1 : 0);
  double value = 0.0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

CLI::Validator numberIn(double min, double max) {
  return numberThat([=](double value) { return value >= min && value <= max; },
                    "a number from " + exact(min) + " to " + exact(max));
}

CLI::Validator positiveUpTo(double max) {
  return numberThat([=](double value) { return value > 0.0 && value <= max; },
                    "a number above 0, up to " + exact(max));
}

CLI::Validator countIn(long long min, long long max) {
  return numberThat(
      [=](double value) {
        return value == std::floor(value) && value >= static_cast<double>(min) &&
               value <= static_cast<double>(max);
      },
      "a whole number from " + std::to_string(min) + " to " + std::to_string(max));
}

CLI::Validator oddCountUpTo(long long max) {
  return numberThat(
      [=](double value) {
        return value == 0.0 ||
               (value > 0.0 && value <= static_cast<double>(max) && std::fmod(value, 2.0) == 1.0);
      },
      "an odd whole number up to " + std::to_string(max) + ", or 0 for none");
}

std::string fixed(double value, int decimals) {
  std::array<char, 400> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                          std::chars_format::fixed, decimals);
  std::string result(text.data(), error == std::errc{} ? end : text.data());
  const bool isZero = result.find_first_not_of("-0.") == std::string::npos;
  if (isZero && !result.empty() && result.front() == '-') {
    result.erase(0, 1);
  }
  return result;
}

std::string exact(double value) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return {text.data(), error == std::errc{} ? end : text.data()};
}

std::string significant(double value, int digits) {
  const double size = std::abs(value);
  if (!(size >= 1e-6 && size < 1e15)) {
    return exact(value);
  }
  const int before = static_cast<int>(std::floor(std::log10(size))) + 1;
  return fixed(value, std::max(0, digits - before));
}

std::string grouped(long long count) {
  std::string digits = std::to_string(count);
  for (std::ptrdiff_t at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > (count < 0 ? 1 : 0);
       at -= 3) {
    digits.insert(static_cast<std::size_t>(at), " ");
  }
  return digits;
}

std::string counted(long long count, const std::string& noun) {
  return grouped(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string counted(std::size_t count, const std::string& noun) {
  return counted(static_cast<long long>(count), noun);
}

}  // namespace program
