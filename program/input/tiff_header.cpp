#include "input/tiff_header.h"

#include <algorithm>
#include <map>
#include <vector>

#include "base/failure.h"
#include "input/byte_reader.h"

namespace program {
namespace {

// Tags.
constexpr int kWidth = 256;
constexpr int kHeight = 257;
constexpr int kBitsPerSample = 258;
constexpr int kCompression = 259;
constexpr int kPhotometric = 262;
constexpr int kSamplesPerPixel = 277;
constexpr int kStripBytes = 279;
constexpr int kTileBytes = 325;

constexpr std::uint64_t kUncompressed = 1;
constexpr std::uint64_t kPalette = 3;

const std::map<std::uint64_t, const char*> kLossyCompressions = {
    {7, "JPEG"},     {34676, "SGILOG"}, {34677, "SGILOG24"}, {34712, "JPEG 2000"},
    {34887, "LERC"}, {50001, "WebP"},   {50002, "JPEG XL"}};
const std::map<std::uint64_t, const char*> kLogarithmicColours = {{32844, "LogL"},
                                                                  {32845, "LogLuv"}};

/// The first directory of a TIFF: for each tag the first value, and the sum of all values.
struct Directory {
  std::map<int, std::uint64_t> first;
  std::map<int, std::uint64_t> sum;
  bool isLast = true;

  [[nodiscard]] std::uint64_t get(int tag, std::uint64_t missing) const {
    const auto found = first.find(tag);
    return found == first.end() ? missing : found->second;
  }
};

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

Failure damaged(const std::string& path) {
  return refused(path, "is a damaged TIFF: its directory reaches beyond the end of the file");
}

/// Reads the directory with bounds checked; the sizes differ between TIFF and BigTIFF.
class DirectoryReader {
 public:
  DirectoryReader(const std::string& path, ByteReader& bytes, bool isBig)
      : path_(path), bytes_(bytes), wordSize_(isBig ? 8 : 4), countSize_(isBig ? 8 : 2) {}

  Directory read() {
    const std::uint64_t at = number(wordSize_ == 8 ? 8 : 4, wordSize_);
    const std::uint64_t entries = number(at, countSize_);
    const std::uint64_t entrySize = 4 + 2 * wordSize_;
    if (entries > bytes_.size() / entrySize) {
      throw damaged(path_);
    }
    Directory directory;
    for (std::uint64_t i = 0; i < entries; ++i) {
      readEntry(at + countSize_ + i * entrySize, directory);
    }
    directory.isLast = number(at + countSize_ + entries * entrySize, wordSize_) == 0;
    return directory;
  }

 private:
  std::uint64_t number(std::uint64_t at, std::size_t size) {
    const auto value = bytes_.number(at, size);
    if (!value) {
      throw damaged(path_);
    }
    return *value;
  }

  void readEntry(std::uint64_t at, Directory& directory) {
    static const std::map<std::uint64_t, std::size_t> sizes = {{1, 1}, {3, 2}, {4, 4}, {16, 8}};
    const auto tag = static_cast<int>(number(at, 2));
    const auto size = sizes.find(number(at + 2, 2));
    const std::uint64_t count = number(at + 4, wordSize_);
    if (size == sizes.end() || count == 0) {
      return;
    }
    if (count > bytes_.size() / size->second) {
      throw damaged(path_);
    }
    const std::uint64_t inlineAt = at + 4 + wordSize_;
    const bool isInline = count * size->second <= wordSize_;
    const std::uint64_t values = isInline ? inlineAt : number(inlineAt, wordSize_);
    directory.first[tag] = number(values, size->second);
    if (tag == kStripBytes || tag == kTileBytes) {
      for (std::uint64_t i = 0; i < count; ++i) {
        directory.sum[tag] += number(values + i * size->second, size->second);
      }
    }
  }

  const std::string& path_;
  ByteReader& bytes_;
  std::size_t wordSize_;
  std::size_t countSize_;
};

void refuseEncodings(const std::string& path, const Directory& directory) {
  const auto colour = kLogarithmicColours.find(directory.get(kPhotometric, 0));
  const auto compression = kLossyCompressions.find(directory.get(kCompression, kUncompressed));
  if (colour != kLogarithmicColours.end() || compression != kLossyCompressions.end()) {
    const std::string name =
        compression != kLossyCompressions.end() ? compression->second : colour->second;
    throw refused(path, "stores its values in a lossy encoding (" + name +
                            "), so they are not what was measured. Write it again without loss: "
                            "cv::imwrite(file, image, {cv::IMWRITE_TIFF_COMPRESSION, 1})");
  }
  if (directory.get(kPhotometric, 0) == kPalette) {
    throw refused(path, "is an image with a palette, not a scan");
  }
  if (!directory.isLast) {
    throw refused(path, "holds several pages. Save each scan to a file of its own");
  }
}

/// OpenCV leaves rows uninitialised whose bytes an uncompressed file does not hold.
void refuseShort(const std::string& path, const Directory& directory, std::uint64_t fileSize) {
  const auto strips = directory.sum.find(kStripBytes);
  if (directory.get(kCompression, kUncompressed) != kUncompressed ||
      strips == directory.sum.end()) {
    return;
  }
  const std::uint64_t rowBits = directory.get(kWidth, 0) * directory.get(kSamplesPerPixel, 1) *
                                directory.get(kBitsPerSample, 1);
  const std::uint64_t wanted = directory.get(kHeight, 0) * ((rowBits + 7) / 8);
  if (strips->second < wanted || wanted > fileSize) {
    throw refused(path, "is cut short: it holds " +
                            std::to_string(std::min(strips->second, fileSize)) + " of " +
                            std::to_string(wanted) + " bytes");
  }
}

}  // namespace

void refuseLossyTiff(const std::string& path) {
  ByteReader bytes(path);
  const auto order = bytes.number(0, 2);
  if (order != 0x4949U && order != 0x4D4DU) {
    return;
  }
  bytes.setBigEndian(order == 0x4D4DU);
  const auto kind = bytes.number(2, 2);
  if (kind != 42U && kind != 43U) {
    return;
  }
  const Directory directory = DirectoryReader(path, bytes, kind == 43U).read();
  refuseEncodings(path, directory);
  refuseShort(path, directory, bytes.size());
}

}  // namespace program
