#pragma once

#include "feature_records.h"

/// The rules that growers of feature trees share.
namespace scanline::detail {

/// Whether a feature lies close enough behind a tree's last node: not on the node's own line,
/// within the deviations of y and z, and within that of x once the tree lies far behind in lines.
bool isInReach(const SQO_basicFeature1D& feature,
               const SQO_basicFeature1D& lastNode,
               const SQO_treeGrowParam& growParam);

/// A fresh tree of one node whose value counts from `treeValue`.
SQO_featureTree newTree(const SQO_basicFeature1D& feature, int lineIdx, double treeValue);

/// Whether a tree that closes is to stay in the list.
bool qo_treeLongEnough(const SQO_featureTree& tree, double minLTypeTreeLen, double minVTypeTreeLen);

/// Fills the ranges in x and y from the nodes; without nodes all four values become 0.
void qo_treeBounds(SQO_featureTree& tree);

/// Distance of two line indices.
long long lineGap(int a, int b);

}  // namespace scanline::detail
