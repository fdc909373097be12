#include <cmath>

#include <scanline/trees.h>
#include "bench_scan.h"
#include "plain_trees.h"

// The cost per feature must not depend on the number of features on a line, of closed trees in the
// list, of trees of one line that never close, or of features at one place.

namespace {

constexpr SQO_treeGrowParam kGrow = {2.0, 5.0, 5, 4.0, 20.0, 20.0};
constexpr int kTreeLines = 2000;

using Features = std::vector<SQO_basicFeature1D>;
using FeatureLines = std::vector<Features>;

/// Straight edges across the scan, 10.0 apart. Every fifth feature is a stray anywhere on the line,
/// which usually starts a new tree.
FeatureLines makeFeatures(int perLine) {
  bench::Noise noise;
  FeatureLines lines(kTreeLines);
  const int edges = perLine - perLine / 5;
  for (int l = 0; l < kTreeLines; ++l) {
    const double x = 0.5 * l;
    for (int k = 0; k < perLine; ++k) {
      const double y = k < edges ? 10.0 * k + noise.next() : 5.0 * edges * (1.0 + noise.next());
      const int type = k < edges ? FEATURE_SLOPE_RISE : FEATURE_CORNER_OTHER;
      lines[l].push_back({type, {l, k}, {x, y, 100.0 + noise.next()}, 1.0});
    }
  }
  return lines;
}

/// The features of each line, converted to another type.
template <typename Convert>
auto converted(const FeatureLines& lines, Convert convert) {
  std::vector<std::vector<decltype(convert(lines[0][0]))>> result(lines.size());
  for (std::size_t l = 0; l < lines.size(); ++l) {
    for (const SQO_basicFeature1D& feature : lines[l]) {
      result[l].push_back(convert(feature));
    }
  }
  return result;
}

std::vector<SQO_lineFeature> asRecords(const FeatureLines& lines) {
  std::vector<SQO_lineFeature> records;
  records.reserve(lines.size());
  for (const Features& features : lines) {
    records.push_back({static_cast<int>(records.size()), features, {}});
  }
  return records;
}

/// Closed trees, such as those of earlier scans.
template <typename Tree>
std::vector<Tree> closedTrees(std::int64_t count) {
  Tree tree = {};
  tree.treeState = TREE_CLOSED;
  tree.treeNodes.resize(1);
  return {static_cast<std::size_t>(count), tree};
}

/// Times `grow(trees)` on a list of closed trees.
template <typename Tree, typename Grow>
void timeGrowing(benchmark::State& state, Grow grow) {
  std::vector<Tree> trees;
  for (auto _ : state) {
    state.PauseTiming();
    trees = closedTrees<Tree>(state.range(1));
    state.ResumeTiming();
    grow(trees);
  }
  bench::countSamples(state, std::int64_t{kTreeLines} * state.range(0));
}

FeatureLines featuresFor(const benchmark::State& state) {
  return makeFeatures(static_cast<int>(state.range(0)));
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"features", "closed"})
      ->Args({5, 0})
      ->Args({50, 0})
      ->Args({500, 0})
      ->Args({50, 10000})
      ->Unit(benchmark::kMillisecond);
}

void BM_Trees_WholeScan(benchmark::State& state) {
  std::vector<SQO_lineFeature> lines = asRecords(featuresFor(state));
  timeGrowing<SQO_featureTree>(
      state, [&](auto& trees) { qo_getFeatureGrowingTrees(lines, trees, kGrow); });
}
BENCHMARK(BM_Trees_WholeScan)->Apply(sizes);

/// Strays start trees of one line, which never close here and accumulate in the list.
void BM_Trees_Corners(benchmark::State& state) {
  FeatureLines lines = featuresFor(state);
  timeGrowing<SQO_featureTree>(state,
                               [&](auto& trees) { qo_cornerFeaturesGrowing(lines, trees, kGrow); });
}
BENCHMARK(BM_Trees_Corners)->Apply(sizes);

/// Features that all lie at one place, on five lines.
FeatureLines denseFeatures(const benchmark::State& state) {
  bench::Noise noise;
  FeatureLines lines(5);
  for (int k = 0; k < static_cast<int>(state.range(0)); ++k) {
    for (int l = 0; l < 5; ++l) {
      lines[l].push_back({FEATURE_PEAK, {l, k}, {0.5 * l, noise.next(), 100.0}, 1.0});
    }
  }
  return lines;
}

void BM_Trees_Dense(benchmark::State& state) {
  FeatureLines lines = denseFeatures(state);
  for (auto _ : state) {
    std::vector<SQO_featureTree> trees;
    qo_cornerFeaturesGrowing(lines, trees, kGrow);
    benchmark::DoNotOptimize(trees);
  }
  bench::countSamples(state, 5 * state.range(0));
}
BENCHMARK(BM_Trees_Dense)->Arg(500)->Arg(5000)->Arg(50000)->Unit(benchmark::kMillisecond);

/// The same by a plain search of the whole list.
void BM_Trees_DensePlain(benchmark::State& state) {
  const FeatureLines lines = denseFeatures(state);
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        plain::withoutOneLineTrees(plain::grow(lines, {}, {kGrow, true, true, NAN})));
  }
  bench::countSamples(state, 5 * state.range(0));
}
BENCHMARK(BM_Trees_DensePlain)->Arg(500)->Arg(5000)->Unit(benchmark::kMillisecond);

