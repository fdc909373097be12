#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <scanline/heightmap.h>
#include "bench_scan.h"
#include "plain_contours.h"

// The cost of a scan around a peak must depend on the size of the object, not of the scan. The cost
// per point of selecting contour points must not depend on the number of edges.

namespace {

using Contours = std::vector<SQO_lineConotours>;

/// A square object in the middle of a scan at unit spacing, with an edge on each of its sides.
class ObjectScan {
 public:
  explicit ObjectScan(int halfSide)
      : scan_(kSide, bench::Line(kSide)), edges_(kSide, kSide, CV_32SC4) {
    edges_ = cv::Scalar(0, 0, 0, 1);
    for (int l = 0; l < kSide; ++l) {
      for (int i = 0; i < kSide; ++i) {
        const int along = flankType(i, halfSide);
        const int across = flankType(l, halfSide);
        scan_[l][i] = {along + 16 * across, {1.0 * l, 1.0 * i, 500.0}};
        edges_.at<cv::Vec4i>(i, l)[0] = along != 0 ? along : 2 + across;
      }
    }
    lines_ = bench::pointerForm(scan_);
    // Half of the value of the peak is subtracted from it.
    bag_.bagWidth = halfSide + 1.0;
  }

  void scanPeak() {
    clear();
    qo_peakXYScan(lines_.data(), kSide, edges_, kPeak, {}, bag_, true, contours_[0], contours_[1],
                  contours_[2], contours_[3], maxEdges_, maxEdges_ + 1, maxEdges_ + 2,
                  maxEdges_ + 3);
  }

  /// The input of the plain form, to which the half-span is passed itself.
  [[nodiscard]] plain::PeakScene plainScene() const {
    return {scan_, edges_, kPeak, bag_.bagWidth - 0.5 * kPeak.valueD, true};
  }

  void scanPeakPlainly(const plain::PeakScene& scene) {
    clear();
    std::array<int, 4> maxEdges = {};
    plain::peakXYScan(scene, {&contours_[0], &contours_[1], &contours_[2], &contours_[3]},
                      maxEdges);
  }

 private:
  static constexpr int kSide = 1200;
  static constexpr SQO_2DValueI kPeak = {kSide / 2, kSide / 2, 0, 2.0, 0};

  void clear() {
    for (Contours& contours : contours_) {
      contours.clear();
    }
  }

  static int flankType(int i, int halfSide) {
    if (i == kSide / 2 - halfSide) {
      return FEATURE_JUMP_RISE;
    }
    return i == kSide / 2 + halfSide ? FEATURE_JUMP_FALL : 0;
  }

  bench::Scan scan_;
  std::vector<STesk3DLaserLine> lines_;
  cv::Mat edges_;
  SQO_bagParam bag_ = {0.0, 0.0};
  Contours contours_[4];
  int maxEdges_[4] = {};
};

void BM_Contours_PeakScan(benchmark::State& state) {
  const int halfSide = static_cast<int>(state.range(0));
  ObjectScan object(halfSide);
  for (auto _ : state) {
    object.scanPeak();
  }
  // The walks along and across the lines each visit the whole object.
  bench::countSamples(state, std::int64_t{8} * halfSide * halfSide);
}
BENCHMARK(BM_Contours_PeakScan)
    ->ArgName("half_side")
    ->Arg(50)
    ->Arg(200)
    ->Arg(500)
    ->Unit(benchmark::kMicrosecond);

void BM_Contours_PeakScanPlain(benchmark::State& state) {
  const int halfSide = static_cast<int>(state.range(0));
  ObjectScan object(halfSide);
  const plain::PeakScene scene = object.plainScene();
  for (auto _ : state) {
    object.scanPeakPlainly(scene);
  }
  bench::countSamples(state, std::int64_t{8} * halfSide * halfSide);
}
BENCHMARK(BM_Contours_PeakScanPlain)
    ->ArgName("half_side")
    ->Arg(50)
    ->Arg(200)
    ->Arg(500)
    ->Unit(benchmark::kMicrosecond);

/// A scan of 5 x 5 discs at unit spacing, each with an edge around it and a peak in its middle.
class DiscScan {
 public:
  DiscScan() : scan_(kSide, bench::Line(kSide)), edges_(kSide, kSide, CV_32SC4) {
    edges_ = cv::Scalar(0, 0, 0, 1);
    for (int l = 0; l < kSide; ++l) {
      for (int i = 0; i < kSide; ++i) {
        const int along = flankType(l, i);
        const int across = flankType(i, l);
        scan_[l][i] = {along + 16 * across, {1.0 * l, 1.0 * i, 500.0}};
        edges_.at<cv::Vec4i>(i, l)[0] = along != 0 || across != 0 ? 1 + (l / kPitch) : 0;
      }
    }
    lines_ = bench::pointerForm(scan_);
  }

  void scanPeaks() {
    for (int l = kPitch / 2; l < kSide; l += kPitch) {
      for (int i = kPitch / 2; i < kSide; i += kPitch) {
        std::vector<std::vector<SQO_lineConotours>> contours(4);
        int maxEdges[4] = {};
        qo_peakXYScan(lines_.data(), kSide, edges_, {l, i, 0, 2.0, 0}, {}, {kRadius + 1.0, 0.0},
                      true, contours[0], contours[1], contours[2], contours[3], maxEdges,
                      maxEdges + 1, maxEdges + 2, maxEdges + 3);
        benchmark::DoNotOptimize(contours.data());
      }
    }
  }

