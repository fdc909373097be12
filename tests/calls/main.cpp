#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

#include "checks.h"

/// With `--hashes` or `--rounded`, prints the hash of each function's results instead of testing.
int main(int argc, char** argv) {
  const bool rounded = argc == 2 && std::strcmp(argv[1], "--rounded") == 0;
  if (rounded || (argc == 2 && std::strcmp(argv[1], "--hashes") == 0)) {
    for (const calls::Row& row : calls::table()) {
      std::printf("%s %s\n", row.name.c_str(), calls::resultsOf(row, rounded).c_str());
    }
    return 0;
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
