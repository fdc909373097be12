#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "output/output_file.h"
#include "output/ply_file.h"
#include "output/writers.h"
#include "support.h"

namespace program {
namespace {

class Writers : public FolderTest {};

Report sampleReport() {
  Report report;
  report.command = "trace";
  report.csvTable = "nodes";
  report.fields = {{"input", std::vector<Field>{{"file", Cell{std::string("a \"b\"\xFF.tiff")}},
                                                {"range", std::vector<Cell>{1.0, 2.5}}}}};
  report.tables = {{"nodes",
                    "Nodes",
                    {{"id", ""}, {"name", ""}, {"x", "mm"}, {"last line", ""}},
                    {{1LL, std::string("a,\"b\"\n"), 0.1, Cell{}},
                     {2LL, std::string("plain"), std::nan(""), true}}},
                   {"empty", "Nothing", {{"id", ""}}, {}}};
  return report;
}

TEST_F(Writers, JsonReadsBack) {
  const nlohmann::json json = nlohmann::json::parse(asJson(sampleReport()));
  EXPECT_EQ(json.at("schema"), "scanline.trace");
  EXPECT_EQ(json.at("schema_version"), 1);
  EXPECT_EQ(json.at("input").at("range"), nlohmann::json({1.0, 2.5}));
  EXPECT_EQ(json.at("nodes").at("columns").size(), 4U);
  EXPECT_EQ(json.at("nodes").at("rows").at(0).at(2), 0.1);
  EXPECT_TRUE(json.at("nodes").at("rows").at(1).at(2).is_null());
  EXPECT_TRUE(json.at("empty").at("rows").empty());
}

TEST_F(Writers, CsvQuotesAndKeepsAllDigits) {
  EXPECT_EQ(asCsv(sampleReport()),
            "id,name,x,last line\r\n1,\"a,\"\"b\"\"\n\",0.1,\r\n2,plain,,yes\r\n");
}

TEST_F(Writers, NodesAsCsvReadBackAsScan) {
  Report report;
  report.csvTable = "nodes";
  report.tables = {{"nodes",
                    "",
                    {{"tree", ""}, {"line", ""}, {"x", ""}, {"y", ""}, {"z", ""}, {"type", ""}},
                    {{1LL, 0LL, 0.1, 0.2, 100.0 / 3.0, std::string("jump")},
                     {1LL, 1LL, 0.3, 0.2, 100.0 / 7.0, std::string("jump")}}}};
  const Scan scan = load(optionsFor(write("a.csv", asCsv(report)))).scan;
  ASSERT_EQ(scan.size(), 2U);
  EXPECT_EQ(scan[0][0].pt3D.z, 100.0 / 3.0);
  EXPECT_EQ(scan[1][0].pt3D.z, 100.0 / 7.0);
}

TEST_F(Writers, PlyHoldsPointsAndEdges) {
  const Scan scan = {{{0, {1.0, 2.0, 3.0}}, {1, {0.0, 0.0, 0.0}}}};
  const std::vector<PlyPath> paths = {{{{4.0, 5.0, 6.0}, {7.0, 8.0, 9.0}}, {1.0, 0.0, 0.0}}};
  ASSERT_TRUE(writePly(path("a.ply"), scan, paths));
  const std::string content = contentOf(path("a.ply"));
  expectPart(content, "element vertex 3\n");
  expectPart(content, "element edge 1\n");
  const std::string data = content.substr(content.find("end_header\n") + 11);
  EXPECT_EQ(data.substr(0, 24), bytesOf(1.0) + bytesOf(2.0) + bytesOf(3.0));
  EXPECT_EQ(data.substr(27, 27),
            bytesOf(4.0) + bytesOf(5.0) + bytesOf(6.0) + "\xFF" + std::string(2, '\0'));
  EXPECT_EQ(data.substr(81), bytesOf<std::int32_t>(1) + bytesOf<std::int32_t>(2));
}

TEST_F(Writers, FilesAppearTogetherOrNotAtAll) {
  const auto filesLeft = [&] {
    return std::distance(std::filesystem::directory_iterator(path("")),
                         std::filesystem::directory_iterator());
  };
  {
    OutputFiles files(false);
    files.add(path("a.json"), "one");
    files.add(path("b.json"), "two");
    EXPECT_FALSE(std::filesystem::exists(path("a.json")));
  }
  EXPECT_EQ(filesLeft(), 0);
  OutputFiles files(false);
  files.add(path("a.json"), "one");
  EXPECT_THROW(files.add(path("b.json"), [](const std::string&) { return false; }), Failure);
  files.publish();
  EXPECT_EQ(contentOf(path("a.json")), "one");
  EXPECT_THROW(files.check(path("a.json"), {}), Failure);
  EXPECT_THROW(OutputFiles(true).check(path("a.json"), {path("./a.json")}), Failure);
  EXPECT_THROW(files.check(path("none/a.json"), {}), Failure);
}

}  // namespace
}  // namespace program
