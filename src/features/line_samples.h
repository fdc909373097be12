#pragma once

#include <scanline/feature_records.h>
#include <scanline/scan_records.h>

/// What all extractors write: features on samples of a line, and indices into its samples.
namespace scanline::detail {

/// A feature on a sample of a line.
inline SQO_basicFeature1D featureAt(
    const STesk3DPosition* lineData, int sample, int type, int lineIdx, double value = 0.0) {
  return {type, {lineIdx, sample}, lineData[sample].pt3D, value};
}

/// Writes the index of each sample into it.
inline void stampIndices(STesk3DPosition* lineData, int dataSize) {
  for (int i = 0; i < dataSize; ++i) {
    lineData[i].nPointIdx = i;
  }
}

/// Whether each sample holds its index.
inline bool isStamped(const STesk3DPosition* lineData, int dataSize) {
  int i = 0;
  while (i < dataSize && lineData[i].nPointIdx == i) {
    ++i;
  }
  return i >= dataSize;
}

}  // namespace scanline::detail
