// Finds where z turns along a line.
#include "features/z_turns.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>

#include "records/sample_rules.h"

namespace scanline::detail {
namespace {

/// A list of indices that is written without branches: `put` always writes, and keeps what it wrote
/// if `isKept`. Needs a place more than it keeps.
class IndexList {
 public:
  explicit IndexList(std::size_t places) : indices_(places) {}

  void put(int index, bool isKept) {
    indices_[count_] = index;
    count_ += static_cast<std::size_t>(isKept);
  }

  std::vector<int> release() {
    indices_.resize(count_);
    return std::move(indices_);
  }

 private:
  std::vector<int> indices_;
  std::size_t count_ = 0;
};

}  // namespace

ZTurns findZTurns(const STesk3DPosition* lineData, int dataSize) {
  // Minima and maxima alternate, so there are no more of either than half of the samples, rounded
  // up.
  const std::size_t places = static_cast<std::size_t>(std::max(dataSize, 0)) / 2 + 2;
  IndexList minima(places);
  IndexList maxima(places);
  bool isFalling = false;
  bool isRising = false;
  int before = -1;
  double beforeZ = std::numeric_limits<double>::quiet_NaN();
  for (int i = 0; i < dataSize; ++i) {
    const double z = lineData[i].pt3D.z;
    if (isNoSample(z)) {
      continue;
    }
    const double dz = z - beforeZ;
    const bool rises = dz > 0.0;
    const bool falls = dz < 0.0;
    // In noise z turns without a pattern, which branches would not predict.
    minima.put(before, rises & isFalling);
    maxima.put(before, falls & isRising);
    isFalling = falls | (isFalling & !rises);
    isRising = rises | (isRising & !falls);
    before = i;
    beforeZ = z;
  }
  // Only a line that ends in a hole closes its last trend.
  const bool endsInHole = dataSize > 0 && isNoSample(lineData[dataSize - 1].pt3D.z);
  minima.put(before, endsInHole & isFalling);
  maxima.put(before, endsInHole & isRising);
  return {minima.release(), maxima.release()};
}

}  // namespace scanline::detail
