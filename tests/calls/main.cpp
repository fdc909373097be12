#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "calls.h"

/// With `--hashes` or `--rounded`, lists the hash of each function's results instead of testing.
int main(int argc, char** argv) {
  const std::string option = argc == 2 ? argv[1] : "";
  if (option == "--hashes" || option == "--rounded") {
    for (const calls::Row& row : calls::table()) {
      std::cout << calls::resultsOf(row, option == "--rounded") << '\n';
    }
    return 0;
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