 private:
  static constexpr int kPitch = 100;
  static constexpr int kSide = 5 * kPitch;
  static constexpr int kRadius = 40;

  /// The type of position i on a cut through the discs.
  static int flankType(int cut, int i) {
    const int offset = cut % kPitch - kPitch / 2;
    const auto half = static_cast<int>(std::sqrt(std::max(0, kRadius * kRadius - offset * offset)));
    const int position = i % kPitch - kPitch / 2;
    if (half == 0 || std::abs(position) != half) {
      return 0;
    }
    return position < 0 ? FEATURE_JUMP_RISE : FEATURE_JUMP_FALL;
  }

  bench::Scan scan_;
  std::vector<STesk3DLaserLine> lines_;
  cv::Mat edges_;
};

void BM_Contours_PeakScanDiscs(benchmark::State& state) {
  DiscScan discs;
  for (auto _ : state) {
    discs.scanPeaks();
  }
}
BENCHMARK(BM_Contours_PeakScanDiscs)->Unit(benchmark::kMicrosecond);

/// Points on `edges` edges in turn, whose mean distances differ.
std::vector<SQO_contourPtInfo> makePoints(std::int64_t count, int edges) {
  bench::Noise noise;
  std::vector<SQO_contourPtInfo> points;
  for (int k = 0; k < count; ++k) {
    const int edge = k % edges;
    points.push_back(
        {k, 0, FEATURE_JUMP_RISE, edge + 1, 1, edge + noise.next(), {0.0, 0.0, 500.0}});
  }
  return points;
}

void BM_Contours_PostProc(benchmark::State& state) {
  const int edges = static_cast<int>(state.range(1));
  std::vector<SQO_contourPtInfo> points = makePoints(state.range(0), edges);
  std::vector<SQO_2DValueI> kept;
  int verdict = 0;
  for (auto _ : state) {
    kept.clear();
    qo_contourPostProc(points, edges, 10.0, kept, 0, &verdict);
    benchmark::DoNotOptimize(kept.data());
  }
  bench::countSamples(state, state.range(0));
}
BENCHMARK(BM_Contours_PostProc)
    ->ArgNames({"points", "edges"})
    ->Args({1000, 1})
    ->Args({1000, 3})
    ->Args({1000, 100})
    ->Args({100000, 3})
    ->Unit(benchmark::kMicrosecond);

void BM_Contours_PostProcPlain(benchmark::State& state) {
  const int edges = static_cast<int>(state.range(1));
  const std::vector<SQO_contourPtInfo> points = makePoints(state.range(0), edges);
  std::vector<SQO_2DValueI> kept;
  for (auto _ : state) {
    kept.clear();
    benchmark::DoNotOptimize(plain::appendPoints(plain::contourPostProc(points, 10.0), 0, kept));
  }
  bench::countSamples(state, state.range(0));
}
BENCHMARK(BM_Contours_PostProcPlain)
    ->ArgNames({"points", "edges"})
    ->Args({1000, 3})
    ->Args({1000, 100})
    ->Args({100000, 3})
    ->Unit(benchmark::kMicrosecond);

void BM_Contours_PickEdge(benchmark::State& state) {
  Contours contours(1000, {0, makePoints(10, 3)});
  std::vector<SQO_2DValueI> picked;
  int verdict = 0;
  for (auto _ : state) {
    picked.clear();
    qo_getContourPts(contours, 1, picked, &verdict);
    benchmark::DoNotOptimize(picked.data());
  }
  bench::countSamples(state, 10000);
}
BENCHMARK(BM_Contours_PickEdge)->Unit(benchmark::kMicrosecond);

void BM_Contours_Pairing(benchmark::State& state) {
  const std::vector<SQO_contourPtInfo> points = makePoints(10000, 20);
  std::vector<SQO_conotourPair> pairs;
  pairs.reserve(points.size());
  for (const SQO_contourPtInfo& point : points) {
    pairs.push_back({0, point.edgeId, 1, 0, 0.0, point, points[0]});
  }
  std::vector<SQO_intPair> edgePairs;
  edgePairs.reserve(state.range(0));
  for (int k = 0; k < state.range(0); ++k) {
    edgePairs.push_back({k + 1, 1, 0});
  }
  std::vector<SQO_conotourPair> matched;
  int verdicts[2] = {};
  for (auto _ : state) {
    matched.clear();
    qo_getPairingContourPts(pairs, edgePairs, matched, {-1.0, 1.0}, true, verdicts, verdicts + 1);
    benchmark::DoNotOptimize(matched.data());
  }
  bench::countSamples(state, static_cast<std::int64_t>(pairs.size()));
}
BENCHMARK(BM_Contours_Pairing)
    ->ArgName("edge_pairs")
    ->Arg(2)
    ->Arg(20)
    ->Unit(benchmark::kMicrosecond);

}  // namespace
