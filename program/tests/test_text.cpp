#include "support.h"

namespace program {
namespace {

class Text : public FolderTest {};

struct Good {
  const char* name;
  const char* content;
  const char* scan;
};

TEST_F(Text, ReadsTablesOfEveryKind) {
  const Good table[] = {
      {"commas", "0,0,5\n0,1,6\n", "[0,0,5 0,1,6]"},
      {"semicolons and header", "X [mm];Y;Z\r\n0;0;5\r\n0;1;6\r\n", "[0,0,5 0,1,6]"},
      {"tabs", "0\t0\t5\n0\t1\t6\n", "[0,0,5 0,1,6]"},
      {"runs of blanks, no last line end", "  0  0 5\n 0 1   +6.5", "[0,0,5 0,1,6.5]"},
      {"comments and blank lines", "# by hand\n\n// x y z\n0 0 5\n# second\n0 1 6\n\n",
       "[0,0,5 0,1,6]"},
      {"byte order mark", "\xEF\xBB\xBFx,y,z\n0,0,5\n0,1,6\n", "[0,0,5 0,1,6]"},
      {"columns by name, others may hold words", "kind,z,y,x\nedge,5,0,0\n,6,1,0\n",
       "[0,0,5 0,1,6]"},
      {"more columns than points need", "x,y,z,a,b,c,d,e,f\n0,0,5,1,1,1,1,1,1\n0,1,6,1,1,1,1,1,1\n",
       "[0,0,5 0,1,6]"},
      {"holes by nan, nothing, zeros", "0,0,5\n0,1,nan\n0,2,\n0,0,0\n0,4,6\n1,0,7\n1,1,7\n1,2,7\n",
       "[0,0,5 - - - 0,4,6][1,0,7 1,1,7 1,2,7]"},
      {"indices keep holes in their place", "line,sample,x,y,z\n3,1,0,1,5\n3,3,0,3,6\n4,0,1,0,7\n",
       "[- 0,1,5 - 0,3,6][1,0,7 - - -]"},
      {"index of the line alone", "line,x,y,z\n0,0,0,5\n0,0,1,5\n1,1,0,6\n1,1,1,6\n",
       "[0,0,5 0,1,5][1,0,6 1,1,6]"},
      {"a profile in each row", "5,5,5,5,5,5,5,5,5\n6,6,6,0,6,6,6,6,\n",
       "[0,0,5 0,1,5 0,2,5 0,3,5 0,4,5 0,5,5 0,6,5 0,7,5 0,8,5]"
       "[1,0,6 1,1,6 1,2,6 - 1,4,6 1,5,6 1,6,6 1,7,6 -]"},
  };
  for (const Good& good : table) {
    EXPECT_EQ(textOf(load(optionsFor(write("a.csv", good.content))).scan), good.scan) << good.name;
  }
}

TEST_F(Text, RefusesWithLineAndText) {
  const Good table[] = {
      {"word", "0,0,5\n0,1,6\n0,2,six\n0,3,6\n",
       "a.csv:3: expected a number in column 3, found "
       "'0,2,six'"},
      {"too few", "# c\n0 0 5\n0 1 6\n0 2\n", "a.csv:4: expected 3 columns, found '0 2'"},
      {"range", "0,0,5\n0,1,6\n0,1,1e999\n", "a.csv:3: expected a number"},
      {"hexadecimal", "0,0,5\n0,1,6\n0,1,0x10\n", "a.csv:3: expected a number"},
      {"header without z", "x,y,height\n0,0,5\n0,1,5\n", "a.csv:1: expected numbers, or a header"},
      {"prose", "Once upon a time\nthere was\n", "is no table of numbers"},
      {"two columns", "1,2\n3,4\n", "3 or more columns"},
      {"decimal commas", "1,5;2,5;3,5\n1,5;3,5;3,5\n", "commas for decimal points"},
      {"binary", "1,2,3\n1,2,\x01\x02\n", "a.csv:2: expected a number"},
      {"comments alone", "# x y z\n", "holds no rows of numbers"},
      {"lines backwards", "line,x,y,z\n1,0,0,5\n0,0,1,5\n",
       "a.csv:3: expected the lines in the order"},
      {"index is no number", "line,x,y,z\nnan,0,0,5\n", "a.csv:2: expected the lines in the order"},
      {"samples backwards", "line,sample,x,y,z\n0,1,0,0,5\n0,0,0,1,5\n",
       "a.csv:3: expected the samples in the order"},
      {"forged index", "line,sample,x,y,z\n0,0,0,0,5\n0,1e15,0,1,5\n",
       "a.csv:3: expected a smaller step"},
      {"nothing but holes", "0,0,0\n0,1,nan\n", "holds no measurement"},
      {"huge values", "0,0,1e30\n0,1,2e30\n", "holds no measurement"},
  };
  for (const Good& bad : table) {
    SCOPED_TRACE(bad.name);
    expectPart(failureOf(optionsFor(write("a.csv", bad.content))), bad.scan);
  }
  expectPart(failureOf(optionsFor(write("nul.csv", std::string("1,2,3\n1,\0,3\n", 12)))),
             "nul.csv:2: is no text");
  expectPart(failureOf(optionsFor(write("long.csv", std::string(9U << 20U, '1')))),
             "longer than 8 MB");
}

TEST_F(Text, SplitsPointsWhereTheFastAxisJumpsBack) {
  std::string content;
  for (int x = 0; x < 5; ++x) {
    for (int y = 7; y > 0; --y) {
      // A hole in each line has no place of its own.
      content += y == 4 ? "0 0 0\n" : std::to_string(x) + ' ' + std::to_string(y) + " 5\n";
    }
  }
  const LoadedScan loaded = load(optionsFor(write("a.xyz", content)));
  ASSERT_EQ(loaded.scan.size(), 5U);
  EXPECT_EQ(loaded.holes, 5);
  for (const Line& line : loaded.scan) {
    EXPECT_EQ(line.size(), 7U);
  }
}

TEST_F(Text, CountsStraysAndWhatIsNotPositive) {
  std::string content;
  for (int i = 0; i < 400; ++i) {
    content += std::to_string(i / 20) + " " + std::to_string(i % 20) +
               (i == 150   ? " 1e6\n"
                : i == 200 ? " -1\n"
                           : " 50\n");
  }
  const LoadedScan loaded = load(optionsFor(write("a.xyz", content)));
  EXPECT_EQ(loaded.samples, 400);
  EXPECT_EQ(loaded.strays, 1);
  EXPECT_EQ(loaded.notPositive, 1);
}

TEST_F(Text, TransposesAndLimits) {
  const std::string content = "line,x,y,z\n0,0,0,5\n0,0,1,6\n0,0,2,7\n1,1,0,8\n1,1,1,9\n1,1,2,10\n";
  InputOptions options = optionsFor(write("a.csv", content));
  options.transpose = true;
  EXPECT_EQ(textOf(load(options).scan), "[0,0,5 0,1,8][1,0,6 1,1,9][2,0,7 2,1,10]");
  options.transpose = false;
  options.scale = 2.0;
  options.roi = {0.0, 2.0, 0.0, 2.0, 11.0, 20.0};
  EXPECT_EQ(textOf(load(options).scan), "[- 0,2,12 -][2,0,16 2,2,18 -]");
}

}  // namespace
}  // namespace program
