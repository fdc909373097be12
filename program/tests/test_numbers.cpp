#include <cmath>
#include <limits>

#include "base/number.h"
#include "input/text_layout.h"
#include "support.h"

namespace program {
namespace {

TEST(Numbers, ParsesFiniteDecimalsOnly) {
  const std::pair<const char*, double> good[] = {{"1", 1.0},        {"-.5", -0.5}, {"+2.50", 2.5},
                                                 {"010", 10.0},     {"1e3", 1e3},  {"0.1", 0.1},
                                                 {"1e-320", 1e-320}};
  for (const auto& [text, value] : good) {
    EXPECT_EQ(parseNumber(text), value) << text;
  }
  for (const char* text : {"", " 1", "1 ", "0x10", "nan", "inf", "-inf", "1e999", "1,5", "one",
                           "1.2.3", "--1", "+-1", "+"}) {
    EXPECT_EQ(parseNumber(text), std::nullopt) << text;
  }
}

TEST(Numbers, FieldsMayBeEmptyOrNotFinite) {
  double value = 0.0;
  EXPECT_TRUE(parseField("", value) && std::isnan(value));
  EXPECT_TRUE(parseField("-nan", value) && std::isnan(value));
  EXPECT_TRUE(parseField("inf", value) && std::isinf(value));
  EXPECT_FALSE(parseField("+-1", value));
  EXPECT_FALSE(parseField("1_000", value));
}

TEST(Numbers, WritesWhatReadsBack) {
  for (const double value : {0.1, 1.0 / 3.0, 1e300, 5e-324, -123456.789, 1e15}) {
    EXPECT_EQ(parseNumber(exact(value)), value);
    EXPECT_NEAR(*parseNumber(significant(value, 6)), value, std::abs(value) * 1e-5);
  }
  EXPECT_EQ(fixed(-0.001, 2), "0.00");
  EXPECT_EQ(fixed(1e300, 0).size(), 301U);
  EXPECT_EQ(grouped(1234567), "1 234 567");
  EXPECT_EQ(grouped(-123), "-123");
  EXPECT_EQ(grouped(-1234), "-1 234");
}

}  // namespace
}  // namespace program
