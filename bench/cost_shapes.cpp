#include <cmath>
#include <opencv2/core.hpp>

#include <scanline/line_peaks.h>
#include <scanline/line_shapes.h>
#include "cost.h"

// Peaks and shapes, with windows and arms that span the line.

namespace cost {
namespace {

constexpr int kSamples = 1000;

using Features = std::vector<SQO_basicFeature1D>;

auto localPeaks(double turn) {
  return [turn](int size) {
    Line line = profile(size, [=](int i) { return 100.0 + i % 2 + turn * i * (i % 2 ? 1 : -1); });
    return [line, valleys = Features{}, peaks = Features{}]() mutable {
      qo_getLineLocalPeaks(line.data(), static_cast<int>(line.size()), 0, kBeyond, valleys, peaks);
    };
  };
}

/// Isolated slopes or jumps, each with a window that spans the line.
auto flatLinePeaks(double step) {
  return [step](int size) {
    Line line = profile(size, [=](int i) { return 100.0 + step * (i / 8); });
    return [line, size, peaks = Features{}]() mutable {
      qo_getFlatLineLocalPeaks_vector(line, 0, 2.0, 5.0, 1.0 * size, peaks);
    };
  };
}

/// Slopes over a window that is wider than the line.
auto flatLineWindow() {
  return [](int size) {
    Line line = profile(size, [](int i) { return 100.0 + i % 3; });
    return [line, peaks = Features{}]() mutable {
      qo_getFlatLineLocalPeaks_vector(line, 0, kBeyond, 5.0, 4.0, peaks);
    };
  };
}

/// Teeth `run` samples long and `height` high, all `spacing` apart in y.
auto lvShapes(int run, double height, double spacing) {
  return [=](int size) {
    Line line = makeLine(size, [=](int i) {
      return STesk3DPoint{0.0, spacing * i, 500.0 + height * std::abs(i % (2 * run) - run)};
    });
    return [line, found = SQO_lineFeature{}]() mutable {
      qo_getLineLVFeature(line.data(), static_cast<int>(line.size()), 0, {1.5, 1.0, 5.0, 2.0},
                          {2.0, 1e9}, &found);
    };
  };
}

/// Arms of a length in samples, or in lines.
auto rightAngles(double samples, double lines) {
  return [=](int size) {
    const double armLen = samples + lines * size;
    Line line = profile(size, [](int i) { return 100.0 + i % 2; });
    return [line, armLen, found = SQO_lineFeature{}]() mutable {
      const SQO_lineRightAngleParam kind = {armLen, armLen, kBeyond};
      qo_getLineRigthAngleFeature(line.data(), static_cast<int>(line.size()), 0, kind, kind, kind,
                                  kind, &found);
    };
  };
}

auto semiCircles() {
  return [](int size) {
    Line line = profile(size, [](int i) { return i % 8 == 7 ? 0.0 : 100.0 + i % 2; });
    cv::Mat labels(size + 1, 1, CV_32SC1, cv::Scalar(1));
    return [line, labels, found = std::vector<SQO_featureSemiCircle>{}]() mutable {
      qo_getLineUpperSemiCircleFeature(line.data(), static_cast<int>(line.size()), 0, kBeyond,
                                       {kBeyond, 0.0, 0.0, 1.0}, found, labels);
    };
  };
}

auto gloveArcs(double scale, double armLen) {
  return [=](int size) {
    Line line = profile(size, [](int i) { return 100.0 + i % 2; });
    return [line, scale, armLen, found = Features{}]() mutable {
      ju_getLineGloveArcs(line, 0, {scale, armLen, 10.0}, found);
    };
  };
}

auto raisedRuns() {
  return [](int size) {
    Line line = profile(size, [](int i) { return 100.0 + 20.0 * (i % 2); });
    return [line, found = std::vector<SJU_segFeature>{}]() mutable {
      ju_getLineRaisedFeature(line, 0, {5.0, 1.0, 0.0, kBeyond}, found);
    };
  };
}

}  // namespace

std::vector<Case> shapeCases() {
  const auto linear = Growth::kLinear;
  return {
      {"features/local-peaks/equal", linear, kSamples, localPeaks(0.0)},
      {"features/local-peaks/growing", linear, kSamples, localPeaks(0.001)},
      {"features/flat-line-peaks/window-beyond-line", linear, kSamples, flatLineWindow()},
      {"features/flat-line-peaks/wide-jumps", Growth::kQuadratic, kSamples, flatLinePeaks(6.0)},
      {"features/flat-line-peaks/wide-slopes", Growth::kQuadratic, kSamples, flatLinePeaks(3.0)},
      {"features/lv/steep-teeth", linear, kSamples, lvShapes(1, 50.0, 1.0)},
      {"features/lv/wide-teeth", linear, kSamples, lvShapes(4, 4.0, 1.0)},
      {"features/lv/still-y", linear, kSamples, lvShapes(4, 4.0, 0.0)},
      {"features/right-angles/short-arms", linear, kSamples, rightAngles(16.0, 0.0)},
      {"features/right-angles/arms-beyond-line", linear, kSamples, rightAngles(0.0, 4.0)},
      {"features/right-angles/arms-of-half-line", Growth::kQuadratic, kSamples,
       rightAngles(0.0, 0.5)},
      {"features/semi-circles/joined", linear, kSamples, semiCircles()},
      {"features/glove-arcs/scale-beyond-line", linear, kSamples, gloveArcs(kBeyond, 10.0)},
      {"features/glove-arcs/flanks-beyond-line", Growth::kQuadratic, kSamples,
       gloveArcs(1.0, kBeyond)},
      {"features/raised-runs/zigzag", linear, kSamples, raisedRuns()},
  };
}

}  // namespace cost
