#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace CLI {
class Option;
class Validator;
}  // namespace CLI

namespace program {

/// A finite decimal number that fills the whole text: no hexadecimal, no "nan", no blanks.
std::optional<double> parseNumber(std::string_view text);

/// Whether a number begins with a plus sign, which std::from_chars does not take.
bool hasPlus(std::string_view text);

/// Accepts a number from `min` to `max`, both inclusive.
CLI::Validator numberIn(double min, double max);
/// Accepts a number above 0 and up to `max`.
CLI::Validator positiveUpTo(double max);
/// Accepts a whole number from `min` to `max`, both inclusive.
CLI::Validator countIn(long long min, long long max);
/// Accepts 0 and odd whole numbers up to `max`.
CLI::Validator oddCountUpTo(long long max);

/// A number with a fixed count of decimals; never "-0.00".
std::string fixed(double value, int decimals);
/// The shortest text that reads back as the same number.
std::string exact(double value);
/// A number with about `digits` significant digits, without an exponent where possible.
std::string significant(double value, int digits);
/// A count with its thousands separated: 960 000.
std::string grouped(long long count);
/// A count with its noun: 1 line, 2 000 lines.
std::string counted(long long count, const std::string& noun);
std::string counted(std::size_t count, const std::string& noun);

}  // namespace program
