#include "output/ply_file.h"

#include <cstdint>
#include <cstring>
#include <fstream>

namespace program {
namespace {

constexpr Colour kGrey = {0.6, 0.6, 0.6};

void append(std::string& bytes, const void* value, std::size_t size) {
  bytes.append(static_cast<const char*>(value), size);
}

/// A vertex: x, y, z in double precision, and a colour.
void appendVertex(std::string& bytes, const STesk3DPoint& p, Colour colour) {
  append(bytes, &p.x, sizeof p.x);
  append(bytes, &p.y, sizeof p.y);
  append(bytes, &p.z, sizeof p.z);
  for (const double part : {colour.red, colour.green, colour.blue}) {
    bytes.push_back(static_cast<char>(static_cast<unsigned char>(255.0 * part + 0.5)));
  }
}

std::string headerOf(std::size_t vertices, std::size_t edges) {
  const std::uint16_t probe = 1;
  char first = 0;
  std::memcpy(&first, &probe, 1);
  const std::string format = first == 1 ? "binary_little_endian" : "binary_big_endian";
  return "ply\nformat " + format + " 1.0\nelement vertex " + std::to_string(vertices) +
         "\nproperty double x\nproperty double y\nproperty double z\nproperty uchar red\n"
         "property uchar green\nproperty uchar blue\nelement edge " +
         std::to_string(edges) + "\nproperty int vertex1\nproperty int vertex2\nend_header\n";
}

}  // namespace

bool writePly(const std::string& path, const Scan& scan, const std::vector<PlyPath>& paths) {
  std::string vertices;
  std::int32_t count = 0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      if (isMeasured(sample)) {
        appendVertex(vertices, sample.pt3D, kGrey);
        ++count;
      }
    }
  }
  std::string edges;
  std::size_t edgeCount = 0;
  for (const PlyPath& one : paths) {
    for (std::size_t i = 0; i < one.points.size(); ++i, ++count) {
      appendVertex(vertices, one.points[i], one.colour);
      if (i > 0) {
        const std::int32_t ends[2] = {count - 1, count};
        append(edges, ends, sizeof ends);
        ++edgeCount;
      }
    }
  }
  std::ofstream file(path, std::ios::binary);
  file << headerOf(static_cast<std::size_t>(count), edgeCount) << vertices << edges;
  file.close();
  return static_cast<bool>(file);
}

}  // namespace program
