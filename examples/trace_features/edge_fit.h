#pragma once

#include <scanline/feature_records.h>

namespace examples {

/// A feature tree with the line in space that fits it best.
struct TracedEdge {
  SQO_featureTree tree;
  STesk3DPoint centre;
  STesk3DPoint direction;  ///< Of unit length; x does not point backwards.
  double length;           ///< From the first node to the last, in x and y.
  double rmsError;         ///< Root of the mean squared distance of the nodes from the line.
};

TracedEdge fitEdge(SQO_featureTree tree);

}  // namespace examples
