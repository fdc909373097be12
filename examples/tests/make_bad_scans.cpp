/**
 * @file
 * Writes scan files that a program must turn down or get along with, into the folder it is given.
 */

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <string>

namespace {

/// The first part of a file, as a broken transfer leaves it.
void cutShort(const std::filesystem::path& from, const std::filesystem::path& to, double share) {
  std::ifstream whole(from, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(whole)),
                          std::istreambuf_iterator<char>());
  std::ofstream part(to, std::ios::binary);
  part.write(bytes.data(), static_cast<std::streamsize>(share * static_cast<double>(bytes.size())));
}

/// A ramp in 16 bits with a ridge, as a range camera gives it.
cv::Mat rangeImage(int rows, int cols) {
  cv::Mat image(rows, cols, CV_16U);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) {
      const bool isRidge = c > cols / 3 && c < cols / 2;
      image.at<ushort>(r, c) = static_cast<ushort>(2000 + 2 * r + 3 * c + (isRidge ? 3000 : 0));
    }
  }
  return image;
}

void writeAll(const std::filesystem::path& folder) {
  const auto write = [&](const char* name, const cv::Mat& image) {
    cv::imwrite((folder / name).string(), image, {cv::IMWRITE_TIFF_COMPRESSION, 1});
  };
  const cv::Mat range = rangeImage(60, 80);
  write("range.png", range);
  write("range.tiff", range);
  cutShort(folder / "range.png", folder / "short.png", 0.5);
  cutShort(folder / "range.tiff", folder / "short.tiff", 0.5);
  cutShort(folder / "range.tiff", folder / "stub.tiff", 0.01);
  std::ofstream(folder / "text.tiff") << "not an image\n";
  std::ofstream(folder / "empty.tiff").flush();
  write("grey8.png", cv::Mat(20, 20, CV_8U, cv::Scalar(100)));
  write("colour8.png", cv::Mat(20, 20, CV_8UC3, cv::Scalar::all(100)));
  write("colour16.png", cv::Mat(20, 20, CV_16UC3, cv::Scalar::all(100)));
  write("one_pixel.tiff", cv::Mat(1, 1, CV_32F, cv::Scalar(5.0)));
  write("one_line.tiff", cv::Mat(1, 50, CV_32F, cv::Scalar(5.0)));
  write("one_column.tiff", cv::Mat(50, 1, CV_32F, cv::Scalar(5.0)));
  write("holes.tiff", cv::Mat(20, 20, CV_32F, cv::Scalar(0.0)));
  write("same_place.tiff", cv::Mat(20, 20, CV_32FC3, cv::Scalar::all(5.0)));
  write("flat.tiff", cv::Mat(20, 20, CV_32F, cv::Scalar(5.0)));

  cv::Mat steep(20, 20, CV_32F, cv::Scalar(5.0));
  steep.at<float>(3, 3) = 5e8F;
  write("steep.tiff", steep);

  cv::Mat wild;
  range.convertTo(wild, CV_32F);
  const double infinite = std::numeric_limits<double>::infinity();
  wild.row(2).setTo(std::numeric_limits<double>::quiet_NaN());
  wild.row(4).setTo(infinite);
  wild.row(6).setTo(-infinite);
  wild.row(8).setTo(static_cast<double>(std::numeric_limits<float>::max()));
  wild.row(10).setTo(-5.0);
  write("wild.tiff", wild);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    return 1;
  }
  writeAll(argv[1]);
  return 0;
}
