#include <array>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "output/scan_file.h"
#include "support.h"

namespace program {
namespace {

class Images : public FolderTest {
 protected:
  std::string image(const std::string& name, const cv::Mat& mat, const std::vector<int>& how = {}) {
    EXPECT_TRUE(cv::imwrite(path(name), mat, how));
    return path(name);
  }
};

const std::vector<int> kPlain = {cv::IMWRITE_TIFF_COMPRESSION, 1};

/// Channels z, y, x, which OpenCV stores as x, y, z.
cv::Mat spaceImage(int rows, int cols) {
  cv::Mat mat(rows, cols, CV_32FC3);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      mat.at<cv::Vec3f>(r, c) = {static_cast<float>(50 + c), static_cast<float>(c),
                                 static_cast<float>(r)};
    }
  }
  return mat;
}

/// A TIFF, all of whose entries are given, and its values. Entries of four bytes, in this order.
std::string tiffOf(const std::vector<std::array<std::uint32_t, 2>>& entries,
                   const std::string& values,
                   bool isBigEndian = false,
                   std::uint32_t nextPage = 0) {
  std::string bytes = isBigEndian ? "MM" : "II";
  bytes += bytesOf<std::uint16_t>(42, isBigEndian) + bytesOf<std::uint32_t>(8, isBigEndian);
  bytes += bytesOf(static_cast<std::uint16_t>(entries.size()), isBigEndian);
  for (const auto& [tag, value] : entries) {
    bytes += bytesOf(static_cast<std::uint16_t>(tag), isBigEndian) +
             bytesOf<std::uint16_t>(4, isBigEndian) + bytesOf<std::uint32_t>(1, isBigEndian) +
             bytesOf(value, isBigEndian);
  }
  return bytes + bytesOf(nextPage, isBigEndian) + values;
}

constexpr std::uint32_t kDataAt = 8 + 2 + 12 * 10 + 4;

/// The entries of a float range image of 2 x 2, in one strip.
std::vector<std::array<std::uint32_t, 2>> rangeEntries() {
  return {{256, 2},       {257, 2}, {258, 32}, {259, 1},  {262, 1},
          {273, kDataAt}, {277, 1}, {278, 2},  {279, 16}, {339, 3}};
}

std::string rangeValues(bool isBigEndian) {
  std::string values;
  for (const float value : {5.0F, 6.0F, 7.0F, 8.0F}) {
    values += bytesOf(value, isBigEndian);
  }
  return values;
}

TEST_F(Images, ReadsPointsInBothOrders) {
  InputOptions options = optionsFor(image("a.tiff", spaceImage(2, 2), kPlain));
  EXPECT_EQ(textOf(load(options).scan), "[0,0,50 0,1,51][1,0,50 1,1,51]");
  options.channelsZyx = true;
  EXPECT_EQ(textOf(load(options).scan), "[- -][50,0,1 51,1,1]");
}

TEST_F(Images, ReadsRangeImages) {
  const cv::Mat values = (cv::Mat_<float>(2, 2) << 5, 0, 7, 8);
  for (const int depth : {CV_16U, CV_16S, CV_32F, CV_64F}) {
    cv::Mat mat;
    values.convertTo(mat, depth);
    InputOptions options = optionsFor(image("a.tiff", mat, kPlain));
    options.pitchX = 2.0;
    EXPECT_EQ(textOf(load(options).scan), "[0,0,5 -][2,0,7 2,1,8]") << depth;
  }
  cv::Mat mat;
  values.convertTo(mat, CV_16U);
  EXPECT_EQ(textOf(load(optionsFor(image("a.png", mat))).scan), "[0,0,5 -][1,0,7 1,1,8]");
}

TEST_F(Images, ReadsBothByteOrders) {
  for (const bool isBigEndian : {false, true}) {
    const std::string path =
        write("a.tiff", tiffOf(rangeEntries(), rangeValues(isBigEndian), isBigEndian));
    EXPECT_EQ(textOf(load(optionsFor(path)).scan), "[0,0,5 0,1,6][1,0,7 1,1,8]");
  }
}

TEST_F(Images, RefusesWhatOpenCvWouldMisread) {
  struct Bad {
    std::uint32_t tag;
    std::uint32_t value;
    const char* message;
  };
  const Bad table[] = {
      {262, 32844, "lossy encoding (LogL)"},
      {262, 32845, "lossy encoding (LogLuv)"},
      {259, 34676, "lossy encoding (SGILOG)"},
      {259, 34677, "lossy encoding (SGILOG24)"},
      {259, 7, "lossy encoding (JPEG)"},
      {259, 34887, "lossy encoding (LERC)"},
      {259, 50001, "lossy encoding (WebP)"},
      {262, 3, "palette"},
      {262, 6, "holds colours"},
      {279, 15, "is cut short"},
      {278, 1, "where all its values are"},
      {273, 1000, "is cut short"},
      {257, 200, "is cut short"},
      {256, 0, "holds no pixels"},
      {256, 1U << 21U, "OPENCV_IO_MAX_IMAGE_WIDTH"},
      {277, 4000000000U, "is cut short"},
      {258, 8, "damaged or cut short"},
  };
  for (const Bad& bad : table) {
    auto entries = rangeEntries();
    for (auto& [tag, value] : entries) {
      value = tag == bad.tag ? bad.value : value;
    }
    SCOPED_TRACE(std::to_string(bad.tag) + " = " + std::to_string(bad.value));
    expectPart(failureOf(optionsFor(write("a.tiff", tiffOf(entries, rangeValues(false))))),
               bad.message);
  }
  expectPart(failureOf(optionsFor(
                 write("a.tiff", tiffOf(rangeEntries(), rangeValues(false), false, kDataAt)))),
             "several pages");
}

