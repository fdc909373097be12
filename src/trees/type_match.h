#pragma once

namespace scanline::detail {

/// Whether a feature may join a tree by their types. Not symmetric: a V tree takes slopes, a slope
/// tree takes no V.
bool typesMatch(int treeType, int featureType);

}  // namespace scanline::detail
