#pragma once

/// What the benchmarks of the extractors of line features share.

#include <vector>

#include <scanline/feature_records.h>
#include "bench_scan.h"

namespace bench {

/// Measures an extractor on the shared scan, line by line: `extract(line, lineIdx, found)`, where
/// `found` is cleared before each line. The scan is a copy, since extractors may stamp it.
template <typename Found, typename Extract>
void runOnScan(benchmark::State& state, Extract extract) {
  Scan scan = sharedScan();
  std::vector<Found> found;
  std::size_t count = 0;
  for (auto _ : state) {
    count = 0;
    for (int l = 0; l < kLines; ++l) {
      found.clear();
      extract(scan[l], l, found);
      count += found.size();
    }
  }
  countSamples(state);
  state.counters["found"] = static_cast<double>(count);
}

/// The same for an extractor that fills the record of a line.
template <typename Extract>
void runOnRecords(benchmark::State& state, Extract extract) {
  SQO_lineFeature record = {};
  runOnScan<SQO_basicFeature1D>(state, [&](Line& line, int l, auto& found) {
    record.features.swap(found);
    record.endings.clear();
    extract(line, l, record);
    record.features.swap(found);
  });
}

}  // namespace bench
