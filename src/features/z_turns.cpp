// Finds the turning points of z along a line.
#include "features/z_turns.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "features/turn_lists.h"
#include "records/sample_rules.h"

namespace scanline::detail {

ZTurns findZTurns(const STesk3DPosition* lineData, int dataSize) {
  TurnLists turns(static_cast<std::size_t>(std::max(dataSize, 0)));
  double before = std::numeric_limits<double>::quiet_NaN();
  for (int i = 0; i < dataSize; ++i) {
    const double z = lineData[i].pt3D.z;
    if (!isMissing(z)) {
      turns.take(i, z - before);
      before = z;
    }
  }
  if (dataSize > 0 && isMissing(lineData[dataSize - 1].pt3D.z)) {
    turns.close();
  }
  return {turns.releaseMinima(), turns.releaseMaxima()};
}

}  // namespace scanline::detail
