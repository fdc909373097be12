#include <gtest/gtest.h>

#include <iostream>
#include <string>
#include <vector>

#include "calls.h"

namespace {

/// What the words such as `split:3` do before the calls of a function.
std::vector<calls::Preparation> preparationsOf(const calls::Row& row,
                                               const std::vector<std::string>& words) {
  const std::string prefix = row.name + ':';
  std::vector<calls::Preparation> preparations;
  for (const std::string& word : words) {
    if (word.rfind(prefix, 0) == 0) {
      preparations.push_back({std::stoi(word.substr(prefix.size())), {}});
      if (const std::size_t value = word.find('='); value != std::string::npos) {
        preparations.back().replacement = std::stoi(word.substr(value + 1));
      }
    }
  }
  return preparations;
}

void listAllNumbers(const std::vector<std::string>& words) {
  for (const calls::Row& row : calls::table()) {
    const std::vector<calls::Preparation> preparations = preparationsOf(row, words);
    for (const std::string& word : words) {
      if (word.find(':') == std::string::npos) {
        calls::listNumbers(row, static_cast<unsigned>(std::stoul(word)), preparations, std::cout);
      }
    }
  }
}

}  // namespace

/// With `--hashes` or `--rounded`, lists the hash of each function's results instead of testing;
/// with `--numbers WORD...` the numbers of calls. A seed makes a call of each function, a word
/// `split:3` empties an argument of a function before, `split:3=7` replaces all its ints.
int main(int argc, char** argv) {
  const std::string option = argc >= 2 ? argv[1] : "";
  if (option == "--numbers") {
    listAllNumbers({argv + 2, argv + argc});
    return 0;
  }
  if (option == "--hashes" || option == "--rounded") {
    for (const calls::Row& row : calls::table()) {
      std::cout << calls::resultsOf(row, option == "--rounded") << '\n';
    }
    return 0;
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
