#include "trees/type_match.h"

#include <scanline/feature_records.h>

namespace scanline::detail {

bool typesMatch(int treeType, int featureType) {
  switch (treeType) {
    case FEATURE_JUMP_RISE:
    case FEATURE_SLOPE_RISE:
      return featureType == FEATURE_JUMP_RISE || featureType == FEATURE_SLOPE_RISE;
    case FEATURE_JUMP_FALL:
    case FEATURE_SLOPE_FALL:
      return featureType == FEATURE_JUMP_FALL || featureType == FEATURE_SLOPE_FALL;
    case FEATURE_V:
      return featureType == FEATURE_SLOPE_RISE || featureType == FEATURE_SLOPE_FALL ||
             featureType == FEATURE_V;
    case FEATURE_SEG_START:
    case FEATURE_SEG_END:
    case FEATURE_RIGHT_ANGLE_1:
    case FEATURE_RIGHT_ANGLE_2:
    case FEATURE_RIGHT_ANGLE_3:
    case FEATURE_RIGHT_ANGLE_4:
    case FEATURE_PEAK:
    case FEATURE_VALLEY:
    case FEATURE_CORNER_OTHER:
      return featureType == treeType;
    default:
      return false;
  }
}

}  // namespace scanline::detail
