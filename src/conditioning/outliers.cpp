#include <algorithm>
#include <vector>

#include "conditioning/outlier_walk.h"

namespace {

using scanline::detail::LastHeight;
using scanline::detail::LastPoint;
using scanline::detail::OutlierWalk;

/// Blanks the outliers of a line in place and calls `note(k)` for every index blanked.
template <typename Last, typename Note>
void blankOutliers(STesk3DPosition* line,
                   int count,
                   const SQO_outlierFilterParam& para,
                   Note note) {
  const auto blank = [&](int first, int last) {
    for (int k = first; k <= last; ++k) {
      line[k].pt3D.z = 0.0;
      note(k);
    }
  };
  OutlierWalk<Last> walk;
  for (int i = 0; i < count; ++i) {
    walk.take(i, line[i].pt3D, para, blank);
  }
  walk.finish(para, blank);
}

template <typename Last>
void copyWithoutOutliers(const STesk3DPosition* line,
                         int count,
                         const SQO_outlierFilterParam& para,
                         std::vector<STesk3DPosition>& filtered,
                         std::vector<int>& noise) {
  filtered.assign(line, line + std::max(count, 0));
  blankOutliers<Last>(filtered.data(), count, para, [&](int k) { noise.push_back(k); });
}

constexpr auto noNote = [](int) {};

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
  blankOutliers<LastHeight>(lineData, dataSize, outlierPara, noNote);
}

void ju_vectorDataRemoveOutlier_overwrite(std::vector<STesk3DPosition>& lineData,
                                          SQO_outlierFilterParam outlierPara) {
  const int count = static_cast<int>(lineData.size());
  blankOutliers<LastHeight>(lineData.data(), count, outlierPara, noNote);
}

void qo_lineDataRemoveOutlier_ptDistMethod(STesk3DPosition* lineData,
                                           int dataSize,
                                           SQO_outlierFilterParam outlierPara,
                                           std::vector<STesk3DPosition>& filteredData,
                                           std::vector<int>& noisePts) {
  copyWithoutOutliers<LastPoint>(lineData, dataSize, outlierPara, filteredData, noisePts);
}
