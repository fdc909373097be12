#include <gtest/gtest.h>

#include <functional>

#include "program_test.h"

namespace program {
namespace {

/// What an option means, it means in every command: each describes the same plate the same way.
class Meaning : public ProgramTest {
 protected:
  Meaning() {
    save("plate.npy", plateScan());
  }
};

struct Command {
  const char* arguments;
  const char* table;
};

const Command kCommands[] = {{"calibrate SCAN --plane heights", "planes"},
                             {"trace SCAN", "trees"},
                             {"trace SCAN --edges lower", "nodes"},
                             {"gaps SCAN", "gaps"},
                             {"gaps SCAN", "centre_lines"},
                             {"arcs SCAN", "tracks"},
                             {"split SCAN", "objects"},
                             {"line SCAN --line 60 --extractor corners", "features"}};

std::string onScan(std::string arguments, const std::string& scan) {
  return arguments.replace(arguments.find("SCAN"), 4, scan);
}

Scan changed(Scan scan, const std::function<void(STesk3DPoint&)>& change) {
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        change(sample.pt3D);
      }
    }
  }
  return scan;
}

/// Expects equal words and counts, and numbers equal within `tolerance`.
void expectSame(const std::vector<Row>& rows, const std::vector<Row>& wanted, double tolerance) {
  ASSERT_EQ(rows.size(), wanted.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const auto& [column, value] : wanted[i]) {
      const Json& own = rows[i].at(column);
      if (value.is_number() && own.is_number()) {
        EXPECT_NEAR(own.get<double>(), value.get<double>(), tolerance) << column << " of row " << i;
      } else {
        EXPECT_EQ(own, value) << column << " of row " << i;
      }
    }
  }
}

TEST_F(Meaning, HeightsScaledValuesAndColumnsAreReadAsTheSameScan) {
  const Scan scan = plateScan();
  Scan transposed(scan.front().size(), Line(scan.size()));
  for (std::size_t l = 0; l < scan.size(); ++l) {
    for (std::size_t i = 0; i < scan[l].size(); ++i) {
      const STesk3DPoint& p = scan[l][i].pt3D;
      transposed[i][l].pt3D = {p.y, p.x, p.z};
    }
  }
  // Heights of 1.0 and more, so that none is taken for missing.
  save("heights.npy", changed(scan, [](STesk3DPoint& p) { p.z = 300.0 - p.z; }));
  save("small.npy", changed(scan, [](STesk3DPoint& p) {
         p = {p.x / 1024.0, p.y / 1024.0, p.z / 1024.0};
       }));
  save("columns.npy", transposed);
  for (const auto& [arguments, table] : kCommands) {
    SCOPED_TRACE(arguments);
    const std::vector<Row> wanted = rowsOf(jsonOf(onScan(arguments, "plate.npy")), table);
    EXPECT_FALSE(wanted.empty());
    const auto variant = [&](const char* scanAndOptions) {
      SCOPED_TRACE(scanAndOptions);
      return rowsOf(jsonOf(onScan(arguments, scanAndOptions)), table);
    };
    expectSame(variant("small.npy --scale 1024"), wanted, 1e-6);
    expectSame(variant("columns.npy --transpose"), wanted, 1e-9);
    if (std::string(table) != "planes") {  // whose heights are distances from another origin
      expectSame(variant("heights.npy --z-is-height"), wanted, 1e-6);
    }
  }
}

TEST_F(Meaning, TheRegionOfInterestLimitsWhatIsFound) {
  for (const auto& [arguments, table] : kCommands) {
    if (std::string(table) != "nodes" && std::string(table) != "features") {
      continue;
    }
    SCOPED_TRACE(arguments);
    const Json json = jsonOf(onScan(arguments, "plate.npy --roi -1 100 2 22 1 1000"));
    EXPECT_GT(json.at("input").at("outside_roi"), 10000);
    for (const Row& row : rowsOf(json, table)) {
      EXPECT_GT(row.at("y"), 1.5);
      EXPECT_LT(row.at("y"), 22.5);
    }
  }
  EXPECT_EQ(rowsOf(jsonOf("split plate.npy --roi -1 100 -1 22 1 1000"), "objects").size(), 1U);
  EXPECT_EQ(run("arcs plate.npy --roi -1 100 -1 22 1 1000").code, 4);
}

TEST_F(Meaning, ZIsTheHeightOverThePlaneAndDistanceWithoutOne) {
  const struct {
    const char* plane;
    const char* meaning;
    double rod;  ///< z of its top
  } table[] = {{"heights", "height over the plane", 2.0 * plate::kRodRadius},
               {"none", "distance", 250.0 + 0.03 * 30.0 - 0.02 * plate::kRodY - 8.0}};
  for (const auto& [plane, meaning, rod] : table) {
    const Json json = jsonOf(std::string("line plate.npy --line 60 --extractor peaks "
                                         "--peak-scale 15 --plane ") +
                             plane);
    EXPECT_EQ(json.at("axes").at("z_is"), meaning);
    double nearest = 1e9;
    for (const Row& row : rowsOf(json, "features")) {
      nearest = std::min(nearest, std::abs(row.at("z").get<double>() - rod));
    }
    EXPECT_LT(nearest, 0.2) << plane;
  }
}

