#include <CLI/CLI.hpp>

#include "base/config_file.h"
#include "base/number.h"
#include "base/parameters.h"
#include "support.h"

namespace program {
namespace {

/// A command with a parameter, a word and a flag.
class Config : public FolderTest {
 protected:
  Config() : command_("", "trace"), parameters(command_, "Method") {
    parameters.add("corner.turn", Kind::angle, 30.0, "Least turn");
    parameters.addDerived("corner.arm", Kind::length, "10 spacings", "Arm");
    command_.add_option("--unit", unit);
    command_.add_option("--json", json);
    command_.add_flag("--both", both);
  }

  void parse(const std::string& arguments, const std::string& config) {
    command_.parse(arguments);
    readConfig(write("a.toml", config), command_);
    parameters.takeGiven();
  }

  CLI::App command_;
  Parameters parameters;
  std::string unit;
  std::string json;
  bool both = false;
};

TEST_F(Config, CommandLineComesFirstThenFileThenDefault) {
  parse("--corner-turn 40",
        "[trace]\ncorner-turn = 50\ncorner-arm = 2\nunit = 'm'\nboth = true\n"
        "[gaps]\nanything = 1\n");
  parameters.derive("corner.arm", 9.0);
  EXPECT_EQ(parameters.get("corner.turn"), 40.0);
  EXPECT_EQ(parameters.get("corner.arm"), 2.0);
  EXPECT_EQ(unit, "m");
  EXPECT_TRUE(both);
}

TEST_F(Config, PrintsWhatReadsBack) {
  parse("--corner-turn 40.25 --both", "");
  parameters.derive("corner.arm", 1.0 / 3.0);
  const std::string printed = configOf(command_, parameters);
  expectPart(printed, "corner-turn = 40.25");
  expectPart(printed, "# derived");
  const std::string again = write("b.toml", printed);
  CLI::App other("", "trace");
  Parameters same(other, "Method");
  same.add("corner.turn", Kind::angle, 30.0, "");
  same.addDerived("corner.arm", Kind::length, "", "");
  bool isBoth = false;
  other.add_flag("--both", isBoth);
  readConfig(again, other);
  same.takeGiven();
  EXPECT_EQ(same.get("corner.turn"), 40.25);
  EXPECT_EQ(same.get("corner.arm"), 1.0 / 3.0);
  EXPECT_TRUE(isBoth);
}

TEST_F(Config, RefusesWithLine) {
  const std::pair<const char*, const char*> table[] = {
      {"[trace]\ncorner-trun = 3\n", "a.toml:2: 'corner-trun' is not an option of 'trace'"},
      {"[trace]\njson = 'a.json'\n", "a.toml:2: 'json' is not an option"},
      {"[trace]\n\ncorner-turn = nan\n", "a.toml:3: "},
      {"[trace]\ncorner-turn = 200\n", "a.toml:2: "},
      {"[trace]\ncorner-turn = 2021-01-01\n", "a.toml:2: expected a number"},
      {"corner-turn = 3\n", "a.toml:1: 'corner-turn' belongs in a table"},
      {"[trace\n", "a.toml:1: "},
  };
  for (const auto& [content, message] : table) {
    CLI::App command("", "trace");
    Parameters own(command, "Method");
    own.add("corner.turn", Kind::angle, 30.0, "");
    command.add_option("--json", json);
    try {
      readConfig(write("a.toml", content), command);
      ADD_FAILURE() << content;
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.code(), ExitCode::usage);
      expectPart(failure.what(), message);
    }
  }
}

}  // namespace
}  // namespace program
