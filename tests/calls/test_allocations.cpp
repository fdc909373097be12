#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "calls.h"

// The allocation functions of the C library, which are replaced below. Those of the C++ library, of
// OpenCV and of Eigen call the replacements.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

struct Allocations {
  long live = 0;          ///< Blocks allocated less blocks freed.
  long untilFailure = 0;  ///< Number of the allocation that fails next; 0 if none does.
  bool forever = false;   ///< Whether all later allocations fail too.
  bool failed = false;
};
thread_local Allocations state;

bool fails() {
  if (state.untilFailure == 0 || --state.untilFailure > 0) {
    return false;
  }
  state.untilFailure = state.forever ? 1 : 0;
  state.failed = true;
  errno = ENOMEM;
  return true;
}

void* counted(void* block) {
  state.live += block != nullptr ? 1 : 0;
  return block;
}

}  // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc,readability-inconsistent-declaration-parameter-name):
// these functions replace those of the C library
extern "C" {
void* malloc(std::size_t size) {
  return fails() ? nullptr : counted(__libc_malloc(size));
}
void* calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : counted(__libc_calloc(count, size));
}
void* realloc(void* block, std::size_t size) {
  if (block == nullptr) {
    return malloc(size);
  }
  return fails() ? nullptr : __libc_realloc(block, size);
}
void* memalign(std::size_t alignment, std::size_t size) {
  return fails() ? nullptr : counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}
int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block != nullptr ? 0 : ENOMEM;
}
void free(void* block) {
  state.live -= block != nullptr ? 1 : 0;
  __libc_free(block);
}
}
// NOLINTEND(cppcoreguidelines-no-malloc,readability-inconsistent-declaration-parameter-name)

namespace {

/// What went wrong, with the number of the failing allocation that showed it first.
using Findings = std::map<std::string, long>;

/// Runs a call whose `number`-th allocation fails. Returns whether it has no such allocation.
bool runFailing(const calls::Row& row, unsigned seed, long number, Findings& findings) {
  const auto call = row.make(seed, 40);
  std::vector<calls::Numbers> before;
  for (int argument = 0; argument < call->count(); ++argument) {
    before.push_back(calls::numbersOf(*call, argument));
  }
  state.failed = false;
  state.untilFailure = number;
  try {
    call->run();
    state.untilFailure = 0;
    return !state.failed;
  } catch (const std::exception&) {
    state.untilFailure = 0;
  }
  for (int argument = 0; argument < call->count(); ++argument) {
    if (!calls::contains(row.incomplete, argument) &&
        calls::numbersOf(*call, argument) != before[static_cast<std::size_t>(argument)]) {
      findings.emplace("argument " + std::to_string(argument) + " changed", number);
    }
  }
  if (!isValid(*call)) {
    findings.emplace("an argument is not valid", number);
  }
  return false;
}

class EveryFunction : public testing::TestWithParam<calls::Row> {};

TEST_P(EveryFunction, SurvivesEachFailingAllocation) {
  const std::uint64_t expected = hashOf(GetParam(), 4);
  Findings findings;
  for (unsigned k = 0; k < 8; ++k) {
    state.forever = k % 2 == 1;
    bool finished = false;
    for (long number = 1; !finished; ++number) {
      long leaked = 0;
      for (int round = 0; round < 2; ++round) {  // the first may initialise what is kept
        const long live = state.live;
        finished = runFailing(GetParam(), k / 2, number, findings);
        leaked = state.live - live;
      }
      if (leaked != 0) {
        findings.emplace("a block is leaked", number);
      }
    }
  }
  EXPECT_EQ(findings, Findings());
  EXPECT_EQ(hashOf(GetParam(), 4), expected);
}

INSTANTIATE_TEST_SUITE_P(Table,
                         EveryFunction,
                         testing::ValuesIn(calls::table()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