TEST_F(Meaning, ASavedPlaneAndASavedScanGiveTheSameAsThePlaneItself) {
  const std::vector<Row> wanted = rowsOf(jsonOf("trace plate.npy"), "trees");
  EXPECT_EQ(run("calibrate plate.npy --save plane.json --save-scan level.npy").code, 0);
  expectSame(rowsOf(jsonOf("trace plate.npy --plane plane.json"), "trees"), wanted, 1e-9);
  const Json calibrated = jsonOf("calibrate level.npy");
  EXPECT_NEAR(calibrated.at("plane").at("tilt_deg"), 0.0, 0.01);
  EXPECT_EQ(rowsOf(jsonOf("trace level.npy --plane none"), "trees").size(), wanted.size());
}

TEST_F(Meaning, APrintedConfigurationGivesTheSameResultAgain) {
  for (const auto& [arguments, table] : kCommands) {
    SCOPED_TRACE(arguments);
    const std::string call = onScan(arguments, "plate.npy");
    const Run printed = run(call + " --unit cm --print-config");
    EXPECT_EQ(printed.code, 0) << printed.errors;
    write("all.toml", printed.text);
    const Json json = jsonOf(call + " --config all.toml");
    EXPECT_EQ(json.at("input").at("unit"), "cm");
    expectSame(rowsOf(json, table), rowsOf(jsonOf(call), table), 0.0);
    for (const auto& [name, parameter] : json.at("parameters").items()) {
      EXPECT_EQ(parameter.at("from"), "given") << name;
    }
  }
}

TEST_F(Meaning, TablesInFilesAreTheSame) {
  for (const auto& [arguments, table] : {Command{"trace SCAN", "nodes"},
                                         {"gaps SCAN", "nodes"},
                                         {"arcs SCAN", "arcs"},
                                         {"split SCAN", "objects"}}) {
    SCOPED_TRACE(arguments);
    const Json json = jsonOf(onScan(arguments, "plate.npy --csv result.csv"));
    std::string csv;
    for (const Json& column : json.at(table).at("columns")) {
      csv += (csv.empty() ? "" : ",") + column.get<std::string>();
    }
    const std::string written = contentOf(path("result.csv"));
    EXPECT_EQ(written.substr(0, written.find('\r')), csv);
    EXPECT_EQ(static_cast<std::size_t>(std::count(written.begin(), written.end(), '\n')),
              json.at(table).at("rows").size() + 1);
  }
}

/// Heights of 40 x 60 samples as text, whose distances are about 100.
std::string profiles(const std::function<double(int, int)>& z) {
  std::string text;
  test::Noise noise;
  for (int l = 0; l < 40; ++l) {
    for (int i = 0; i < 60; ++i) {
      text += (i == 0 ? "" : ",") + std::to_string(z(l, i) + 0.01 * noise.bell());
    }
    text += '\n';
  }
  return text;
}

TEST_F(Meaning, DoubtfulPlanesAreWarnedOf) {
  const struct {
    const char* shape;
    std::string text;
    std::vector<std::string> warnings;
    const char* chosen;
  } table[] = {
      {"level", profiles([](int, int) { return 100.0; }), {}, "heights"},
      {"tilted by 17 deg", profiles([](int l, int) { return 100.0 + 0.3 * l; }), {}, "heights"},
      {"tilted by 35 deg",
       profiles([](int l, int) { return 100.0 + 0.7 * l; }),
       {"tilted-plane"},
       "heights"},
      {"upright", profiles([](int l, int) { return 100.0 + 4.0 * l; }), {"no-plane"}, "none"}};
  for (const auto& [shape, text, warnings, chosen] : table) {
    SCOPED_TRACE(shape);
    write("a.csv", text);
    const bool isFound = std::string(chosen) != "none";
    const Json json = jsonOf("calibrate a.csv", isFound ? 0 : 4);
    EXPECT_EQ(warningsOf(json), warnings);
    EXPECT_EQ(json.at("plane").at("chosen"), chosen);
  }
  std::string flat;
  for (int l = 0; l < 12; ++l) {
    flat += "50,50,50,50,50,50,50,50,50,50,50,50\n";
  }
  write("a.csv", flat);
  const Json json = jsonOf("calibrate a.csv");
  EXPECT_EQ(warningsOf(json), std::vector<std::string>{"plane-fallback"});
  EXPECT_EQ(json.at("plane").at("chosen"), "region");
  EXPECT_EQ(json.at("plane").at("refused").size(), 1U);
}

}  // namespace
}  // namespace program
