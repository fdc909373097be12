#include <gtest/gtest.h>
#include <pthread.h>

#include <climits>
#include <cmath>
#include <cstddef>
#include <exception>
#include <iterator>
#include <limits>
#include <string>
#include <type_traits>
#include <variant>

#include "calls.h"

namespace {

using calls::Call;
using calls::Row;

const double kSpecialReals[] = {std::nan(""),
                                HUGE_VAL,
                                -HUGE_VAL,
                                0.0,
                                -0.0,
                                5e-324,
                                -1e-310,
                                std::numeric_limits<double>::max(),
                                -std::numeric_limits<double>::max(),
                                0.0001,
                                std::nextafter(0.0001, 0.0),
                                std::nextafter(0.0001, 1.0),
                                1e8,
                                -2147483649.0};
const int kSpecialInts[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};

/// Replaces number `place` of those that may have any value by a special value. Of a long argument,
/// only some numbers are candidates. Returns the number of candidates.
int replaceOne(Call& call, const Row& row, int place, std::size_t special) {
  int count = 0;
  const auto put = [&](auto* at, auto value) {
    *at = count++ == place ? static_cast<std::remove_pointer_t<decltype(at)>>(value) : *at;
  };
  for (int argument = 0; argument < call.count(); ++argument) {
    const std::size_t step = calls::numbersOf(call, argument).size() / 15 + 1;
    std::size_t index = 0;
    call.visit(argument, [&](calls::Number number) {
      if (index++ % step != 0 || calls::contains(row.fixed, argument)) {
        return;
      }
      if (double* const* real = std::get_if<double*>(&number)) {
        put(*real, kSpecialReals[special]);
      } else if (float* const* single = std::get_if<float*>(&number)) {
        put(*single, kSpecialReals[special]);
      } else if (int* const* whole = std::get_if<int*>(&number);
                 whole != nullptr && !calls::contains(row.indices, argument)) {
        put(*whole, kSpecialInts[special % std::size(kSpecialInts)]);
      }
    });
  }
  return count;
}

class EveryInput : public testing::TestWithParam<Row> {};

TEST_P(EveryInput, MayHoldSpecialValues) {
  const Row& row = GetParam();
  const int places = replaceOne(*row.make(1, 20), row, -1, 0);
  for (int place = 0; place < places; ++place) {
    for (std::size_t special = 0; special < std::size(kSpecialReals); ++special) {
      const auto call = row.make(1, 20);
      replaceOne(*call, row, place, special);
      try {
        call->run();
      } catch (const std::exception&) {  // e.g. for heights that are too far apart
      }
      EXPECT_TRUE(isValid(*call)) << "special value " << special << " at number " << place;
    }
  }
}

TEST_P(EveryInput, MayBeTiny) {
  for (int size = GetParam().minSize; size <= 3; ++size) {
    for (unsigned seed = 0; seed < 20; ++seed) {
      const auto call = GetParam().make(seed, size);
      call->run();
      EXPECT_TRUE(isValid(*call)) << "size " << size << ", seed " << seed;
    }
  }
}

TEST_P(EveryInput, NeedsLittleStack) {
  const auto call = GetParam().make(1, 20000);
  const auto run = [](void* argument) -> void* {
    static_cast<Call*>(argument)->run();
    return nullptr;
  };
  pthread_attr_t attributes;
  pthread_t thread = {};
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
  ASSERT_EQ(pthread_create(&thread, &attributes, run, call.get()), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
  EXPECT_TRUE(isValid(*call));
}

INSTANTIATE_TEST_SUITE_P(Table,
                         EveryInput,
                         testing::ValuesIn(calls::table()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
