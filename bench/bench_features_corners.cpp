#include <vector>

#include <scanline/line_features.h>
#include "bench_features.h"
#include "plain_corners.h"

namespace {

using bench::runOnRecords;
using bench::runOnScan;

// The lengths suit a sample spacing of 0.2 and blocks of height 40.
constexpr SQO_cornerParam kCorner = {2.0, 5.0, 1.6, 45.0, 60.0, 30.0};

void BM_Features_Corner(benchmark::State& state) {
  SQO_cornerParam param = kCorner;
  param.scale = 0.2 * static_cast<double>(state.range(0));
  runOnRecords(state, [&](bench::Line& line, int l, SQO_lineFeature& record) {
    qo_getLineCornerFeature(line.data(), bench::kSamples, l, param, &record);
  });
}
BENCHMARK(BM_Features_Corner)
    ->ArgName("scale_in_samples")
    ->Arg(4)
    ->Arg(8)
    ->Arg(10)
    ->Arg(32)
    ->Arg(100)
    ->Arg(256)
    ->Arg(4096)
    ->Unit(benchmark::kMillisecond);

// For comparison with the search in blocks.
void BM_Features_PlainCorner(benchmark::State& state) {
  SQO_cornerParam param = kCorner;
  param.scale = 0.2 * static_cast<double>(state.range(0));
  runOnScan<SQO_basicFeature1D>(state, [&](bench::Line& line, int l, auto& found) {
    found = plain::corners(plain::profileOf(line), l, param);
  });
}
BENCHMARK(BM_Features_PlainCorner)
    ->ArgName("scale_in_samples")
    ->Arg(8)
    ->Arg(256)
    ->Unit(benchmark::kMillisecond);

void BM_Features_MaskedCorner(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int l, auto& found) {
    for (STesk3DPosition& sample : line) {
      sample.nPointIdx = 1;
    }
    qo_maskData_getLineCornerFeature(line, l, 1, kCorner, found);
  });
}
BENCHMARK(BM_Features_MaskedCorner)->Unit(benchmark::kMillisecond);

/// Writes the stamps that two of the searches require.
void stamp(bench::Line& line) {
  for (int i = 0; i < bench::kSamples; ++i) {
    line[i].nPointIdx = i;
  }
}

void BM_Features_ReferenceCorner(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int l, auto& found) {
    stamp(line);
    qo_getLineCornerFeature_BQ(line.data(), bench::kSamples, l, 460.0, kCorner, found);
  });
}
BENCHMARK(BM_Features_ReferenceCorner)->Unit(benchmark::kMillisecond);

void BM_Features_GroundCorner(benchmark::State& state) {
  const std::vector<int> mask(bench::kSamples, 1);
  runOnScan<SQO_basicFeature1D>(state, [&](bench::Line& line, int l, auto& found) {
    stamp(line);
    qo_getLineContourCornerFeature_groundMask_BQ(line, mask, l, 5.0, kCorner, found);
  });
}
BENCHMARK(BM_Features_GroundCorner)->Unit(benchmark::kMillisecond);

void BM_Features_PlainGroundCorner(benchmark::State& state) {
  const std::vector<int> mask(bench::kSamples, 1);
  runOnScan<SQO_basicFeature1D>(state, [&](bench::Line& line, int l, auto& found) {
    const auto profile =
        plain::profileOf(line, false, kCorner.minEndingGap, kCorner.minEndingGap_z);
    found = plain::groundCorners(profile, mask, l, 5.0, kCorner);
  });
}
BENCHMARK(BM_Features_PlainGroundCorner)->Unit(benchmark::kMillisecond);

void BM_Features_PsmCorner(benchmark::State& state) {
  runOnRecords(state, [](bench::Line& line, int l, SQO_lineFeature& record) {
    ju_getLineCornerFeature_PSM(line.data(), bench::kSamples, l, 1000.0, kCorner, &record);
  });
}
BENCHMARK(BM_Features_PsmCorner)->Unit(benchmark::kMillisecond);

void BM_Features_ArmCorner(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int l, auto& found) {
    ju_getLineCorerFeature(line, l, kCorner, found);
  });
}
BENCHMARK(BM_Features_ArmCorner)->Unit(benchmark::kMillisecond);

void BM_Features_Gap(benchmark::State& state) {
  runOnScan<SQO_basicFeatureGap>(state, [](bench::Line& line, int l, auto& found) {
    qo_getLineGapFeature(line, l, kCorner, {5.0, 15.0}, found);
  });
}
BENCHMARK(BM_Features_Gap)->Unit(benchmark::kMillisecond);

void BM_Features_StepJump(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int l, auto& found) {
    qo_getLineJumpFeature_cornerMethod(line.data(), bench::kSamples, l, kCorner, found);
  });
}
BENCHMARK(BM_Features_StepJump)->Unit(benchmark::kMillisecond);

void BM_Features_DownJump(benchmark::State& state) {
  runOnScan<SQO_basicFeature1D>(state, [](bench::Line& line, int l, auto& found) {
    qo_getLineDownJumps(line.data(), bench::kSamples, l, 20.0, found);
  });
}
BENCHMARK(BM_Features_DownJump)->Unit(benchmark::kMillisecond);

void BM_Features_RingArc(benchmark::State& state) {
  runOnScan<SJU_segFeature>(state, [](bench::Line& line, int l, auto& found) {
    ju_getRingArcFeature(line, l, kCorner, {0.5, 50.0}, found);
  });
}
BENCHMARK(BM_Features_RingArc)->Unit(benchmark::kMillisecond);

}  // namespace
