#pragma once

#include <scanline/feature_records.h>
#include "records/sample_rules.h"
#include "trees/node_place.h"

namespace scanline::detail {

/// How far from a tree's last node a feature may lie to join it, at the most.
struct Reach {
  double y;   ///< It differs by less than this.
  int lines;  ///< It is fewer lines away than this, or
  double x;   ///< differs by less than this.
};

/// Where the features lie that a call has yet to place. It tells the trees that none of them can
/// reach any more.
class Outlook {
 public:
  /// Takes in the features of one line.
  template <typename Nodes>
  void add(const Nodes& features) {
    for (const auto& feature : features) {
      addPlace(lineOf(feature), positionOf(feature).x);
    }
  }

  /// Whether a tree with this last node is within reach, in lines or in x, of any feature. Errs on
  /// the side of yes.
  template <typename Node>
  [[nodiscard]] bool reaches(const Node& lastNode, const Reach& reach) const {
    return reachesPlace(lineOf(lastNode), positionOf(lastNode).x, reach);
  }

 private:
  void addPlace(int line, double x);
  [[nodiscard]] bool reachesPlace(int line, double x, const Reach& reach) const;

  STeskRangeD x_ = kEmptyRange;
  int firstLine_ = 0;
  int lastLine_ = -1;
};

}  // namespace scanline::detail
