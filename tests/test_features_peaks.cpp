#include <gtest/gtest.h>

#include <cmath>
#include <opencv2/core.hpp>
#include <string>
#include <utility>
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
using Spans = std::vector<std::pair<int, int>>;  // first and last sample

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

/// The search for semi-circles step by step.
struct PlainSemiCircles {
  Line& line;
  double widthUnit;
  SQO_slopeParam param;
  const cv::Mat& labels;

  [[nodiscard]] double y(int i) const {
    return line[i].pt3D.y;
  }
  [[nodiscard]] double z(int i) const {
    return line[i].pt3D.z;
  }

  [[nodiscard]] SQO_featureSemiCircle stretch(int first, int last) const {
    int middle = first;
    int lowest = first;
    const double center = (y(first) + y(last)) * 0.5;
    for (int i = first; i <= last; ++i) {
      if (z(i) >= 0.0001) {
        middle = std::abs(y(i) - center) < std::abs(y(middle) - center) ? i : middle;
        lowest = z(i) < z(lowest) ? i : lowest;
      }
    }
    return {0, 7, first, last, middle, line[middle].pt3D, std::abs(y(first) - y(last)), z(lowest)};
  }

  std::vector<SQO_featureSemiCircle> stretches() {
    std::vector<SQO_featureSemiCircle> found;
    const int count = static_cast<int>(line.size());
    for (int first = 0, last = 0; first < count; first = last + 1) {
      const auto isData = [&](int i) { return i < count && z(i) > 0.0001; };
      last = first;
      if (!isData(first)) {
        continue;
      }
      for (int i = first + 1; i < count; ++i) {
        const bool joins =
            isData(i) && (i == last + 1 || param.maxGap_y > std::abs(y(last) - y(i)));
        if (isData(i) && !joins) {
          break;
        }
        last = joins ? i : last;
      }
      Features valleys;
      Features peaks;
      const int len = last - first + 1;
      qo_getLineLocalPeaks(&line[first], len, 7, param.scale, valleys, peaks);
      if (!peaks.empty() && widthUnit * 4.0 > std::abs(y(first) - y(last))) {
        found.push_back(stretch(first, last));
      }
    }
    return found;
  }

  std::vector<SQO_featureSemiCircle> search() {
    const std::vector<SQO_featureSemiCircle> all = stretches();
    std::vector<SQO_featureSemiCircle> found;
    for (std::size_t i = 0; i + 1 < all.size(); ++i) {
      const int label = labels.at<int>(all[i].endPtIdx + 1, 7);
      const bool joins = label >= 1 && label == labels.at<int>(all[i + 1].startPtIdx - 1, 7);
      found.push_back(joins ? stretch(all[i].startPtIdx, all[i + 1].endPtIdx) : all[i]);
      i += joins ? 1 : 0;
    }
    return found;
  }
};

std::string text(const std::vector<SQO_featureSemiCircle>& stretches) {
  Line line;
  for (const SQO_featureSemiCircle& s : stretches) {
    EXPECT_TRUE(s.segState == 0 && s.lineIdx == 7);
    line.push_back({s.midPtIdx, s.midPt});
    line.push_back({100 * s.startPtIdx + s.endPtIdx, {s.width, s.height, 0.0}});
  }
  return text(line);
}

TEST(LineUpperSemiCircle, AgreesWithThePlainRules) {
  build::GridLines grid(8);
  for (int round = 0; round < 6000; ++round) {
    Line line = grid.line(40, {-4, -1, 0, 1, 4});
    Line plainLine = line;
    cv::Mat pixels(43, 12, CV_32SC1);
    cv::Mat labels = pixels(cv::Rect(3, 2, 8, 41));  // A view whose rows are not adjacent.
    for (int k = 0; k < 43 * 12; ++k) {
      pixels.at<int>(k / 12, k % 12) = grid.below(3) - grid.below(2);
    }
    const double width = grid.pick({0.5, 1, 2, 3, 100});
    const SQO_slopeParam param = {grid.pick({0, 1, 9}), 0.0, 0.0, grid.pick({0, 1.5, 2, 2.5, 4})};
    std::vector<SQO_featureSemiCircle> found = {{0, 7, 1, 2, 3, {4.0, 5.0, 6.0}, 7.0, 8.0}};
    const std::string before = text(found);
    qo_getLineUpperSemiCircleFeature(line.data(), static_cast<int>(line.size()), 7, width, param,
                                     found, labels);
    PlainSemiCircles plain = {plainLine, width, param, labels};
    ASSERT_EQ(text(found), before + text(plain.search())) << text(plainLine);
    ASSERT_EQ(text(line), text(plainLine)) << "stamped inside the runs";
  }
}

/// The search for raised stretches step by step.
Spans plainRaised(Line& line, const SQO_raisedFeatureParam& param) {
  Spans spans;
  STesk3DPoint last = {0.0, 0.0, -1.0};
  int start = 0;
  int len = -1;
  for (int i = 0; i < static_cast<int>(line.size()); ++i) {
    line[i].nPointIdx = i;
    const STesk3DPoint& point = line[i].pt3D;
    if (point.z <= 0.0001) {
      continue;
    }
    const double d = std::abs(point.z - last.z);
    const bool steep = d > param.minJumpZ && d / std::abs(point.y - last.y) > param.minJumpK;
    if (last.z > 0.0 && steep && last.z > point.z) {
      start = i;
      len = 1;
    } else if (last.z > 0.0 && steep && point.z > last.z) {
      const int end = start + len - 1;
      const double width = len > 0 ? std::abs(line[start].pt3D.y - line[end].pt3D.y) : std::nan("");
      if (width >= param.minWidth && param.maxWidth >= width) {
        spans.emplace_back(start, end);
      }
      start = 0;
      len = -1;
    } else if (last.z > 0.0) {
      len = i - start + 1;
    }
    last = point;
  }
  return spans;
}

TEST(LineRaisedFeature, AgreesWithThePlainRules) {
  build::GridLines grid(9);
  for (int round = 0; round < 6000; ++round) {
    Line line = grid.line(30, {-4, -2, 0, 0, 0, 2, 4});
    Line plainLine = line;
    const SQO_raisedFeatureParam param = {grid.pick({1, 2, 3, 4}), grid.pick({0, 1, 2, 4}),
                                          grid.pick({0, 1, 2}), grid.pick({2, 3, 99})};
    std::vector<SJU_segFeature> found;
    ju_getLineRaisedFeature(line, 7, param, found);
    Spans spans;
    for (const SJU_segFeature& f : found) {
      spans.emplace_back(f.startPtIdx, f.endPtIdx);
      const Line ends = {{0, f.startPt}, {0, f.endPt}};
      const Line expected = {{0, line[f.startPtIdx].pt3D}, {0, line[f.endPtIdx].pt3D}};
      ASSERT_EQ(text(ends), text(expected));
      ASSERT_TRUE(f.lineIdx == 7 && f.featureType == 0);
      ASSERT_EQ(f.segValue, std::abs(f.endPt.y - f.startPt.y));
    }
    ASSERT_EQ(spans, plainRaised(plainLine, param)) << text(line);
    ASSERT_EQ(text(line), text(plainLine)) << "stamped";
  }
}

}  // namespace
