#include <cmath>
#include <cstring>
#include <fstream>
#include <regex>
#include <vector>

#include "base/failure.h"
#include "input/byte_reader.h"
#include "input/readers.h"
#include "input/scan_input.h"

namespace program {
namespace {

Failure refused(const std::string& path, const std::string& why) {
  return {ExitCode::badInput, path + ": " + why};
}

/// What the header of an NPY file states.
struct Header {
  char order = '<';
  char kind = 'f';
  std::size_t itemSize = 8;
  std::vector<std::uint64_t> shape;
  std::uint64_t dataAt = 0;
};

std::string headerText(const std::string& path, ByteReader& bytes, std::uint64_t& dataAt) {
  constexpr std::uint64_t kMagic = 0x93;
  const auto first = bytes.number(0, 1);
  const auto major = bytes.number(6, 1);
  const std::size_t lengthSize = major == 1U ? 2 : 4;
  const auto length = bytes.number(8, lengthSize);
  if (first != kMagic || !length || *length > bytes.size()) {
    throw refused(path, "is no NPY file, or cut short");
  }
  dataAt = 8 + lengthSize + *length;
  std::string text(*length, ' ');
  std::ifstream file(path, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(8 + lengthSize));
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  return text;
}

Header readHeader(const std::string& path, ByteReader& bytes) {
  static const std::regex descr("'descr'\\s*:\\s*'([<>|=])([fiu])([248])'");
  static const std::regex order("'fortran_order'\\s*:\\s*(True|False)");
  static const std::regex shape("'shape'\\s*:\\s*\\(([0-9, ]*)\\)");
  Header header;
  const std::string text = headerText(path, bytes, header.dataAt);
  std::smatch match;
  if (!std::regex_search(text, match, descr)) {
    throw refused(path, "its array is not of floats or 16-bit integers");
  }
  header.order = *match[1].first;
  header.kind = *match[2].first;
  header.itemSize = static_cast<std::size_t>(*match[3].first - '0');
  if (!std::regex_search(text, match, order) || match[1] == "True") {
    throw refused(path, "its array is in Fortran order. Save numpy.ascontiguousarray(array)");
  }
  if (!std::regex_search(text, match, shape)) {
    throw refused(path, "its header states no shape");
  }
  const std::string sizes = match[1];
  static const std::regex number("[0-9]{1,15}");
  for (std::sregex_iterator it(sizes.begin(), sizes.end(), number); it != std::sregex_iterator();
       ++it) {
    header.shape.push_back(std::stoull(it->str()));
  }
  return header;
}

/// Checks the shape against the length of the file, in 64 bits without overflow.
void requireSize(const std::string& path, const Header& header, std::uint64_t fileSize) {
  const bool isRange = header.shape.size() == 2;
  const bool isSpace = header.shape.size() == 3 && header.shape[2] == 3;
  if (!isRange && !isSpace) {
    throw refused(path, "its array must have the shape (lines, samples) or (lines, samples, 3)");
  }
  std::uint64_t left = (fileSize - header.dataAt) / header.itemSize;
  for (const std::uint64_t size : header.shape) {
    left = size == 0 ? 0 : left / size;
  }
  if (left != 1) {
    throw refused(path, "its length does not match the shape in its header");
  }
}

template <typename Value, typename Bits>
double valueOf(const char* raw, bool swaps) {
  Bits bits = 0;
  std::memcpy(&bits, raw, sizeof bits);
  if (swaps) {
    Bits reversed = 0;
    for (std::size_t i = 0; i < sizeof bits; ++i) {
      reversed = static_cast<Bits>(reversed << 8U) | static_cast<Bits>((bits >> (8U * i)) & 0xFFU);
    }
    bits = reversed;
  }
  Value value{};
  std::memcpy(&value, &bits, sizeof value);
  return static_cast<double>(value);
}

double valueOf(const char* raw, const Header& header) {
  const bool swaps = header.order == '>';
  if (header.kind == 'f') {
    return header.itemSize == 4 ? valueOf<float, std::uint32_t>(raw, swaps)
                                : valueOf<double, std::uint64_t>(raw, swaps);
  }
  return header.kind == 'i' ? valueOf<std::int16_t, std::uint16_t>(raw, swaps)
                            : valueOf<std::uint16_t, std::uint16_t>(raw, swaps);
}

STesk3DPoint pointOf(const char* raw, const Header& header, double row, double col) {
  if (header.shape.size() == 2) {
    const double z = valueOf(raw, header);
    return {row, col, z == 0.0 ? std::nan("") : z};
  }
  const STesk3DPoint p = {valueOf(raw, header), valueOf(raw + header.itemSize, header),
                          valueOf(raw + 2 * header.itemSize, header)};
  const bool isHole = p.x == 0.0 && p.y == 0.0 && p.z == 0.0;
  return isHole ? STesk3DPoint{0.0, 0.0, std::nan("")} : p;
}

}  // namespace

RawScan readNpy(const InputOptions& options) {
  ByteReader bytes(options.path);
  const Header header = readHeader(options.path, bytes);
  if ((header.kind == 'f') == (header.itemSize == 2)) {
    throw refused(options.path, "its array is not of floats or 16-bit integers");
  }
  requireSize(options.path, header, bytes.size());
  RawScan raw;
  raw.isRange = header.shape.size() == 2;
  raw.format = raw.isRange ? "NPY range image" : "NPY of x, y, z";
  const std::size_t samples = header.shape[1];
  const std::size_t sampleSize = header.itemSize * (raw.isRange ? 1 : 3);
  std::vector<char> row(samples * sampleSize);
  std::ifstream file(options.path, std::ios::binary);
  file.seekg(static_cast<std::streamoff>(header.dataAt));
  raw.scan.resize(header.shape[0]);
  for (std::size_t l = 0; l < raw.scan.size(); ++l) {
    if (!file.read(row.data(), static_cast<std::streamsize>(row.size()))) {
      throw refused(options.path, "cannot be read to its end");
    }
    raw.scan[l].reserve(samples);
    for (std::size_t i = 0; i < samples; ++i) {
      raw.scan[l].push_back(
          {static_cast<int>(i),
           pointOf(&row[i * sampleSize], header, static_cast<double>(l), static_cast<double>(i))});
    }
  }
  return raw;
}

}  // namespace program
