#pragma once

namespace scanline::detail {

/// Whether the type of a feature matches that of a tree. Not symmetric: a V tree takes slopes, but
/// a slope tree takes no V.
bool typesMatch(int treeType, int featureType);

}  // namespace scanline::detail