void BM_Trees_LineByLine(benchmark::State& state) {
  FeatureLines lines = featuresFor(state);
  timeGrowing<SQO_featureTree>(state, [&](auto& trees) {
    for (int l = 0; l < kTreeLines; ++l) {
      qo_lineFeaturesGrowing(l, l + 1 == kTreeLines, lines[l], trees, kGrow);
    }
  });
}
BENCHMARK(BM_Trees_LineByLine)->Apply(sizes);

void BM_Trees_TypeFree(benchmark::State& state) {
  std::vector<SQO_lineFeature> lines = asRecords(featuresFor(state));
  for (SQO_lineFeature& line : lines) {
    line.endings.swap(line.features);
  }
  timeGrowing<SQO_featureTree>(state, [&](auto& endingTrees) {
    std::vector<SQO_featureTree> trees;
    ju_getFeatureGrowingTrees_noTypeMatch(lines, trees, endingTrees, kGrow);
  });
}
BENCHMARK(BM_Trees_TypeFree)->Apply(sizes);

/// The features as positions on a scan that consists of them.
struct EndingScan {
  explicit EndingScan(const FeatureLines& features)
      : samples(converted(features, [](const SQO_basicFeature1D& feature) {
          return STesk3DPosition{0, feature.jumpPos};
        })) {
    for (int l = 0; l < kTreeLines; ++l) {
      const int count = static_cast<int>(samples[l].size());
      lines.push_back({samples[l].data(), count, 0});
      for (int k = 0; k < count; ++k) {
        endings.push_back({l, k, 0, 0.0, 0});
      }
    }
  }

  std::vector<std::vector<STesk3DPosition>> samples;
  std::vector<STesk3DLaserLine> lines;
  std::vector<SQO_2DValueI> endings;
};

void BM_Trees_Endings(benchmark::State& state) {
  EndingScan scan(featuresFor(state));
  timeGrowing<SQO_featureTree>(state, [&](auto& trees) {
    qo_getEndingGrowingTrees(scan.endings, scan.lines.data(), true, FEATURE_SEG_END, trees, kGrow);
  });
}
BENCHMARK(BM_Trees_Endings)->Apply(sizes);

void BM_Trees_EndingsByDirection(benchmark::State& state) {
  EndingScan scan(featuresFor(state));
  timeGrowing<SQO_featureTree>(state, [&](auto& trees) {
    qo_getEndingGrowingTrees_angleCheck(scan.endings, scan.lines.data(), true, FEATURE_SEG_END,
                                        trees, kGrow, 10.0);
  });
}
BENCHMARK(BM_Trees_EndingsByDirection)->Apply(sizes);

void BM_Trees_Gaps(benchmark::State& state) {
  auto lines = converted(featuresFor(state), [](const SQO_basicFeature1D& feature) {
    SQO_basicFeatureGap gap = {feature.jumpPos2D.x, {}, {0, feature.jumpPos}, {}, {}};
    gap.gapEnd = gap.gapStart;
    return gap;
  });
  timeGrowing<SQO_gapFeatureTree>(state, [&](auto& trees) {
    for (int l = 0; l < kTreeLines; ++l) {
      qo_lineGapsGrowing(l, l + 1 == kTreeLines, lines[l], trees, kGrow);
    }
  });
}
BENCHMARK(BM_Trees_Gaps)->Apply(sizes);

void BM_Trees_SemiCircles(benchmark::State& state) {
  const auto lines = converted(featuresFor(state), [](const SQO_basicFeature1D& feature) {
    return SQO_featureSemiCircle{0, feature.jumpPos2D.x, 0, 0, 0, feature.jumpPos, 0.0, 0.0};
  });
  timeGrowing<SQO_semiCircleFeatureTree>(state, [&](auto& trees) {
    auto marked = lines;  // growing marks semi-circles as used
    std::vector<SQO_semiCircleFeatureTree> longTrees;
    std::vector<SQO_semiCircleFeatureTree> shortTrees;
    for (int l = 0; l < kTreeLines; ++l) {
      qo_getFeatureGrowingTrees_semiCircle(marked[l], l, kTreeLines, trees, longTrees, shortTrees,
                                           kGrow);
    }
  });
}
BENCHMARK(BM_Trees_SemiCircles)->Apply(sizes);

void BM_Trees_Segments(benchmark::State& state) {
  auto lines = converted(featuresFor(state), [](const SQO_basicFeature1D& feature) {
    return SJU_segFeature{feature.jumpPos2D.x, 0, 0, 0, feature.jumpPos, feature.jumpPos, 0.0};
  });
  timeGrowing<SJU_segFeatureTree>(
      state, [&](auto& trees) { ju_getSegFeatureGrowingTrees(lines, trees, kGrow); });
}
BENCHMARK(BM_Trees_Segments)->Apply(sizes);

/// Each line also has a start and an end of a segment that no tree takes.
void BM_Trees_LV(benchmark::State& state) {
  std::vector<SQO_lineFeature> lines = asRecords(featuresFor(state));
  for (SQO_lineFeature& line : lines) {
    const double x = 0.5 * line.lineIdx;
    line.endings = {{FEATURE_SEG_START, {line.lineIdx, 0}, {x, -50.0, 100.0}, 0.0},
                    {FEATURE_SEG_END, {line.lineIdx, 1}, {x, -40.0, 100.0}, 0.0}};
  }
  timeGrowing<SQO_featureTree>(state, [&](auto& trees) {
    std::vector<SQO_2DValueI> starts;
    std::vector<SQO_2DValueI> ends;
    qo_LVFeatureGrowing(lines, trees, {300.0, 500.0}, kGrow, starts, ends);
  });
}
BENCHMARK(BM_Trees_LV)->Apply(sizes);

}  // namespace
