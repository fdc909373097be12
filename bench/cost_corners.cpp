#include <cmath>
#include <limits>

#include <scanline/line_corners.h>
#include <scanline/line_shapes.h>
#include "cost.h"

// Corners and other features from slopes. If `scale` is longer than the line, or y is NaN or
// constant, no sample has a neighbour at the distance `scale`.

namespace cost {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr int kSamples = 1000;

SQO_cornerParam corner(double scale) {
  return {2.0, 50.0, scale, 20.0, 30.0, 15.0};
}

double zigzag(int i) {
  return 100.0 + i % 2;
}

Line evenLine(int count) {
  return makeLine(count, [](int i) { return STesk3DPoint{0.0, 1.0 * i, zigzag(i)}; });
}

Line nanLine(int count) {
  return makeLine(count, [](int i) { return STesk3DPoint{0.0, kNaN, zigzag(i)}; });
}

Line stillLine(int count) {
  return makeLine(count, [](int i) { return STesk3DPoint{0.0, 5.0, zigzag(i)}; });
}

/// Three points in turn, less than a `scale` of 1.0 apart in a box whose corners are farther apart.
Line triangle(int count) {
  constexpr double kY[] = {0.0, 0.86, 0.86};
  constexpr double kZ[] = {100.49, 100.0, 100.98};
  return makeLine(count, [=](int i) { return STesk3DPoint{0.0, kY[i % 3], kZ[i % 3]}; });
}

/// Teeth of equal corners, 10 samples each and so close in y that one `scale` of 2.0 holds them.
Line teeth(int count) {
  return makeLine(count, [count](int i) {
    return STesk3DPoint{0.0, 2.0 * i / count, 100.0 + std::abs(i % 10 - 5)};
  });
}

/// Far corners whose ground test walks along the whole line.
Line grooves(int count) {
  return makeLine(count, [](int i) {
    return STesk3DPoint{0.0, 1.0 * i, 100.0 + std::max(i % 20 - 10, 0)};
  });
}

/// Measures `extract(line, found)` on a line made by `make`.
template <typename Found, typename Make, typename Extract>
auto on(Make make, Extract extract) {
  return [=](int size) {
    return [line = make(size), found = Found{}, extract]() mutable { extract(line, found); };
  };
}

using Features = std::vector<SQO_basicFeature1D>;

auto corners(double scale) {
  return [scale](Line& line, SQO_lineFeature& found) {
    qo_getLineCornerFeature(line.data(), static_cast<int>(line.size()), 0, corner(scale), &found);
  };
}

auto referenceCorners(double scale) {
  return [scale](Line& line, Features& found) {
    qo_getLineCornerFeature_BQ(line.data(), static_cast<int>(line.size()), 0, 100.0, corner(scale),
                               found);
  };
}

void maskedCorners(Line& line, Features& found) {
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = 1;
  }
  qo_maskData_getLineCornerFeature(line, 0, 1, corner(kBeyond), found);
}

void groundCorners(Line& line, Features& found) {
  qo_getLineContourCornerFeature_groundMask_BQ(line, std::vector<int>(line.size()), 0, kBeyond,
                                               corner(3.0), found);
}

void psmCorners(Line& line, SQO_lineFeature& found) {
  ju_getLineCornerFeature_PSM(line.data(), static_cast<int>(line.size()), 0, 1000.0,
                              corner(kBeyond), &found);
}

void armCorners(Line& line, Features& found) {
  ju_getLineCorerFeature(line, 0, corner(kBeyond), found);
}

void gaps(Line& line, std::vector<SQO_basicFeatureGap>& found) {
  qo_getLineGapFeature(line, 0, corner(kBeyond), {0.0, kBeyond}, found);
}

auto jumps(double scale) {
  return [scale](Line& line, Features& found) {
    qo_getLineJumpFeature_cornerMethod(line.data(), static_cast<int>(line.size()), 0, corner(scale),
                                       found);
  };
}

void downJumps(Line& line, Features& found) {
  qo_getLineDownJumps(line.data(), static_cast<int>(line.size()), 0, 0.5, found);
}

void ringArcs(Line& line, std::vector<SJU_segFeature>& found) {
  ju_getRingArcFeature(line, 0, corner(kBeyond), {0.0, kBeyond}, found);
}

}  // namespace

std::vector<Case> cornerCases() {
  const auto linear = Growth::kLinear;
  return {
      {"features/corners/scale-beyond-line", linear, kSamples,
       on<SQO_lineFeature>(evenLine, corners(kBeyond))},
      {"features/corners/half-scale", linear, kSamples,
       [](int size) { return on<SQO_lineFeature>(evenLine, corners(0.5 * size))(size); }},
      {"features/corners/nan-y", linear, kSamples, on<SQO_lineFeature>(nanLine, corners(2.0))},
      {"features/corners/still-y", linear, kSamples, on<SQO_lineFeature>(stillLine, corners(2.0))},
      {"features/corners/triangle", Growth::kQuadratic, kSamples,
       on<SQO_lineFeature>(triangle, corners(1.0))},
      {"features/corners/equal-teeth", linear, kSamples, on<SQO_lineFeature>(teeth, corners(2.0))},
      {"features/masked-corners/scale-beyond-line", linear, kSamples,
       on<Features>(evenLine, maskedCorners)},
      {"features/reference-corners/scale-beyond-line", linear, kSamples,
       on<Features>(evenLine, referenceCorners(kBeyond))},
      {"features/reference-corners/still-y", linear, kSamples,
       on<Features>(stillLine, referenceCorners(2.0))},
      {"features/ground-corners/far-ground", linear, kSamples,
       on<Features>(grooves, groundCorners)},
      {"features/psm-corners/scale-beyond-line", linear, kSamples,
       on<SQO_lineFeature>(evenLine, psmCorners)},
      {"features/arm-corners/scale-beyond-line", linear, kSamples,
       on<Features>(evenLine, armCorners)},
      {"features/gaps/scale-beyond-line", linear, kSamples,
       on<std::vector<SQO_basicFeatureGap>>(evenLine, gaps)},
      {"features/step-jumps/scale-beyond-line", linear, kSamples,
       on<Features>(evenLine, jumps(kBeyond))},
      {"features/step-jumps/nan-y", linear, kSamples, on<Features>(nanLine, jumps(2.0))},
      {"features/down-jumps/zigzag", linear, kSamples, on<Features>(evenLine, downJumps)},
      {"features/ring-arcs/scale-beyond-line", linear, kSamples,
       on<std::vector<SJU_segFeature>>(evenLine, ringArcs)},
  };
}

}  // namespace cost
