#include "bench_scan.h"
#include "trees.h"

// A feature must cost the same however many edges a line has, and however many trees have closed.

namespace {

constexpr SQO_treeGrowParam kGrow = {2.0, 5.0, 5, 4.0, 20.0, 20.0};
constexpr int kTreeLines = 1000;

using Features = std::vector<SQO_basicFeature1D>;

/// Edges 10 apart that run straight across the scan; `strays` more features per line lie anywhere.
std::vector<Features> makeFeatures(int edges, int strays) {
  bench::Noise noise;
  std::vector<Features> lines(kTreeLines);
  for (int l = 0; l < kTreeLines; ++l) {
    const double x = 0.5 * l;
    for (int k = 0; k < edges + strays; ++k) {
      const double y = k < edges ? 10.0 * k + noise.next() : 5.0 * edges * (1.0 + noise.next());
      const int type = k < edges ? FEATURE_JUMP_RISE : FEATURE_CORNER_OTHER;
      lines[l].push_back({type, {l, k}, {x, y, 100.0 + noise.next()}, 1.0});
    }
  }
  return lines;
}

std::vector<SQO_lineFeature> asRecords(const std::vector<Features>& lines) {
  std::vector<SQO_lineFeature> records;
  records.reserve(lines.size());
  for (const Features& features : lines) {
    records.push_back({static_cast<int>(records.size()), features, {}});
  }
  return records;
}

void countFeatures(benchmark::State& state, int perLine) {
  bench::countSamples(state, std::int64_t{kTreeLines} * perLine);
}

/// Trees that closed long ago, such as those of earlier scans.
std::vector<SQO_featureTree> closedTrees(std::int64_t count) {
  const Features nodes = {{FEATURE_JUMP_RISE, {-9, 0}, {-4.5, 0.0, 100.0}, 1.0}};
  return {static_cast<std::size_t>(count),
          {TREE_CLOSED, FEATURE_JUMP_RISE, -9, -9, 1.0, {0.0, 0.0}, {0.0, 0.0}, nodes, -1}};
}

void BM_Trees_WholeScan(benchmark::State& state) {
  const int edges = static_cast<int>(state.range(0));
  std::vector<SQO_lineFeature> lines = asRecords(makeFeatures(edges, edges / 4));
  std::vector<SQO_featureTree> trees;
  for (auto _ : state) {
    state.PauseTiming();
    trees = closedTrees(state.range(1));
    state.ResumeTiming();
    qo_getFeatureGrowingTrees(lines, trees, kGrow);
  }
  countFeatures(state, edges + edges / 4);
}
BENCHMARK(BM_Trees_WholeScan)
    ->ArgNames({"edges", "closed"})
    ->Args({40, 0})
    ->Args({100, 0})
    ->Args({400, 0})
    ->Args({40, 10000})
    ->Unit(benchmark::kMillisecond);

/// Strays start trees of one line, which here never close and gather in the list.
void BM_Trees_Corners(benchmark::State& state) {
  const int edges = static_cast<int>(state.range(0));
  std::vector<Features> lines = makeFeatures(edges, edges / 4);
  std::vector<SQO_featureTree> trees;
  for (auto _ : state) {
    state.PauseTiming();
    trees.clear();
    state.ResumeTiming();
    qo_cornerFeaturesGrowing(lines, trees, kGrow);
  }
  countFeatures(state, edges + edges / 4);
}
BENCHMARK(BM_Trees_Corners)
    ->ArgName("edges")
    ->Arg(40)
    ->Arg(100)
    ->Arg(400)
    ->Unit(benchmark::kMillisecond);

void BM_Trees_LineByLine(benchmark::State& state) {
  const int edges = static_cast<int>(state.range(0));
  std::vector<Features> lines = makeFeatures(edges, 0);
  std::vector<SQO_featureTree> trees;
  for (auto _ : state) {
    state.PauseTiming();
    trees.clear();
    state.ResumeTiming();
    for (int l = 0; l < kTreeLines; ++l) {
      qo_lineFeaturesGrowing(l, l + 1 == kTreeLines, lines[l], trees, kGrow);
    }
  }
  countFeatures(state, edges);
}
BENCHMARK(BM_Trees_LineByLine)->ArgName("edges")->Arg(40)->Arg(400)->Unit(benchmark::kMillisecond);

}  // namespace
