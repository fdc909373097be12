#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace program {

/// The first directory of a TIFF: the unsigned values of each tag.
struct TiffDirectory {
  std::map<int, std::vector<std::uint64_t>> values;
  bool isLast = true;

  /// The first value of a tag.
  [[nodiscard]] std::uint64_t get(int tag, std::uint64_t missing) const {
    const auto found = values.find(tag);
    return found == values.end() ? missing : found->second.front();
  }
};

/// Reads the first directory of a TIFF or BigTIFF of either byte order, with all bounds checked;
/// nothing for a file of another format. @throws Failure (badInput) if it is damaged
std::optional<TiffDirectory> readTiffDirectory(const std::string& path);

}  // namespace program
