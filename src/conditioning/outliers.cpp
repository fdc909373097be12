// Removes the outliers of single lines.
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <vector>

#include "conditioning/outlier_walk.h"

namespace {

using scanline::detail::LastHeight;
using scanline::detail::LastPoint;
using scanline::detail::OutlierWalk;

/// Calls `outlier(k)` for every index of a line that is to be blanked, including holes.
template <typename Last, typename Outlier>
void findOutliers(const STesk3DPosition* line,
                  int count,
                  const SQO_outlierFilterParam& para,
                  Outlier outlier) {
  assert(line != nullptr || count <= 0);
  const auto report = [&](int first, int last) {
    for (int k = first; k <= last; ++k) {
      outlier(k);
    }
  };
  OutlierWalk<Last> walk;
  for (int i = 0; i < count; ++i) {
    walk.take(i, line[i].pt3D, para, report);
  }
  walk.finish(para, report);
}

void blankOutliers(STesk3DPosition* line, int count, const SQO_outlierFilterParam& para) {
  findOutliers<LastHeight>(line, count, para, [line](int k) { line[k].pt3D.z = 0.0; });
}

template <typename Last>
void copyWithoutOutliers(const STesk3DPosition* line,
                         int count,
                         const SQO_outlierFilterParam& para,
                         std::vector<STesk3DPosition>& filtered,
                         std::vector<int>& noise) {
  assert(count <= 0 || filtered.data() != line);
  std::vector<int> outliers;
  findOutliers<Last>(line, count, para, [&](int k) { outliers.push_back(k); });
  const auto size = static_cast<std::size_t>(std::max(count, 0));
  filtered.reserve(size);
  noise.insert(noise.end(), outliers.begin(), outliers.end());
  // Nothing is allocated after this.
  filtered.assign(line, line + size);
  for (const int k : outliers) {
    filtered[k].pt3D.z = 0.0;
  }
}

}  // namespace

void qo_lineDataRemoveOutlier(STesk3DPosition* lineData,
                              int dataSize,
                              SQO_outlierFilterParam outlierPara,
                              std::vector<STesk3DPosition>& filteredData,
                              std::vector<int>& noisePts) {
  copyWithoutOutliers<LastHeight>(lineData, dataSize, outlierPara, filteredData, noisePts);
}

void qo_lineDataRemoveOutlier_changeOriginData(STesk3DPosition* lineData,
                                               int dataSize,
                                               SQO_outlierFilterParam outlierPara) {
  blankOutliers(lineData, dataSize, outlierPara);
}

void ju_vectorDataRemoveOutlier_overwrite(std::vector<STesk3DPosition>& lineData,
                                          SQO_outlierFilterParam outlierPara) {
  blankOutliers(lineData.data(), static_cast<int>(lineData.size()), outlierPara);
}

void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                           int dataSize,
                                           SQO_outlierFilterParam outlierPara,
                                           std::vector<STesk3DPosition>& filteredData,
                                           std::vector<int>& noisePts) {
  copyWithoutOutliers<LastPoint>(lineData, dataSize, outlierPara, filteredData, noisePts);
}
