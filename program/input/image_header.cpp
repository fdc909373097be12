#include "input/image_header.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

#include "base/failure.h"
#include "base/number.h"
#include "input/byte_reader.h"
#include "input/tiff_directory.h"

namespace program {
namespace {

// Tags of TIFF.
constexpr int kWidth = 256;
constexpr int kHeight = 257;
constexpr int kBitsPerSample = 258;
constexpr int kCompression = 259;
constexpr int kPhotometric = 262;
constexpr int kStripOffsets = 273;
constexpr int kOrientation = 274;
constexpr int kSamplesPerPixel = 277;
constexpr int kRowsPerStrip = 278;
constexpr int kStripBytes = 279;
constexpr int kPlanes = 284;
constexpr int kTileWidth = 322;
constexpr int kTileHeight = 323;
constexpr int kTileOffsets = 324;
constexpr int kTileBytes = 325;

constexpr std::uint64_t kUncompressed = 1;
constexpr std::uint64_t kPalette = 3;
/// How much larger than the file its values may be: 32 KB of one value in a few bytes.
constexpr std::uint64_t kMostCompression = 33000;

const std::map<std::uint64_t, const char*> kLossyCompressions = {
    {6, "JPEG"},          {7, "JPEG"},     {34676, "SGILOG"}, {34677, "SGILOG24"},
    {34712, "JPEG 2000"}, {34887, "LERC"}, {50001, "WebP"},   {50002, "JPEG XL"}};
const std::map<std::uint64_t, const char*> kLogarithmicColours = {{32844, "LogL"},
                                                                  {32845, "LogLuv"}};

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

Failure cutShort(const std::string& path, std::uint64_t held, std::uint64_t wanted) {
  return refused(path, "is cut short: its header states " + std::to_string(wanted) +
                           " bytes of values, it holds " + std::to_string(held) +
                           ". Copy or save it again");
}

/// One of OpenCV's limits.
std::uint64_t limitOf(const char* variable, std::uint64_t builtIn) {
  const char* text = std::getenv(variable);
  const auto value = parseNumber(text == nullptr ? "" : text);
  return value && *value >= 1.0 && *value <= 1e15 ? static_cast<std::uint64_t>(*value) : builtIn;
}

/// OpenCV refuses such images too, without naming the limit.
void refuseTooLarge(const std::string& path, std::uint64_t width, std::uint64_t height) {
  const std::uint64_t widest = limitOf("OPENCV_IO_MAX_IMAGE_WIDTH", 1U << 20U);
  const std::uint64_t highest = limitOf("OPENCV_IO_MAX_IMAGE_HEIGHT", 1U << 20U);
  const std::uint64_t most = limitOf("OPENCV_IO_MAX_IMAGE_PIXELS", 1U << 30U);
  if (width == 0 || height == 0) {
    throw refused(path, "holds no pixels");
  }
  if (width > widest || height > highest || width > most / height) {
    throw refused(path, "has " + std::to_string(width) + " x " + std::to_string(height) +
                            " pixels. OpenCV reads at most " + std::to_string(widest) + " x " +
                            std::to_string(highest) + " and " + std::to_string(most) +
                            " in all. The environment variables OPENCV_IO_MAX_IMAGE_WIDTH, "
                            "_HEIGHT and _PIXELS raise these limits");
  }
}

void refuseEncodings(const std::string& path, const TiffDirectory& directory) {
  const auto colour = kLogarithmicColours.find(directory.get(kPhotometric, 0));
  const auto compression = kLossyCompressions.find(directory.get(kCompression, kUncompressed));
  if (colour != kLogarithmicColours.end() || compression != kLossyCompressions.end()) {
    const std::string name =
        compression != kLossyCompressions.end() ? compression->second : colour->second;
    throw refused(path, "stores its values in a lossy encoding (" + name +
                            "), so they are not what was measured. Write it again without loss: "
                            "cv::imwrite(file, image, {cv::IMWRITE_TIFF_COMPRESSION, 1})");
  }
  if (!directory.isLast) {
    throw refused(path, "holds several pages. Save each scan to a file of its own");
  }
  const std::uint64_t photometric = directory.get(kPhotometric, 1);
  if (photometric == kPalette) {
    throw refused(path, "is an image with a palette, not a scan");
  }
  if (photometric > 2) {
    throw refused(path, "holds colours (photometric interpretation " + std::to_string(photometric) +
                            "), not a scan");
  }
  if (directory.get(kPlanes, 1) != 1 && directory.get(kSamplesPerPixel, 1) != 1) {
    throw refused(path,
                  "holds x, y and z in separate planes. Save them interleaved, pixel by pixel");
  }
  if (directory.get(kOrientation, 1) != 1) {
    throw refused(path, "is marked as turned or mirrored (orientation " +
                            std::to_string(directory.get(kOrientation, 1)) +
                            "). Save it with its first row on top");
  }
}

/// Strips, or tiles, of an uncompressed TIFF.
struct Blocks {
  int offsetTag;
  int bytesTag;
  std::uint64_t count;
  std::uint64_t bytes;  ///< Of all but the last.
  std::uint64_t lastBytes;
};

Blocks blocksOf(const TiffDirectory& directory) {
  // Forged sizes are cut to what cannot overflow; OpenCV refuses them.
  const auto get = [&](int tag, std::uint64_t missing, std::uint64_t most) {
    return std::clamp<std::uint64_t>(directory.get(tag, missing), 1, most);
  };
  const std::uint64_t width = directory.get(kWidth, 0);
  const std::uint64_t height = directory.get(kHeight, 0);
  const std::uint64_t bits = get(kSamplesPerPixel, 1, 16) * get(kBitsPerSample, 1, 64);
  const auto parts = [](std::uint64_t whole, std::uint64_t part) {
    return (whole + part - 1) / part;
  };
  if (directory.values.count(kTileBytes) > 0) {
    const std::uint64_t tileWidth = get(kTileWidth, 1, 1U << 20U);
    const std::uint64_t tileHeight = get(kTileHeight, 1, 1U << 20U);
    const std::uint64_t bytes = tileHeight * parts(tileWidth * bits, 8);
    return {kTileOffsets, kTileBytes, parts(width, tileWidth) * parts(height, tileHeight), bytes,
            bytes};
  }
  const std::uint64_t rows = get(kRowsPerStrip, height, height);
  const std::uint64_t rowBytes = parts(width * bits, 8);
  const std::uint64_t count = parts(height, rows);
  return {kStripOffsets, kStripBytes, count, rows * rowBytes,
          (height - (count - 1) * rows) * rowBytes};
}

/// OpenCV leaves rows uninitialised whose bytes an uncompressed strip does not hold.
void refuseShort(const std::string& path, const TiffDirectory& directory, std::uint64_t fileSize) {
  const Blocks blocks = blocksOf(directory);
  const std::uint64_t wanted = (blocks.count - 1) * blocks.bytes + blocks.lastBytes;
  const bool isCompressed = directory.get(kCompression, kUncompressed) != kUncompressed;
  if (wanted / (isCompressed ? kMostCompression : 1) > fileSize) {
    throw cutShort(path, fileSize, wanted);
  }
  const auto sizes = directory.values.find(blocks.bytesTag);
  const auto offsets = directory.values.find(blocks.offsetTag);
  if (sizes == directory.values.end() || offsets == directory.values.end() ||
      sizes->second.size() < blocks.count || offsets->second.size() < blocks.count) {
    throw refused(path, "is a damaged TIFF: its header does not state where all its values are");
  }
  std::uint64_t held = 0;
  bool isShort = false;
  for (std::size_t i = 0; i < blocks.count; ++i) {
    const std::uint64_t offset = std::min(offsets->second[i], fileSize);
    const std::uint64_t size = std::min(sizes->second[i], fileSize - offset);
    held += size;
    isShort = isShort || size < sizes->second[i] ||
              (!isCompressed && size < (i + 1 == blocks.count ? blocks.lastBytes : blocks.bytes));
  }
  if (isShort) {
    throw isCompressed ? refused(path, "is cut short. Copy or save it again")
                       : cutShort(path, held, wanted);
  }
}

void checkPng(const std::string& path, ByteReader& bytes) {
  bytes.setBigEndian(true);
  const std::uint64_t width = bytes.number(16, 4).value_or(0);
  const std::uint64_t height = bytes.number(20, 4).value_or(0);
  refuseTooLarge(path, width, height);
  if (width * height / kMostCompression > bytes.size()) {
    throw cutShort(path, bytes.size(), width * height);
  }
}

}  // namespace

void checkImageHeader(const std::string& path) {
  ByteReader bytes(path);
  if (bytes.text(0, 8) == "\x89PNG\r\n\x1a\n") {
    checkPng(path, bytes);
  } else if (const auto directory = readTiffDirectory(path)) {
    refuseEncodings(path, *directory);
    refuseTooLarge(path, directory->get(kWidth, 0), directory->get(kHeight, 0));
    refuseShort(path, *directory, bytes.size());
  }
}

}  // namespace program
