// Removes the outliers of a scan along its lines, then across them.
#include <cassert>
#include <cstddef>
#include <vector>

#include "conditioning/outlier_walk.h"

namespace {

using scanline::detail::LastHeight;
using scanline::detail::OutlierWalk;

using Scan = std::vector<std::vector<STesk3DPosition>>;
using Walks = std::vector<OutlierWalk<LastHeight>>;

constexpr int kUnevenLines = -1000;

/// Filters each line by itself. Returns whether all lines are as long as the first.
bool filterAlongLines(Scan& scan, const SQO_outlierFilterParam& para) {
  const std::size_t length = scan.front().size();
  bool even = true;
  for (std::vector<STesk3DPosition>& line : scan) {
    even = even && line.size() == length;
    ju_vectorDataRemoveOutlier_overwrite(line, para);
  }
  return even;
}

/// Filters the samples of equal index of all lines, with one walk for each index. All walks advance
/// together, so that the scan is read in the order of memory. Samples are blanked at once, since a
/// walk never reads a sample again.
void filterAcrossLines(Scan& scan, const SQO_outlierFilterParam& para, Walks& walks) {
  std::size_t column = 0;
  const auto blank = [&](int first, int last) {
    for (int k = first; k <= last; ++k) {
      scan[k][column].pt3D.z = 0.0;
    }
  };
  const int lineCount = static_cast<int>(scan.size());
  for (int i = 0; i < lineCount; ++i) {
    const STesk3DPosition* const line = scan[i].data();
    for (column = 0; column < walks.size(); ++column) {
      walks[column].take(i, line[column].pt3D, para, blank);
    }
  }
  for (column = 0; column < walks.size(); ++column) {
    walks[column].finish(para, blank);
  }
}

}  // namespace

void ju_noiseFilter(std::vector<std::vector<STesk3DPosition>>& scanLines,
                    SQO_outlierFilterParam outlierPara,
                    int* errCode) {
  assert(!scanLines.empty());
  Walks walks(scanLines.front().size());  // The only allocation, before the first write.
  *errCode = 0;
  if (!filterAlongLines(scanLines, outlierPara)) {
    *errCode = kUnevenLines;
    return;
  }
  filterAcrossLines(scanLines, outlierPara, walks);
}
