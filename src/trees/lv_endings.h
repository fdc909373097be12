#pragma once

#include <vector>

#include <scanline/feature_records.h>

namespace scanline::detail {

/// Lengthens a tree at its front by endings of the lines before it. Endings that are taken change
/// to the type of the tree. Each new first node becomes the reference for the next line.
void lengthenFront(SQO_featureTree& tree,
                   std::vector<SQO_lineFeature>& lineFeatures,
                   const SQO_treeGrowParam& growParam);

/// Lengthens a tree at its back by endings of the lines after it. Endings that are taken change to
/// the type of the tree. The last node from before the call is the reference throughout.
void lengthenBack(SQO_featureTree& tree,
                  std::vector<SQO_lineFeature>& lineFeatures,
                  const SQO_treeGrowParam& growParam);

}  // namespace scanline::detail
