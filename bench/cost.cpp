/// Runs one call on one input, for scripts/cost.py: scanline_cost NAME SIZE
///
/// Without arguments lists the cases: name, growth and smallest size.

#include "cost.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <iostream>

/// The function that callgrind counts in. It makes no tail call, which would end the count.
extern "C" [[gnu::noinline]] void scanlineMeasuredCall(const std::function<void()>& call) {
  call();
  std::atomic_signal_fence(std::memory_order_seq_cst);
}

namespace {

const char* text(cost::Growth growth) {
  switch (growth) {
    case cost::Growth::kNone:
      return "none";
    case cost::Growth::kLinear:
      return "linear";
    default:
      return "quadratic";
  }
}

std::vector<cost::Case> allCases() {
  std::vector<cost::Case> all;
  for (auto cases :
       {cost::lineCases, cost::cornerCases, cost::shapeCases, cost::treeCases, cost::mapCases}) {
    for (cost::Case& one : cases()) {
      all.push_back(one);
    }
  }
  return all;
}

}  // namespace

int main(int argc, char** argv) {
  for (const cost::Case& one : allCases()) {
    if (argc != 3) {
      std::cout << one.name << ' ' << text(one.growth) << ' ' << one.size << '\n';
    } else if (std::strcmp(one.name, argv[1]) == 0) {
      scanlineMeasuredCall(one.prepare(std::atoi(argv[2])));
      return EXIT_SUCCESS;
    }
  }
  return argc == 3 ? EXIT_FAILURE : EXIT_SUCCESS;
}
