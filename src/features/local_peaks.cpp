// Finds the local peaks and valleys of a line: the turning points of z that are extreme among those
// around them.
#include <cassert>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_samples.h"
#include "features/suppression.h"
#include "features/z_turns.h"
#include "records/append.h"

namespace detail = scanline::detail;

namespace {

/// Those of some samples without a more extreme one among them within `scale` in y. `sign` is -1.0
/// if a smaller z is more extreme, 1.0 if a greater one is.
std::vector<int> findExtreme(const STesk3DPosition* lineData,
                             const std::vector<int>& samples,
                             double sign,
                             double scale) {
  detail::Candidates turns(samples.size());
  for (int k = 0; k < turns.count(); ++k) {
    const STesk3DPoint& point = lineData[samples[k]].pt3D;
    turns.y[k] = point.y;
    turns.strength[k] = sign * point.z;
  }
  std::vector<int> extreme = detail::findUnsuppressed(turns, scale * scale);
  for (int& k : extreme) {
    k = samples[k];
  }
  return extreme;
}

}  // namespace

void qo_getLineLocalPeaks(STesk3DPosition* lineData,
                          int dataSize,
                          int lineIdx,
                          double scale,
                          std::vector<SQO_basicFeature1D>& valleys,
                          std::vector<SQO_basicFeature1D>& peaks) {
  assert(dataSize < 1 || lineData != nullptr);
  assert(&valleys != &peaks);
  if (dataSize < 2) {
    return;
  }
  const auto [minima, maxima] = detail::findZTurns(lineData, dataSize);
  const std::vector<int> low = findExtreme(lineData, minima, -1.0, scale);
  const std::vector<int> high = findExtreme(lineData, maxima, 1.0, scale);
  detail::makeRoom(low.size(), peaks);
  detail::makeRoom(high.size(), valleys);
  // Nothing is allocated from here on.
  for (const int sample : low) {
    peaks.push_back(detail::featureAt(lineData, sample, FEATURE_PEAK, lineIdx));
  }
  for (const int sample : high) {
    valleys.push_back(detail::featureAt(lineData, sample, FEATURE_VALLEY, lineIdx));
  }
  detail::stampIndices(lineData, dataSize);
}
