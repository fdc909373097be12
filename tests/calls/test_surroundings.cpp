#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <clocale>
#include <cmath>
#include <fstream>
#include <locale>
#include <opencv2/core.hpp>
#include <string>
#include <thread>
#include <vector>
#if defined(__x86_64__)
#include <xmmintrin.h>
#endif

#include <scanline/geometry.h>
#include "calls.h"

namespace {

using calls::Row;

/// The state of the thread and the process that no call may change.
std::vector<std::string> surroundings() {
  std::vector<std::string> state = {
      std::to_string(std::fegetround()), std::setlocale(LC_ALL, nullptr), std::locale().name(),
      std::to_string(cv::getNumThreads()), std::to_string(cv::theRNG().state)};
#if defined(__x86_64__)
  std::fenv_t environment;
  std::fegetenv(&environment);
  state.push_back(std::to_string(environment.__control_word));
  state.push_back(std::to_string(_mm_getcsr() & ~_MM_EXCEPT_MASK));
#endif
  return state;
}

TEST(Surroundings, AreUnchanged) {
  std::fenv_t usual;
  std::fegetenv(&usual);
  std::setlocale(LC_ALL, "C.UTF-8");
  cv::theRNG().state = 4711;
  for (const int rounding : {FE_TONEAREST, FE_TOWARDZERO}) {
    for (const Row& row : calls::table()) {
      for (unsigned seed = 0; seed < 16; ++seed) {
        const auto call = row.make(seed, 40);
        std::fesetround(rounding);
        const auto before = surroundings();
        call->run();
        const auto after = surroundings();
        std::fesetenv(&usual);
        EXPECT_EQ(after, before) << row.name;
      }
    }
  }
  std::setlocale(LC_ALL, "C");
}

TEST(Output, IsTwoMessagesAtMost) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  for (const Row& row : calls::table()) {
    for (const int size : {row.minSize, 40}) {
      row.make(1, size)->run();
    }
  }
  STesk3DPoint center = {};
  STesk3DPoint direction = {};
  fitLine3DLeastSquares({{1.0, 2.0, 3.0}, {std::nan(""), 1.0, 2.0}}, center, direction);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(
      testing::internal::GetCapturedStderr(),
      "Error: \xb5\xe3\xbc\xaf\xca\xfd\xc1\xbf\xb1\xd8\xd0\xeb\xb4\xf3\xd3\xda\xb5\xc8\xd3\xda"
      "2\xa3\xa1\n"
      "Error: \xcc\xd8\xd5\xf7\xd6\xb5\xb7\xd6\xbd\xe2\xca\xa7\xb0\xdc\xa3\xa1\n");
}

TEST(Threads, GiveTheResultsOfOneThread) {
  std::vector<std::uint64_t> expected;
  for (const Row& row : calls::table()) {
    expected.push_back(hashOf(row, 16));
  }
  std::vector<std::vector<std::uint64_t>> found(8, expected);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < found.size(); ++t) {
    threads.emplace_back([&found, t] {
      const std::vector<Row>& table = calls::table();
      for (std::size_t k = 0; k < table.size(); ++k) {
        const std::size_t at = (k + t / 2 * 11) % table.size();  // two threads in each function
        found[t][at] = hashOf(table[at], 16);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (const auto& hashes : found) {
    EXPECT_EQ(hashes, expected);
  }
}

/// The lines of a file, each up to its first bracket.
std::vector<std::string> namesIn(const char* path) {
  std::ifstream file(path);
  std::vector<std::string> names;
  for (std::string line; std::getline(file, line);) {
    names.push_back(line.substr(0, line.find('(')));
  }
  return names;
}

TEST(Table, HoldsTheExportedFunctions) {
  std::vector<std::string> names;
  for (const Row& row : calls::table()) {
    names.push_back(row.name);
  }
  std::sort(names.begin(), names.end());
  std::vector<std::string> exported = namesIn(EXPORTED_FUNCTIONS);
  std::sort(exported.begin(), exported.end());
  EXPECT_EQ(names, exported);
}

// After an intended change: scanline_call_tests --rounded > tests/calls/results.txt
TEST(Results, MatchTheRecordedOnes) {
  const std::vector<std::string> expected = namesIn(RESULTS);
  ASSERT_EQ(expected.size(), calls::table().size());
  for (std::size_t k = 0; k < expected.size(); ++k) {
    EXPECT_EQ(resultsOf(calls::table()[k], true), expected[k]);
  }
}

}  // namespace
