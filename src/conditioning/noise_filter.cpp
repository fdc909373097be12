#include <cstddef>
#include <vector>

#include "conditioning/outlier_walk.h"

namespace {

using scanline::detail::LastHeight;
using scanline::detail::OutlierWalk;

using Scan = std::vector<std::vector<STesk3DPosition>>;
using Walks = std::vector<OutlierWalk<LastHeight>>;

constexpr int kUnevenLines = -1000;

/// Filters every line by itself. Returns whether all are as long as the first.
bool filterAlongLines(Scan& scan, const SQO_outlierFilterParam& para) {
  const std::size_t length = scan.front().size();
  bool even = true;
  for (std::vector<STesk3DPosition>& line : scan) {
    even = even && line.size() == length;
    ju_vectorDataRemoveOutlier_overwrite(line, para);
  }
  return even;
}

/// Filters the samples of equal index across the lines, one fresh walk for each. All columns are
/// walked side by side, so that the scan is read as it lies in memory; blanking at once is safe, as
/// a walk never looks back at the samples it has passed.
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
  Walks walks(scanLines.front().size());  // All that is allocated, before anything is written.
  *errCode = 0;
  if (!filterAlongLines(scanLines, outlierPara)) {
    *errCode = kUnevenLines;
    return;
  }
  filterAcrossLines(scanLines, outlierPara, walks);
}
