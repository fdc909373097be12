#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include <scanline/watershed.h>
#include "bench_scan.h"
#include "plain_watershed.h"

// The watersheds compared with their plain forms, and with the watershed of OpenCV, which has other
// rules and takes only 8-bit images with given markers.

namespace {

using Plane = std::vector<std::vector<int>>;
using Seeds = std::vector<SQO_2DValueI>;

constexpr int kMaxLevel = 60;
constexpr int kPitch = 64;  // distance of the blobs

SJU_waterShedImage blankImage(int side, int value) {
  return {side, side, Plane(side, std::vector<int>(side, value)),
          Plane(side, std::vector<int>(side))};
}

/// Seeds on a grid, shifted at random by up to a fifth of the pitch.
Seeds makeSeeds(int side) {
  bench::Noise noise;
  Seeds seeds;
  for (int y = kPitch / 2; y < side; y += kPitch) {
    for (int x = kPitch / 2; x < side; x += kPitch) {
      const int dx = static_cast<int>(0.2 * kPitch * noise.next());
      const int dy = static_cast<int>(0.2 * kPitch * noise.next());
      seeds.push_back({x + dx, y + dy, 0, 0.0, 0});
    }
  }
  return seeds;
}

/// An inverted distance map: overlapping discs around the seeds, deepest at their centres, on a
/// ground at level 60.
SJU_waterShedImage makeBlobs(int side) {
  constexpr int kRadius = 45;
  SJU_waterShedImage image = blankImage(side, kMaxLevel);
  for (const SQO_2DValueI& seed : makeSeeds(side)) {
    for (int y = std::max(seed.y - kRadius, 0); y < std::min(seed.y + kRadius, side); ++y) {
      for (int x = std::max(seed.x - kRadius, 0); x < std::min(seed.x + kRadius, side); ++x) {
        const double inside = kRadius - std::hypot(x - seed.x, y - seed.y);
        image.gray[y][x] = std::min(image.gray[y][x], kMaxLevel - static_cast<int>(inside));
      }
    }
  }
  return image;
}

/// The blobs in fine steps and with noise, as a height map in micrometres would be.
SJU_waterShedImage makeHeights(int side) {
  bench::Noise noise;
  SJU_waterShedImage image = makeBlobs(side);
  for (std::vector<int>& row : image.gray) {
    for (int& value : row) {
      value = 10000 * value + static_cast<int>(5000.0 * noise.next());
    }
  }
  return image;
}

/// A corridor of level 0 that winds between walls above the last level, with a seed at its end:
/// each walk over the level advances by one pixel, or by one row.
SJU_waterShedImage makeSnake(int side, Seeds& seeds) {
  SJU_waterShedImage image = blankImage(side, kMaxLevel + 1);
  for (int y = 0; y < side; y += 2) {
    std::fill(image.gray[y].begin(), image.gray[y].end(), 0);
    if (y + 1 < side) {
      image.gray[y + 1][y % 4 == 0 ? side - 1 : 0] = 0;
    }
  }
  const int last = (side - 1) / 2 * 2;
  seeds = {{last % 4 == 0 ? side - 1 : 0, last, 0, 0.0, 0}};
  image.gray[last][seeds[0].x] = 1;  // otherwise its plateau would be the whole corridor
  return image;
}

template <typename Make, typename Run>
void runOn(benchmark::State& state, Make make, Run run) {
  const int side = static_cast<int>(state.range(0));
  SJU_waterShedImage image = make(side);
  const Plane unlabelled = image.markers;
  for (auto _ : state) {
    state.PauseTiming();
    image.markers = unlabelled;
    state.ResumeTiming();
    run(image);
  }
  bench::countSamples(state, std::int64_t{side} * side);
}

template <typename Run>
void runSnake(benchmark::State& state, Run run) {
  Seeds seeds;
  runOn(
      state, [&](int side) { return makeSnake(side, seeds); },
      [&](SJU_waterShedImage& image) { run(image, seeds, kMaxLevel, 2); });
}

template <typename Run>
void runSeeded(benchmark::State& state, Run run) {
  Seeds seeds = makeSeeds(static_cast<int>(state.range(0)));
  runOn(state, makeBlobs, [&](SJU_waterShedImage& image) { run(image, seeds, kMaxLevel, 2); });
}

void BM_Watershed_Blobs(benchmark::State& state) {
  runOn(state, makeBlobs, watershed);
}

void BM_Watershed_BlobsPlain(benchmark::State& state) {
  runOn(state, makeBlobs, plain::watershed);
}

void BM_Watershed_Heights(benchmark::State& state) {
  runOn(state, makeHeights, watershed);
}

void BM_Watershed_HeightsPlain(benchmark::State& state) {
  runOn(state, makeHeights, plain::watershed);
}

void BM_SeedWatershed_Blobs(benchmark::State& state) {
  runSeeded(state, ju_seedWatershed);
}

void BM_SeedWatershed_BlobsPlain(benchmark::State& state) {
  runSeeded(state, plain::seedWatershed);
}

void BM_SeedWatershed_Snake(benchmark::State& state) {
  runSnake(state, ju_seedWatershed);
}

void BM_SeedWatershed_SnakePlain(benchmark::State& state) {
  runSnake(state, plain::seedWatershed);
}

void BM_Watershed_BlobsOpenCV(benchmark::State& state) {
  const int side = static_cast<int>(state.range(0));
  const SJU_waterShedImage blobs = makeBlobs(side);
  cv::Mat image(side, side, CV_8UC3);
  for (int r = 0; r < side; ++r) {
    for (int c = 0; c < side; ++c) {
      image.at<cv::Vec3b>(r, c) = cv::Vec3b::all(static_cast<unsigned char>(blobs.gray[r][c]));
    }
  }
  cv::Mat markers;
  for (auto _ : state) {
    state.PauseTiming();
    markers = cv::Mat::zeros(side, side, CV_32S);
    int label = 2;
    for (const SQO_2DValueI& seed : makeSeeds(side)) {
      markers.at<int>(seed.y, seed.x) = label++;
    }
    state.ResumeTiming();
    cv::watershed(image, markers);
  }
  bench::countSamples(state, std::int64_t{side} * side);
}

void squares(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("side")->Arg(512)->Arg(1024)->Arg(2048)->Unit(benchmark::kMillisecond);
}

/// Sides that are feasible for the plain form, whose cost grows with their fourth power.
void smallSquares(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("side")->Arg(64)->Arg(128)->Unit(benchmark::kMillisecond);
}

BENCHMARK(BM_Watershed_Blobs)->Apply(squares);
BENCHMARK(BM_Watershed_BlobsPlain)->Apply(squares);
BENCHMARK(BM_Watershed_BlobsOpenCV)->Apply(squares);
BENCHMARK(BM_Watershed_Heights)->Apply(squares);
BENCHMARK(BM_Watershed_HeightsPlain)->Apply(squares);
BENCHMARK(BM_SeedWatershed_Blobs)->Apply(squares);
BENCHMARK(BM_SeedWatershed_BlobsPlain)->Apply(squares);
BENCHMARK(BM_SeedWatershed_Snake)->Apply(smallSquares)->Apply(squares);
BENCHMARK(BM_SeedWatershed_SnakePlain)->Apply(smallSquares);

}  // namespace
