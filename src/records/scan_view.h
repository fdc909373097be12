#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The samples of one line, for both forms of a line.
class LineView {
 public:
  explicit LineView(const STesk3DLaserLine& line)
      : begin_(line.p3DPosition), end_(begin_ + std::max(line.nPositionCnt, 0)) {
    assert(line.p3DPosition != nullptr || line.nPositionCnt <= 0);
  }
  explicit LineView(const std::vector<STesk3DPosition>& line)
      : begin_(line.data()), end_(begin_ + line.size()) {}

  [[nodiscard]] const STesk3DPosition* begin() const {
    return begin_;
  }
  [[nodiscard]] const STesk3DPosition* end() const {
    return end_;
  }
  [[nodiscard]] std::size_t size() const {
    return static_cast<std::size_t>(end_ - begin_);
  }

 private:
  const STesk3DPosition* begin_;
  const STesk3DPosition* end_;
};

/// The lines of a scan, for both forms of a scan.
using ScanView = std::vector<LineView>;

inline ScanView viewOf(const STesk3DLaserLine* lines, int lineNum) {
  assert(lines != nullptr || lineNum <= 0);
  return {lines, lines + std::max(lineNum, 0)};
}

inline ScanView viewOf(const std::vector<std::vector<STesk3DPosition>>& scan) {
  return {scan.begin(), scan.end()};
}

/// The number of samples of a scan, including missing ones.
inline std::size_t sampleCount(const ScanView& scan) {
  std::size_t count = 0;
  for (const LineView& line : scan) {
    count += line.size();
  }
  return count;
}

}  // namespace scanline::detail
