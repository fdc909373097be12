#pragma once

#include <vector>

#include "feature_records.h"

namespace scanline::detail {

/// Where the features lie that a call has yet to place. It tells the trees that none of them can
/// reach any more.
class Outlook {
 public:
  /// Takes in the features of one line.
  void add(const std::vector<SQO_basicFeature1D>& features);

  /// Whether a tree with this last node is within reach, in lines or in x, of any feature. Errs on
  /// the side of yes.
  [[nodiscard]] bool reaches(const SQO_basicFeature1D& lastNode,
                             const SQO_treeGrowParam& growParam) const;

 private:
  STeskRangeD x_ = {0.0, -1.0};
  int firstLine_ = 0;
  int lastLine_ = -1;
};

}  // namespace scanline::detail
