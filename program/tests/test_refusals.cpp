#include <gtest/gtest.h>

#include <utility>

#include "program_test.h"

namespace program {
namespace {

/// What the program turns down, or finds nothing in, with its code and its reason.
class Refusals : public ProgramTest {
 protected:
  Refusals() {
    save("plate.npy", plateScan());
  }
};

TEST_F(Refusals, TooFewSamplesAreNoPlane) {
  write("one.csv", "1,2,30\n");
  write("row.csv", "1,1,30\n1,2,31\n1,3,32\n1,4,33\n");
  const char* why = "fewer than three samples, or all on one line";
  for (const char* arguments :
       {"calibrate one.csv --plane region", "calibrate one.csv --plane hole",
        "calibrate row.csv --plane heights",
        "trace plate.npy --plane region --region 0 0.2 0 0.2"}) {
    const Run result = run(arguments);
    EXPECT_EQ(result.code, 4) << arguments;
    expectPart(result.errors, why);
  }
}

TEST_F(Refusals, NothingFoundLeavesTheOutputsAndACode) {
  save("bare.npy", test::makeScan({}, [](double, double) { return 0.0; }));
  for (const char* arguments :
       {"trace bare.npy", "gaps bare.npy", "arcs bare.npy", "split bare.npy"}) {
    SCOPED_TRACE(arguments);
    const Json json = jsonOf(arguments, 4);
    EXPECT_EQ(json.at("input").at("lines"), 60);
  }
}

TEST_F(Refusals, WhatHasNoEffectOrContradictsItselfIsRefused) {
  const std::pair<const char*, const char*> table[] = {
      {"trace plate.npy --region 0 1 0 1", "--region has no effect without --plane region"},
      {"trace plate.npy --colours 0 1", "--colours has no effect without --picture"},
      {"trace plate.npy --colours 2 1 --picture a.png", "MIN must be less than MAX"},
      {"trace plate.npy --smooth-window 4", "is not an odd whole number"},
      {"trace plate.npy --roi 1 0 0 1 0 1", "X0 must be less than X1"},
      {"trace plate.npy --z-is-height --z-is-distance", "--z-is-height"},
      {"gaps plate.npy --gap-width-max 0.1", "Give --gap-width-min"},
      {"gaps plate.npy --gap-width-min 900", "Give --gap-width-max"},
      {"gaps plate.npy --tree-seen 101", "is not a number from 0 to 100"},
      {"arcs plate.npy --arc-radius-min 5 --arc-radius-max 4",
       "--arc-radius-min (5.000) must be less than --arc-radius-max (4.000)"},
      {"split plate.npy --split-waist 101", "is not a number from 0 to 100"},
      {"split plate.npy --plane none", "split needs the belt"},
      {"register plate.npy plate.npy --points a.csv", "A and B are the same file"},
      {"register plate.npy b.npy --plane heights", "coordinates of the files"},
      {"info plate.npy --plane heights", "as it was read"},
      {"line plate.npy --line 60 --extractor peaks --jump-z 1", "has no effect on the extractor"},
      {"line plate.npy --line 120 --extractor peaks", "the scan has lines 0 to 119"},
      {"make bench --output a.npy --objects 3", "--objects has no effect on 'bench'"},
      {"calibrate plate.npy --plane none --save a.json", "--save has no effect"},
      {"tracce plate.npy", "'tracce' is no command"},
      {"trace plate.npy --json - --csv -", "cannot share the standard output"}};
  for (const auto& [arguments, message] : table) {
    const Run result = run(arguments);
    EXPECT_EQ(result.code, 2) << arguments;
    expectPart(result.errors, message);
    EXPECT_EQ(result.text, "") << arguments;
  }
}

TEST_F(Refusals, HelpListsEveryOptionOnLinesThatFit) {
  for (const char* command :
       {"info", "calibrate", "trace", "gaps", "arcs", "split", "register", "line", "make"}) {
    SCOPED_TRACE(command);
    const Run help = run(std::string(command) + " --help");
    EXPECT_EQ(help.code, 0);
    expectPart(help.text, "Usage: scanline " + std::string(command));
    expectPart(help.text, "--overwrite");
    expectPart(help.text, "Example: scanline " + std::string(command));
    std::istringstream lines(help.text);
    std::string line;
    while (std::getline(lines, line)) {
      EXPECT_LE(line.size(), 80U) << line;
    }
  }
  expectPart(run("--version").text, "scanline ");
}

}  // namespace
}  // namespace program
