#include "checks.h"

#include <cstddef>

namespace binding {

void requireIndexStamps(const STesk3DPosition* line, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i) {
    require(line[i].nPointIdx == static_cast<int>(i), "lineData",
            "samples whose nPointIdx is their index",
            std::to_string(line[i].nPointIdx) + " in sample " + std::to_string(i));
  }
}

void requireNoShorterLine(const std::vector<std::size_t>& sizes, const char* argument) {
  for (std::size_t i = 1; i < sizes.size(); ++i) {
    require(sizes[i] >= sizes[0], argument,
            "no line with fewer samples than the first, which has " + std::to_string(sizes[0]),
            std::to_string(sizes[i]) + " in line " + std::to_string(i));
  }
}

std::vector<std::size_t> lineSizes(const STesk3DLaserLine* lines, int count) {
  std::vector<std::size_t> sizes;
  for (int i = 0; i < count; ++i) {
    sizes.push_back(static_cast<std::size_t>(lines[i].nPositionCnt));
  }
  return sizes;
}

}  // namespace binding
