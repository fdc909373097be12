#include "input/tiff_directory.h"

#include "base/failure.h"
#include "input/byte_reader.h"

namespace program {
namespace {

/// Reads the entries of a directory; the sizes of its numbers differ between TIFF and BigTIFF.
class DirectoryReader {
 public:
  DirectoryReader(const std::string& path, ByteReader& bytes, bool isBig)
      : path_(path), bytes_(bytes), wordSize_(isBig ? 8 : 4), countSize_(isBig ? 8 : 2) {}

  TiffDirectory read() {
    const std::uint64_t at = number(wordSize_ == 8 ? 8 : 4, wordSize_);
    const std::uint64_t entries = number(at, countSize_);
    const std::uint64_t entrySize = 4 + 2 * wordSize_;
    if (entries > bytes_.size() / entrySize) {
      throw damaged();
    }
    TiffDirectory directory;
    for (std::uint64_t i = 0; i < entries; ++i) {
      readEntry(at + countSize_ + i * entrySize, directory);
    }
    directory.isLast = number(at + countSize_ + entries * entrySize, wordSize_) == 0;
    return directory;
  }

 private:
  [[nodiscard]] Failure damaged() const {
    return {ExitCode::badInput,
            path_ + ": is a damaged TIFF, or cut short: its directory is not inside of the file"};
  }

  std::uint64_t number(std::uint64_t at, std::size_t size) {
    const auto value = bytes_.number(at, size);
    if (!value) {
      throw damaged();
    }
    return *value;
  }

  void readEntry(std::uint64_t at, TiffDirectory& directory) {
    static const std::map<std::uint64_t, std::size_t> sizes = {{1, 1}, {3, 2}, {4, 4}, {16, 8}};
    // One value for each row of the largest image is the most that makes sense.
    constexpr std::uint64_t kMostValues = 1U << 22U;
    const auto tag = static_cast<int>(number(at, 2));
    const auto size = sizes.find(number(at + 2, 2));
    const std::uint64_t count = number(at + 4, wordSize_);
    if (size == sizes.end() || count == 0) {
      return;
    }
    if (count > kMostValues || count * size->second > bytes_.size()) {
      throw damaged();
    }
    const std::uint64_t inlineAt = at + 4 + wordSize_;
    const bool isInline = count * size->second <= wordSize_;
    const std::uint64_t from = isInline ? inlineAt : number(inlineAt, wordSize_);
    // Of a tag that comes twice, libtiff takes the first.
    std::vector<std::uint64_t>& values = directory.values[tag];
    for (std::uint64_t i = 0; values.size() < count; ++i) {
      values.push_back(number(from + i * size->second, size->second));
    }
  }

  const std::string& path_;
  ByteReader& bytes_;
  std::size_t wordSize_;
  std::size_t countSize_;
};

}  // namespace

std::optional<TiffDirectory> readTiffDirectory(const std::string& path) {
  constexpr std::uint64_t kLittleEndian = 0x4949;
  constexpr std::uint64_t kBigEndian = 0x4D4D;
  constexpr std::uint64_t kTiff = 42;
  constexpr std::uint64_t kBigTiff = 43;
  ByteReader bytes(path);
  const auto order = bytes.number(0, 2);
  if (order != kLittleEndian && order != kBigEndian) {
    return std::nullopt;
  }
  bytes.setBigEndian(order == kBigEndian);
  const auto kind = bytes.number(2, 2);
  if (kind != kTiff && kind != kBigTiff) {
    return std::nullopt;
  }
  return DirectoryReader(path, bytes, kind == kBigTiff).read();
}

}  // namespace program
