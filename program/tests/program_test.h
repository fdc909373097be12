#pragma once

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "made_scan.h"
#include "output/scan_file.h"
#include "support.h"

namespace program {

using Json = nlohmann::json;
/// A row of a table: its cells by the names of their columns.
using Row = std::map<std::string, Json>;

inline std::vector<Row> rowsOf(const Json& json, const std::string& table) {
  std::vector<Row> rows;
  const Json& columns = json.at(table).at("columns");
  for (const Json& cells : json.at(table).at("rows")) {
    Row& row = rows.emplace_back();
    for (std::size_t c = 0; c < columns.size(); ++c) {
      row[columns[c]] = cells.at(c);
    }
  }
  return rows;
}

inline std::vector<std::string> warningsOf(const Json& json) {
  std::vector<std::string> codes;
  for (const Row& row : rowsOf(json, "warnings")) {
    codes.push_back(row.at("code"));
  }
  return codes;
}

/// Runs the program in a folder of the test's own, as a user does.
class ProgramTest : public FolderTest {
 protected:
  struct Run {
    int code;
    std::string text;
    std::string errors;
  };

  Run run(const std::string& arguments) {
    const std::string call =
        "cd '" + path(".") + "' && " SCANLINE_PROGRAM " " + arguments + " > text.out 2> errors.out";
    const int status = std::system(call.c_str());
    return {WEXITSTATUS(status), contentOf(path("text.out")), contentOf(path("errors.out"))};
  }

  /// The JSON output of a run that has to end with a code.
  Json jsonOf(const std::string& arguments, int code = 0) {
    const Run result = run(arguments + " --json result.json --overwrite");
    EXPECT_EQ(result.code, code) << arguments << ": " << result.errors;
    return Json::parse(contentOf(path("result.json")));
  }

  void save(const std::string& name, const Scan& scan) {
    Messages messages(true);
    OutputFiles files(true);
    addScanFile(files, path(name), scan, extentOf(scan), messages);
    files.publish();
  }
};

/// What stands on the plate of plateScan(), in its coordinates; heights are over the plate.
namespace plate {
constexpr double kSlopeX = 0.03;
constexpr double kSlopeY = -0.02;
constexpr double kBoxX[] = {20.0, 45.0};
constexpr double kBoxY[] = {4.0, 12.0};
constexpr double kBoxHeight = 6.0;
constexpr double kSlotY = 18.05;  // its walls stand between samples
constexpr double kSlotWidth = 1.6;
constexpr double kSlotDepth = 1.2;
constexpr double kRodY = 30.0;
constexpr double kRodRadius = 4.0;
constexpr double kRodX[] = {5.0, 55.0};
}  // namespace plate

/// A tilted plate with a box, a slot across all lines and a rod along x, as distances.
inline Scan plateScan() {
  using namespace plate;
  test::Sampling sampling;
  sampling.lines = 120;
  Scan scan = test::makeScan(sampling, [](double x, double y) {
    const double d = y - kRodY;
    if (x > kBoxX[0] && x < kBoxX[1] && y > kBoxY[0] && y < kBoxY[1]) {
      return kBoxHeight;
    }
    if (std::abs(y - kSlotY) < 0.5 * kSlotWidth) {
      return -kSlotDepth;
    }
    const bool isRod = std::abs(d) < kRodRadius && x > kRodX[0] && x < kRodX[1];
    return isRod ? kRodRadius + std::sqrt(kRodRadius * kRodRadius - d * d) : 0.0;
  });
  for (Line& line : scan) {
    for (std::size_t i = 0; i < line.size(); ++i) {
      STesk3DPoint& p = line[i].pt3D;
      line[i].nPointIdx = static_cast<int>(i);
      p.z += p.z > 0.0 ? kSlopeX * p.x + kSlopeY * p.y : 0.0;
    }
  }
  return scan;
}

}  // namespace program
