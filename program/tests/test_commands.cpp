#include <gtest/gtest.h>

#include <algorithm>
#include <opencv2/imgcodecs.hpp>

#include "program_test.h"

namespace program {
namespace {

using namespace plate;

constexpr double kDegrees = 180.0 / 3.141592653589793;

/// Each command on a scan whose contents are known.
class Commands : public ProgramTest {
 protected:
  Commands() {
    save("plate.npy", plateScan());
  }
};

/// The rows with a number within a range.
std::vector<Row> within(const std::vector<Row>& rows,
                        const std::string& column,
                        double from,
                        double to) {
  std::vector<Row> found;
  std::copy_if(rows.begin(), rows.end(), std::back_inserter(found), [&](const Row& row) {
    const double value = row.at(column);
    return value > from && value < to;
  });
  return found;
}

TEST_F(Commands, InfoDescribesTheScanAsItWasRead) {
  const Json json = jsonOf("info plate.npy --unit cm");
  const Json& input = json.at("input");
  EXPECT_EQ(input.at("unit"), "cm");
  EXPECT_EQ(input.at("lines"), 120);
  EXPECT_EQ(input.at("samples"), 400);
  EXPECT_NEAR(input.at("spacing").at("line"), 0.5, 1e-9);
  EXPECT_NEAR(input.at("spacing").at("sample"), 0.1, 1e-9);
  EXPECT_NEAR(input.at("noise"), 0.02, 0.003);
  EXPECT_NEAR(input.at("extent").at("y").at(1), 39.9, 1e-9);
  EXPECT_EQ(rowsOf(json, "sample_counts").at(0).at("count"), 48000);
  EXPECT_EQ(rowsOf(json, "planes").size(), 7U);
}

TEST_F(Commands, CalibrateFindsThePlateByEveryMethodThatCan) {
  const double tilt = kDegrees * std::atan(std::hypot(kSlopeX, kSlopeY));
  for (const char* method : {"auto", "heights", "farthest", "region --region 0 60 19.5 25"}) {
    const Json plane = jsonOf(std::string("calibrate plate.npy --plane ") + method).at("plane");
    EXPECT_NEAR(plane.at("tilt_deg"), tilt, 0.05) << method;
    EXPECT_GT(plane.at("on_plane"), 0.5) << method;
    EXPECT_NEAR(plane.at("residual"), 0.02, 0.01) << method;
  }
}

/// Lines on which a node of a type lies at a place across the box.
std::size_t nodesAt(const Json& json, double y, double z, const std::string& type) {
  const auto near =
      within(within(rowsOf(json, "nodes"), "y", y - 0.5, y + 0.5), "z", z - 0.4, z + 0.4);
  return static_cast<std::size_t>(std::count_if(
      near.begin(), near.end(), [&](const Row& node) { return node.at("type") == type; }));
}

TEST_F(Commands, TraceFollowsTheEdgesOfTheBoxAndNamesThemAsTheyAreDrawn) {
  const double lines = (kBoxX[1] - kBoxX[0]) / 0.5;
  const struct {
    const char* edges;
    double z;
  } table[] = {{"upper", kBoxHeight}, {"lower", 0.0}};
  for (const auto& [edges, z] : table) {
    SCOPED_TRACE(edges);
    const Json json = jsonOf(std::string("trace plate.npy --edges ") + edges);
    EXPECT_NEAR(static_cast<double>(nodesAt(json, kBoxY[0], z, "jump rise")), lines, 0.1 * lines);
    EXPECT_NEAR(static_cast<double>(nodesAt(json, kBoxY[1], z, "jump fall")), lines, 0.1 * lines);
    EXPECT_EQ(nodesAt(json, kBoxY[0], z, "jump fall"), 0U);
    EXPECT_EQ(nodesAt(json, kBoxY[1], z, "jump rise"), 0U);
  }
}

TEST_F(Commands, TraceBothFindsTheEdgesThatRunAlongTheLines) {
  const auto along = [&](const char* options) {
    const std::vector<Row> trees =
        rowsOf(jsonOf(std::string("trace plate.npy") + options), "trees");
    return std::count_if(trees.begin(), trees.end(), [](const Row& tree) {
      return tree.at("along") == "lines" && std::abs(tree.at("length").get<double>() - 8.0) < 1.0;
    });
  };
  EXPECT_EQ(along(""), 0);
  EXPECT_GE(along(" --both --tree-length 5"), 2) << "the short sides of the box";
}

TEST_F(Commands, GapsMeasureTheSlot) {
  const Json json = jsonOf("gaps plate.npy");
  const std::vector<Row> gaps = rowsOf(json, "gaps");
  ASSERT_EQ(gaps.size(), 1U);
  EXPECT_NEAR(gaps[0].at("width"), kSlotWidth, 0.06);
  EXPECT_NEAR(gaps[0].at("depth"), kSlotDepth, 0.05);
  EXPECT_EQ(gaps[0].at("floor"), "measured");
  EXPECT_EQ(gaps[0].at("seen on"), 100.0);
  EXPECT_NEAR(gaps[0].at("length"), 59.5, 1.0);
  const Row line = rowsOf(json, "centre_lines").at(0);
  EXPECT_NEAR(line.at("y"), kSlotY, 0.1);
  EXPECT_NEAR(std::abs(line.at("dx").get<double>()), 1.0, 0.001);
}

TEST_F(Commands, ArcsMeasureTheRod) {
  const std::vector<Row> tracks = rowsOf(jsonOf("arcs plate.npy"), "tracks");
  ASSERT_EQ(tracks.size(), 1U);
  const Row& rod = tracks[0];
  EXPECT_NEAR(rod.at("radius"), kRodRadius, 0.05);
  EXPECT_NEAR(rod.at("radius across"), kRodRadius, 0.05);
  EXPECT_NEAR(rod.at("y"), kRodY, 0.2);
  EXPECT_NEAR(rod.at("z"), kRodRadius, 0.1);
  EXPECT_NEAR(rod.at("length"), kRodX[1] - kRodX[0], 2.0);
}

TEST_F(Commands, SplitOutlinesTheBoxAndTheRod) {
  const std::vector<Row> objects = rowsOf(jsonOf("split plate.npy"), "objects");
  ASSERT_EQ(objects.size(), 2U);
  const double box[] = {25.0, 8.0, kBoxHeight, 32.5, 8.0};
  const double rod[] = {50.0, 8.0, 2.0 * kRodRadius, 30.0, kRodY};
  for (const Row& object : objects) {
    const auto& truth = object.at("y") < 20.0 ? box : rod;
    EXPECT_NEAR(object.at("length"), truth[0], 1.0);
    EXPECT_NEAR(object.at("width"), truth[1], 1.0);
    EXPECT_NEAR(object.at("height"), truth[2], 0.15);
    EXPECT_NEAR(object.at("x"), truth[3], 0.5);
    EXPECT_NEAR(object.at("y"), truth[4], 0.5);
    EXPECT_NEAR(std::abs(object.at("angle").get<double>()), 0.0, 2.0);
  }
}

TEST_F(Commands, LineRunsEveryExtractorWhereItApplies) {
  const struct {
    const char* extractor;
    const char* kind;
    double y;  ///< Of a feature that has to be among those found; line 60 crosses all objects.
    double tolerance;
  } table[] = {{"corners", "jump rise", kBoxY[0], 0.5},
               {"corner-jumps", "jump rise", kBoxY[0], 1.5},
               {"down-jumps", "jump fall", kBoxY[1], 0.3},
               {"gaps --width-min 1 --width-max 3", "gap", kSlotY - 0.8, 0.5},
               {"peaks", "peak", kRodY, 1.0},
               {"ring-arcs --width-min 3 --width-max 12", "ring arc", kRodY - kRodRadius, 2.0},
               {"raised --width-min 4 --width-max 12", "raised run", kBoxY[0], 0.5}};
  for (const auto& [extractor, kind, y, tolerance] : table) {
    const std::vector<Row> features = rowsOf(
        jsonOf(std::string("line plate.npy --line 60 --extractor ") + extractor), "features");
    EXPECT_TRUE(std::any_of(features.begin(), features.end(), [&](const Row& row) {
      return row.at("kind") == kind && std::abs(row.at("y").get<double>() - y) < tolerance;
    })) << extractor;
  }
}

TEST_F(Commands, RegisterFindsTheMotionBetweenTwoScans) {
  // B is the plate turned by 90 degrees about z, and shifted.
  Scan turned = plateScan();
  for (Line& line : turned) {
    for (STesk3DPosition& sample : line) {
      STesk3DPoint& p = sample.pt3D;
      p = p.z > 0.0 ? STesk3DPoint{-p.y + 7.0, p.x - 3.0, p.z + 11.0} : STesk3DPoint{};
    }
  }
  save("b.npy", turned);
  std::string pairs = "x1,y1,z1,x2,y2,z2\n";
  for (const auto& p : {STesk3DPoint{5, 5, 250}, {50, 6, 251}, {30, 35, 249}, {10, 30, 245}}) {
    for (const double value : {p.x, p.y, p.z, -p.y + 7.0, p.x - 3.0}) {
      pairs += std::to_string(value) + ",";
    }
    pairs += std::to_string(p.z + 11.0) + "\n";
  }
  write("pairs.csv", pairs);
  const Json json =
      jsonOf("register plate.npy b.npy --points pairs.csv --axes keep --save-scan moved.npy");
  EXPECT_NEAR(json.at("motion").at("turn_deg"), 90.0, 1e-4);
  EXPECT_NEAR(json.at("motion").at("euler_deg").at("yaw"), -90.0, 1e-4);
  EXPECT_NEAR(json.at("motion").at("rms"), 0.0, 1e-5);
  EXPECT_NEAR(json.at("agreement").at("overlap"), 1.0, 0.02);
  EXPECT_NEAR(json.at("agreement").at("median_dz"), 0.0, 0.001);
  const Scan a = plateScan();
  const Scan moved = load(optionsFor(path("moved.npy"))).scan;
  ASSERT_EQ(moved.size(), a.size());
  EXPECT_NEAR(moved[70][200].pt3D.x, a[70][200].pt3D.x, 1e-4);
  EXPECT_NEAR(moved[70][200].pt3D.y, a[70][200].pt3D.y, 1e-4);
}

TEST_F(Commands, MakeStatesItsTruthAndIsFoundAgain) {
  EXPECT_EQ(run("make plate --output made.npy --json truth.json").code, 0);
  const Json truth = Json::parse(contentOf(path("truth.json")));
  const Json found = jsonOf("split made.npy");
  EXPECT_NEAR(found.at("plane").at("tilt_deg"), truth.at("plane").at("tilt_deg"), 0.02);
  const std::vector<Row> blocks = rowsOf(truth, "objects");
  const std::vector<Row> objects = rowsOf(found, "objects");
  ASSERT_EQ(objects.size(), blocks.size());
  for (const Row& block : blocks) {
    EXPECT_TRUE(std::any_of(objects.begin(), objects.end(), [&](const Row& object) {
      return std::abs(object.at("y").get<double>() - block.at("y").get<double>()) < 2.5 &&
             std::abs(object.at("height").get<double>() - block.at("height").get<double>()) < 0.3;
    }));
  }
}

TEST_F(Commands, PicturesShowTheScanInBothFormats) {
  for (const char* command :
       {"calibrate plate.npy", "trace plate.npy", "gaps plate.npy", "arcs plate.npy",
        "split plate.npy", "line plate.npy --line 60 --extractor corners"}) {
    SCOPED_TRACE(command);
    const Run result = run(std::string(command) + " --picture a.png --overwrite");
    EXPECT_EQ(result.errors, "wrote a.png\n");
    const cv::Mat picture = cv::imread(path("a.png"));
    ASSERT_GT(picture.cols, 600);
    cv::Scalar mean;
    cv::Scalar deviation;
    cv::meanStdDev(picture, mean, deviation);
    EXPECT_GT(deviation[0], 10.0);
    EXPECT_EQ(run(std::string(command) + " --picture a.svg --overwrite").code, 0);
    expectPart(contentOf(path("a.svg")), "</svg>");
  }
}

}  // namespace
}  // namespace program
