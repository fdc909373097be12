#pragma once

#include <cstddef>
#include <vector>

#include <scanline/scan_records.h>

namespace scanline::detail {

/// The samples of one line, whatever form the scan has.
struct LineView {
  const STesk3DPosition* samples;
  int count;

  [[nodiscard]] const STesk3DPosition* begin() const {
    return samples;
  }
  [[nodiscard]] const STesk3DPosition* end() const {
    return samples + (count > 0 ? count : 0);
  }
};

/// Both forms of a scan under one read-only face, so that an algorithm is written once for both.
class PointerScan {
 public:
  PointerScan(const STesk3DLaserLine* lines, int lineNum) : lines_(lines), lineNum_(lineNum) {}
  [[nodiscard]] int lineCount() const {
    return lineNum_;
  }
  [[nodiscard]] LineView line(int i) const {
    return {lines_[i].p3DPosition, lines_[i].nPositionCnt};
  }

 private:
  const STesk3DLaserLine* lines_;
  int lineNum_;
};

class VectorScan {
 public:
  explicit VectorScan(const std::vector<std::vector<STesk3DPosition>>& scan) : scan_(scan) {}
  [[nodiscard]] int lineCount() const {
    return static_cast<int>(scan_.size());
  }
  [[nodiscard]] LineView line(int i) const {
    return {scan_[i].data(), static_cast<int>(scan_[i].size())};
  }

 private:
  const std::vector<std::vector<STesk3DPosition>>& scan_;
};

/// Calls `take(sample)` for every sample of a scan, line by line.
template <typename Scan, typename Take>
void forEachSample(const Scan& scan, Take take) {
  for (int i = 0; i < scan.lineCount(); ++i) {
    for (const STesk3DPosition& sample : scan.line(i)) {
      take(sample);
    }
  }
}

/// The number of samples of a scan, no-samples included.
template <typename Scan>
std::size_t sampleCount(const Scan& scan) {
  std::size_t count = 0;
  for (int i = 0; i < scan.lineCount(); ++i) {
    const LineView line = scan.line(i);
    count += static_cast<std::size_t>(line.end() - line.begin());
  }
  return count;
}

}  // namespace scanline::detail
