#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include "allocations.h"
#include "checks.h"

namespace {

using calls::Call;
using calls::Row;

/// What went wrong, with the number of the failing allocation that showed it first.
using Findings = std::map<std::string, long>;

/// Whether the argument keeps the promise that its row makes for exceptions.
bool keepsPromise(Call& call, int argument, const Row& row, const calls::Numbers& before) {
  const auto& incomplete = row.incomplete;
  if (std::find(incomplete.begin(), incomplete.end(), argument) == incomplete.end()) {
    return calls::numbersOf(call, argument) == before;
  }
  bool valid = true;
  call.visit(argument, [&valid](calls::Number number) {
    valid = valid && !std::holds_alternative<calls::Broken>(number);
  });
  return valid;
}

/// Runs a call whose `number`-th allocation fails, and those after it as well if `forever`.
/// Returns whether the call has no such allocation.
bool runFailing(const Row& row, unsigned seed, long number, bool forever, Findings& findings) {
  const auto call = row.make(seed, 40);
  std::vector<calls::Numbers> before;
  for (int argument = 0; argument < call->count(); ++argument) {
    before.push_back(calls::numbersOf(*call, argument));
  }
  calls::failAllocations(number, forever);
  try {
    call->run();
    return !calls::stopFailing();
  } catch (const std::exception&) {
    calls::stopFailing();
  }
  for (int argument = 0; argument < call->count(); ++argument) {
    if (!keepsPromise(*call, argument, row, before[static_cast<std::size_t>(argument)])) {
      findings.emplace("argument " + std::to_string(argument), number);
    }
  }
  return false;
}

class EveryFunction : public testing::TestWithParam<Row> {};

TEST_P(EveryFunction, SurvivesEachFailingAllocation) {
  const Row& row = GetParam();
  const std::uint64_t expected = calls::hashOfSeeds(row, 0, 4);
  Findings findings;
  for (unsigned k = 0; k < 8; ++k) {
    bool finished = false;
    for (long number = 1; !finished; ++number) {
      long leaked = 0;
      for (int round = 0; round < 2; ++round) {  // the first may set up what stays for good
        const long live = calls::liveBlocks();
        finished = runFailing(row, k / 2, number, k % 2 == 1, findings);
        leaked = calls::liveBlocks() - live;
      }
      if (leaked != 0) {
        findings.emplace("leak", number);
      }
    }
  }
  EXPECT_EQ(findings, Findings());
  EXPECT_EQ(calls::hashOfSeeds(row, 0, 4), expected);
}

INSTANTIATE_TEST_SUITE_P(Table,
                         EveryFunction,
                         testing::ValuesIn(calls::table()),
                         [](const auto& test) { return test.param.name; });

}  // namespace

namespace calls {
/// Names a row in messages.
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}
}  // namespace calls
