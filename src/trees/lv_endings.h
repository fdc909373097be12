#pragma once

#include <vector>

#include <scanline/feature_records.h>

namespace scanline::detail {

/// Lengthens a tree at its front by endings of the lines before it, which take the tree's type.
/// The endings of the next line are compared with each new first node.
void lengthenFront(SQO_featureTree& tree,
                   std::vector<SQO_lineFeature>& lineFeatures,
                   const SQO_treeGrowParam& growParam);

/// Lengthens a tree at its back by endings of the lines after it, which take the tree's type. All
/// are compared with the node that was last when the walk began.
void lengthenBack(SQO_featureTree& tree,
                  std::vector<SQO_lineFeature>& lineFeatures,
                  const SQO_treeGrowParam& growParam);

}  // namespace scanline::detail
