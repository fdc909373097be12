#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include <scanline/line_features.h>
#include "builders.h"
#include "grid_lines.h"
#include "plain_flat_peaks.h"
#include "plain_local_peaks.h"

namespace {

using build::Line;
using build::text;
using Features = std::vector<SQO_basicFeature1D>;

/// What the features of a call are appended to.
const Features kBefore = {{FEATURE_V, {7, 3}, {1.0, 2.0, 3.0}, 0.0}};

TEST(LineLocalPeaks, AgreeWithThePlainRules) {
  build::GridLines grid(1);
  for (int round = 0; round < 4000; ++round) {
    Line line = grid.line(30, {-2, -1, 0, 1, 2});
    Line plainLine = line;
    const double scale = grid.pick({0.0, 1.0, 2.0, 2.5, 4.0, 8.0, 1e9, NAN});
    Features peaks = kBefore;
    Features valleys = kBefore;
    Features plainPeaks = kBefore;
    Features plainValleys = kBefore;
    qo_getLineLocalPeaks(line.data(), static_cast<int>(line.size()), 7, scale, valleys, peaks);
    plain::localPeaks(plainLine, 7, scale, plainValleys, plainPeaks);
    ASSERT_EQ(text(peaks), text(plainPeaks)) << text(plainLine);
    ASSERT_EQ(text(valleys), text(plainValleys)) << text(plainLine);
    ASSERT_EQ(text(line), text(plainLine));
  }
}

TEST(FlatLineLocalPeaks, AgreeWithThePlainRules) {
  build::GridLines grid(2);
  const std::vector<double> shapes[] = {{-6, -2, -0.75, -0.5, -0.25, 0, 0, 0.25, 0.5, 0.75, 2, 6},
                                        {-0.75, 0, 0, 0, 0, 0, 0, 0.75},
                                        {-4, 0, 0, 0, 0, 0, 0, 4}};
  for (int round = 0; round < 6000; ++round) {
    Line line = grid.line(50, shapes[round % 3]);
    Line plainLine = line;
    const double window = grid.pick({0.0, 1.0, 2.0, 2.0, 3.0, 1e9});
    const double jump = grid.pick({0.5, 1.0, 2.0, 2.0, 4.0});
    const double width = grid.pick({1.0, 2.0, 4.0, 4.0, 6.0, 9.0, 1e9});
    Features peaks = kBefore;
    Features plainPeaks = kBefore;
    qo_getFlatLineLocalPeaks_vector(line, 7, window, jump, width, peaks);
    plain::flatLinePeaks(plainLine, 7, window, jump, width, plainPeaks);
    ASSERT_EQ(text(peaks), text(plainPeaks)) << window << ' ' << jump << ' ' << width;
    ASSERT_EQ(text(line), text(plainLine)) << window << ' ' << jump << ' ' << width;
  }
}

}  // namespace