TEST_F(Images, RefusesFloatColoursAsOpenCvWritesThem) {
  // Newer releases of OpenCV write them plainly.
  const std::string path = image("a.tiff", spaceImage(8, 8));
  const std::string failure = failureOf(optionsFor(path));
  if (!failure.empty()) {
    expectPart(failure, "Write it again without loss: cv::imwrite");
  }
}

TEST_F(Images, RefusesDamagedAndUnfitFiles) {
  const std::string whole = contentOf(image("whole.tiff", spaceImage(20, 20), kPlain));
  for (std::size_t size : {std::size_t{3}, std::size_t{9}, whole.size() / 2, whole.size() - 1}) {
    SCOPED_TRACE(size);
    EXPECT_NE(failureOf(optionsFor(write("cut.tiff", whole.substr(0, size)))), "");
  }
  cv::Mat range(20, 20, CV_16UC1, cv::Scalar(500));
  const std::string png = contentOf(image("whole.png", range));
  EXPECT_NE(failureOf(optionsFor(write("cut.png", png.substr(0, png.size() / 2)))), "");
  std::string forged = png;
  forged.replace(16, 8, bytesOf<std::uint32_t>(30000, true) + bytesOf<std::uint32_t>(30000, true));
  expectPart(failureOf(optionsFor(write("forged.png", forged))), "is cut short");
  expectPart(failureOf(optionsFor(image("grey.png", cv::Mat(4, 4, CV_8UC1, cv::Scalar(9))))),
             "pixels of 1 x 8-bit");
  expectPart(failureOf(optionsFor(write("text.tiff", "no image at all"))), "is no image");
}

TEST_F(Images, SavedScansReadBackTheSame) {
  Scan scan(3, Line(4));
  for (int l = 0; l < 3; ++l) {
    for (int i = 0; i < 4; ++i) {
      scan[l][i] = {i, {0.1 * l, -0.3 * i, l == 1 && i == 2 ? 0.0 : 100.0 + 0.7 * i}};
    }
  }
  scan[1].pop_back();
  Messages messages(true);
  OutputFiles files(true);
  Extent extent = extentOf(scan);
  addScanFile(files, path("a.npy"), scan, extent, messages);
  addScanFile(files, path("a.tiff"), scan, extent, messages);
  EXPECT_TRUE(messages.warnings().empty());
  extent.sampleSpacing = 1e-6;
  addScanFile(files, path("b.tiff"), scan, extent, messages);
  EXPECT_EQ(messages.warnings().size(), 1U);
  files.publish();
  const Scan exact = load(optionsFor(path("a.npy"))).scan;
  const Scan single = load(optionsFor(path("a.tiff"))).scan;
  ASSERT_EQ(exact.size(), 3U);
  ASSERT_EQ(single.size(), 3U);
  for (std::size_t l = 0; l < 3; ++l) {
    ASSERT_EQ(exact[l].size(), 4U);
    ASSERT_EQ(single[l].size(), 4U);
    for (std::size_t i = 0; i < scan[l].size(); ++i) {
      const STesk3DPoint& p = scan[l][i].pt3D;
      EXPECT_EQ(exact[l][i].pt3D.z, p.z);
      EXPECT_EQ(single[l][i].pt3D.z, static_cast<double>(static_cast<float>(p.z)));
      if (isMeasured(scan[l][i])) {
        EXPECT_EQ(exact[l][i].pt3D.x, p.x);
        EXPECT_EQ(exact[l][i].pt3D.y, p.y);
        EXPECT_EQ(single[l][i].pt3D.x, static_cast<double>(static_cast<float>(p.x)));
        EXPECT_EQ(single[l][i].pt3D.y, static_cast<double>(static_cast<float>(p.y)));
      }
    }
  }
}

TEST_F(Images, RefusesOptionsWithoutEffect) {
  InputOptions options = optionsFor(image("a.tiff", spaceImage(2, 2), kPlain));
  options.pitchX = 2.0;
  expectPart(failureOf(options, ExitCode::usage), "--pitch-x and --pitch-y have no effect");
  options = optionsFor(write("a.csv", "0,0,5\n0,1,6\n"));
  options.channelsZyx = true;
  expectPart(failureOf(options, ExitCode::usage), "--channels has no effect");
}

}  // namespace
}  // namespace program
