#include "output/scan_file.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

#include "base/failure.h"
#include "base/number.h"
#include "output/tiff_writer.h"

namespace program {
namespace {

std::size_t widthOf(const Scan& scan) {
  std::size_t width = 0;
  for (const Line& line : scan) {
    width = std::max(width, line.size());
  }
  return width;
}

/// The header of an array of doubles in this machine's byte order, filled up to 64 bytes.
std::string npyHeader(std::size_t lines, std::size_t samples) {
  const std::uint16_t probe = 1;
  char first = 0;
  std::memcpy(&first, &probe, 1);
  std::string text = std::string("{'descr': '") + (first == 1 ? '<' : '>') +
                     "f8', 'fortran_order': False, 'shape': (" + std::to_string(lines) + ", " +
                     std::to_string(samples) + ", 3), }";
  constexpr std::size_t kMagic = 10;
  constexpr std::size_t kBlock = 64;
  text.append(kBlock - (kMagic + text.size() + 1) % kBlock, ' ');
  text += '\n';
  const std::string length = {static_cast<char>(text.size() & 0xFFU),
                              static_cast<char>(text.size() >> 8U)};
  return std::string("\x93NUMPY\x01\x00", 8) + length + text;
}

bool writeNpy(const std::string& path, const Scan& scan) {
  const std::size_t width = widthOf(scan);
  std::ofstream file(path, std::ios::binary);
  file << npyHeader(scan.size(), width);
  std::vector<STesk3DPoint> row(width);
  for (const Line& line : scan) {
    std::fill(row.begin(), row.end(), STesk3DPoint{});
    std::transform(line.begin(), line.end(), row.begin(), [](const STesk3DPosition& sample) {
      return isMeasured(sample) ? sample.pt3D : STesk3DPoint{};
    });
    file.write(reinterpret_cast<const char*>(row.data()),
               static_cast<std::streamsize>(row.size() * sizeof(STesk3DPoint)));
  }
  file.close();
  return static_cast<bool>(file);
}

/// The largest distance that a coordinate moves in single precision.
double lossOfFloats(const Scan& scan) {
  double loss = 0.0;
  for (const Line& line : scan) {
    for (const STesk3DPosition& sample : line) {
      for (const double value : {sample.pt3D.x, sample.pt3D.y, sample.pt3D.z}) {
        loss = std::max(loss, std::abs(value - static_cast<double>(static_cast<float>(value))));
      }
    }
  }
  return loss;
}

void warnOfLoss(const Scan& scan, const Extent& extent, Messages& messages) {
  constexpr double kShare = 0.001;
  const double loss = lossOfFloats(scan);
  double spacing = extent.sampleSpacing;
  if (extent.lineSpacing > 0.0 && (spacing == 0.0 || extent.lineSpacing < spacing)) {
    spacing = extent.lineSpacing;
  }
  if (loss > kShare * spacing) {
    messages.warn("single-precision", "the saved TIFF is off by up to " + significant(loss, 2) +
                                          ", as it has single precision. Save .npy to keep all "
                                          "digits");
  }
}

void requireFit(const std::string& path, const Scan& scan) {
  if (!fitsTiff(scan.size(), widthOf(scan))) {
    throw Failure(ExitCode::cannotWrite,
                  path + ": the scan is too large for a TIFF, which holds 4 GB. Save .npy");
  }
}

}  // namespace

void addScanFile(OutputFiles& files,
                 const std::string& path,
                 const Scan& scan,
                 const Extent& extent,
                 Messages& messages) {
  const bool isNpy = std::filesystem::path(path).extension() == ".npy";
  if (!isNpy) {
    requireFit(path, scan);
    warnOfLoss(scan, extent, messages);
  }
  files.add(path, [&](const std::string& temporary) {
    return isNpy ? writeNpy(temporary, scan) : writeTiff(temporary, scan, widthOf(scan));
  });
}

}  // namespace program
