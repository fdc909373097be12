#include "output/tiff_writer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <limits>
#include <vector>

namespace program {
namespace {

using Pixel = std::array<float, 3>;

constexpr std::uint64_t kStripBytes = 1U << 20U;

/// The strips of an image, of which all but the last hold the same number of lines.
struct Strips {
  std::uint64_t lineBytes;
  std::uint64_t lines;
  std::uint64_t linesEach;

  [[nodiscard]] std::uint64_t count() const {
    return (lines + linesEach - 1) / linesEach;
  }
  [[nodiscard]] std::uint64_t offset(std::uint64_t strip) const {
    return strip * linesEach * lineBytes;
  }
};

Strips stripsOf(std::size_t lines, std::size_t samples) {
  const std::uint64_t lineBytes = samples * sizeof(Pixel);
  return {lineBytes, lines, std::max<std::uint64_t>(kStripBytes / lineBytes, 1)};
}

/// An entry of the directory: its tag, the type of its values, and these.
struct Entry {
  std::uint16_t tag;
  std::uint16_t type;
  std::vector<std::uint32_t> values;
};

constexpr std::uint16_t kShort = 3;
constexpr std::uint16_t kLong = 4;
constexpr std::size_t kEntryBytes = 12;

/// In the order of their tags. `dataAt` is where the values of the samples begin.
std::vector<Entry> entriesOf(const Strips& strips, std::size_t samples, std::uint32_t dataAt) {
  constexpr std::uint32_t kFloat = 3;
  Entry offsets = {273, kLong, {}};
  Entry sizes = {279, kLong, {}};
  for (std::uint64_t strip = 0; strip < strips.count(); ++strip) {
    const std::uint64_t begin = strips.offset(strip);
    const std::uint64_t end = std::min(strips.offset(strip + 1), strips.lines * strips.lineBytes);
    offsets.values.push_back(dataAt + static_cast<std::uint32_t>(begin));
    sizes.values.push_back(static_cast<std::uint32_t>(end - begin));
  }
  return {{256, kLong, {static_cast<std::uint32_t>(samples)}},
          {257, kLong, {static_cast<std::uint32_t>(strips.lines)}},
          {258, kShort, {32, 32, 32}},  // bits
          {259, kShort, {1}},           // not compressed
          {262, kShort, {2}},           // channels, not levels
          offsets,
          {277, kShort, {3}},  // channels
          {278, kLong, {static_cast<std::uint32_t>(strips.linesEach)}},
          sizes,
          {284, kShort, {1}},  // x, y, z of a sample after one another
          {339, kShort, {kFloat, kFloat, kFloat}}};
}

template <typename Value>
void append(std::string& to, Value value) {
  std::array<char, sizeof value> bytes{};
  std::memcpy(bytes.data(), &value, sizeof value);
  to.append(bytes.data(), bytes.size());
}

std::string valuesOf(const Entry& entry) {
  std::string text;
  for (const std::uint32_t value : entry.values) {
    if (entry.type == kShort) {
      append(text, static_cast<std::uint16_t>(value));
    } else {
      append(text, value);
    }
  }
  return text;
}

/// What precedes the samples, in this machine's byte order: the header, the directory, and the
/// values that are too long for it.
std::string headOf(const std::vector<Entry>& entries) {
  constexpr std::uint32_t kDirectoryAt = 8;
  const std::uint16_t version = 42;
  std::string head;
  append(head, version);
  head = (head.front() == 42 ? "II" : "MM") + head;
  append(head, kDirectoryAt);
  append(head, static_cast<std::uint16_t>(entries.size()));
  const std::size_t longAt = head.size() + entries.size() * kEntryBytes + 4;
  std::string longValues;
  for (const Entry& entry : entries) {
    append(head, entry.tag);
    append(head, entry.type);
    append(head, static_cast<std::uint32_t>(entry.values.size()));
    std::string values = valuesOf(entry);
    if (values.size() > 4) {
      append(head, static_cast<std::uint32_t>(longAt + longValues.size()));
      longValues += values;
    } else {
      values.resize(4, '\0');
      head += values;
    }
  }
  append(head, std::uint32_t{0});  // no other directory
  return head + longValues;
}

}  // namespace

bool fitsTiff(std::size_t lines, std::size_t samples) {
  const std::uint64_t strips = stripsOf(lines, samples).count();
  constexpr std::uint64_t kRest = 1024;
  return lines * samples * sizeof(Pixel) + 2 * sizeof(std::uint32_t) * strips + kRest <=
         std::numeric_limits<std::uint32_t>::max();
}

bool writeTiff(const std::string& path, const Scan& scan, std::size_t samples) {
  const Strips strips = stripsOf(scan.size(), samples);
  // The length of the head does not depend on the offsets in it.
  const std::size_t dataAt = headOf(entriesOf(strips, samples, 0)).size();
  std::ofstream file(path, std::ios::binary);
  file << headOf(entriesOf(strips, samples, static_cast<std::uint32_t>(dataAt)));
  std::vector<Pixel> row(samples);
  for (const Line& line : scan) {
    std::fill(row.begin(), row.end(), Pixel{});
    std::transform(line.begin(), line.end(), row.begin(), [](const STesk3DPosition& sample) {
      const STesk3DPoint p = isMeasured(sample) ? sample.pt3D : STesk3DPoint{};
      return Pixel{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)};
    });
    file.write(reinterpret_cast<const char*>(row.data()),
               static_cast<std::streamsize>(row.size() * sizeof(Pixel)));
  }
  file.close();
  return static_cast<bool>(file);
}

}  // namespace program
