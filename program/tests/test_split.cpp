#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "base/failure.h"
#include "roads/split.h"
#include "roads/split_map.h"
#include "roads/split_middles.h"
#include "roads/split_regions.h"

namespace program {
namespace {

constexpr double kBeltZ = 800.0;
constexpr double kDegrees = 180.0 / 3.14159265358979323846;

using HeightAt = std::function<double(double x, double y)>;

struct Grid {
  std::size_t lines;
  std::size_t samples;
  double lineStep;
  double sampleStep;
};

/// A level scan with a little noise, the same in each run.
Scan scanOf(const Grid& grid, const HeightAt& heightAt) {
  std::minstd_rand random(7);
  std::uniform_real_distribution<double> noise(-0.1, 0.1);
  Scan scan(grid.lines, Line(grid.samples));
  for (std::size_t l = 0; l < grid.lines; ++l) {
    for (std::size_t i = 0; i < grid.samples; ++i) {
      const double x = grid.lineStep * static_cast<double>(l);
      const double y = grid.sampleStep * static_cast<double>(i);
      scan[l][i] = {0, {x, y, kBeltZ - heightAt(x, y) + noise(random)}};
    }
  }
  return scan;
}

struct Box {
  double x, y, length, width, degrees, height;
};

/// A place in the directions of a box, from its centre.
cv::Point2d inBox(const Box& box, double x, double y) {
  const double c = std::cos(box.degrees / kDegrees);
  const double s = std::sin(box.degrees / kDegrees);
  return {c * (x - box.x) + s * (y - box.y), c * (y - box.y) - s * (x - box.x)};
}

HeightAt heightOf(const std::vector<Box>& boxes) {
  return [boxes](double x, double y) {
    double height = 0.0;
    for (const Box& box : boxes) {
      const cv::Point2d p = inBox(box, x, y);
      if (std::abs(p.x) < 0.5 * box.length && std::abs(p.y) < 0.5 * box.width) {
        height = std::max(height, box.height);
      }
    }
    return height;
  };
}

/// A command's parameters, without the command.
class Method {
 public:
  explicit Method(const std::string& options = "") : parameters_(app_, "Method") {
    addSplitParameters(parameters_);
    app_.parse(options);
    parameters_.takeGiven();
  }

  SplitParams paramsFor(const Scan& scan) {
    constexpr double kRoughness = 0.06;
    return splitParams(parameters_, scan, extentOf(scan), kRoughness);
  }

 private:
  CLI::App app_;
  Parameters parameters_;
};

SplitResult split(const Scan& scan, const std::string& options = "") {
  Progress progress("", kSplitSteps, true);
  return splitObjects(scan, kBeltZ, extentOf(scan), Method(options).paramsFor(scan), progress);
}

/// Expects the boxes, in the order of x, with outlines that follow their edges.
void expectBoxes(const SplitResult& result, const std::vector<Box>& boxes, double spacing) {
  ASSERT_EQ(result.objects.size(), boxes.size());
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    SCOPED_TRACE("box " + std::to_string(i));
    const Box& box = boxes[i];
    const SplitObject& object = result.objects[i];
    EXPECT_NEAR(object.x, box.x, spacing);
    EXPECT_NEAR(object.y, box.y, spacing);
    EXPECT_NEAR(object.length, box.length, 1.5 * spacing);
    EXPECT_NEAR(object.width, box.width, 1.5 * spacing);
    EXPECT_NEAR(object.height, box.height, 0.2);
    EXPECT_NEAR(object.area, box.length * box.width, 2.0 * spacing * (box.length + box.width));
    if (box.length > 1.2 * box.width) {
      EXPECT_NEAR(std::remainder(object.angle - box.degrees, 180.0), 0.0, 1.5);
    }
    EXPECT_GT(object.angle, -90.0);
    EXPECT_LE(object.angle, 90.0);
    STesk3DPoint before = object.outline.back();
    for (const STesk3DPoint& p : object.outline) {
      const cv::Point2d place = inBox(box, p.x, p.y);
      const double toEdge =
          std::min(0.5 * box.length - std::abs(place.x), 0.5 * box.width - std::abs(place.y));
      EXPECT_GT(toEdge, -spacing);
      EXPECT_LT(toEdge, 3.0 * spacing);
      EXPECT_LT(std::hypot(p.x - before.x, p.y - before.y), 6.0 * spacing);
      before = p;
    }
  }
}

TEST(Split, MeasuresBoxesInAnyDirection) {
  const std::vector<Box> boxes = {{60, 60, 80, 40, 0, 20},
                                  {70, 160, 60, 30, 45, 15},
                                  {170.7, 70.2, 90, 20, 90, 30},
                                  {230, 160, 70, 50, -20, 60}};
  expectBoxes(split(scanOf({300, 250, 1.0, 1.0}, heightOf(boxes))), boxes, 1.0);
  expectBoxes(split(scanOf({150, 500, 2.0, 0.5}, heightOf(boxes))), boxes, 2.0);
}

TEST(Split, MeasuresNarrowRibs) {
  std::vector<Box> ribs;
  for (int i = 0; i < 5; ++i) {
    ribs.push_back({61.0 + 60.0 * i, 201.0, 250.0, 20.0, 90.0, 15.0});
  }
  expectBoxes(split(scanOf({180, 200, 2.0, 2.0}, heightOf(ribs))), ribs, 2.0);
}

TEST(Split, DividesBoxesThatTouch) {
  const std::vector<Box> boxes = {{60, 80, 80, 60, 90, 40}, {120, 80, 80, 60, 90, 20}};
  expectBoxes(split(scanOf({200, 160, 1.0, 1.0}, heightOf(boxes))), boxes, 2.0);
}

TEST(Split, LeavesTheFlankOfABagToTheBag) {
  const Box box = {150, 100, 200, 120, 20, 60};
  const HeightAt boxAlone = heightOf({box});
  const auto height = [&](double x, double y) {
    const double out = std::pow(std::hypot(x - 130.0, y - 215.0) / 80.0, 2.6);
    return out < 1.0 ? 60.0 + 100.0 * std::pow(1.0 - out, 0.4) : boxAlone(x, y);
  };
  const SplitResult result = split(scanOf({150, 160, 2.0, 2.0}, height));
  ASSERT_EQ(result.objects.size(), 2U);
  const SplitObject& found = result.objects[1];
  // The watershed may run some pixels beside the step.
  EXPECT_NEAR(result.objects[0].width, 160.0, 12.0);
  EXPECT_NEAR(found.length, box.length, 8.0);
  EXPECT_NEAR(found.width, box.width, 8.0);
}

TEST(Split, DividesAtAWaistAlone) {
  const auto dumbbell = [](double neck) {
    return heightOf(
        {{60, 80, 60, 60, 0, 20}, {180, 80, 60, 60, 0, 20}, {120, 80, 80, neck, 0, 20}});
  };
  EXPECT_EQ(split(scanOf({240, 160, 1.0, 1.0}, dumbbell(20))).objects.size(), 2U);
  EXPECT_EQ(split(scanOf({240, 160, 1.0, 1.0}, dumbbell(50))).objects.size(), 1U);
  EXPECT_EQ(split(scanOf({240, 160, 1.0, 1.0}, dumbbell(50)), "--split-waist 95").objects.size(),
            2U);
}

TEST(Split, FindsRingsAndConesWhole) {
  const auto height = [](double x, double y) {
    const double ring = std::hypot(x - 80.0, y - 80.0);
    const double cone = 150.0 - 5.0 * std::hypot(x - 200.0, y - 80.0);
    return ring > 30.0 && ring < 50.0 ? 12.0 : std::max(cone, 0.0);
  };
  const SplitResult result = split(scanOf({260, 160, 1.0, 1.0}, height));
  ASSERT_EQ(result.objects.size(), 2U);
  EXPECT_NEAR(result.objects[0].length, 100.0, 2.0);
  EXPECT_NEAR(result.objects[0].area, 7854.0, 200.0);
  EXPECT_NEAR(result.objects[1].length, 60.0, 2.0);
  const SplitObject& ring = result.objects[0];
  EXPECT_NEAR(std::hypot(ring.labelX - 80.0, ring.labelY - 80.0), 40.0, 5.0);
  EXPECT_EQ(result.objects[1].labelX, result.objects[1].x);
}

TEST(Split, FindsNothingOnAnEmptyBelt) {
  const Scan belt = scanOf({60, 60, 1.0, 1.0}, heightOf({}));
  EXPECT_TRUE(split(belt).objects.empty());
  const Scan oneLine(belt.begin(), belt.begin() + 1);
  EXPECT_TRUE(split(oneLine).objects.empty());
  const Scan holes(3, Line(3));
  EXPECT_THROW(split(holes), Failure);
}

TEST(Split, LeavesOutWhatIsTooNarrowOrTooLow) {
  const std::vector<Box> boxes = {{50, 50, 60, 30, 0, 10}, {50, 120, 60, 12, 0, 10}};
  const Scan scan = scanOf({150, 150, 1.0, 1.0}, heightOf(boxes));
  EXPECT_EQ(split(scan).objects.size(), 2U);
  const SplitResult wide = split(scan, "--split-min-width 20");
  EXPECT_EQ(wide.objects.size(), 1U);
  EXPECT_TRUE(split(scan, "--split-min-height 12").objects.empty());
}

TEST(Split, IgnoresStraysAndDropouts) {
  const std::vector<Box> boxes = {{60, 60, 80, 40, 30, 20}};
  Scan scan = scanOf({150, 150, 1.0, 1.0}, heightOf(boxes));
  scan[3][5].pt3D = {1e9, -1e9, 500.0};
  scan[4][5].pt3D.z = 300.0;
  for (std::size_t l = 0; l < scan.size(); ++l) {
    scan[l][(37 * l) % 150].pt3D.z = 0.0;
  }
  scan[70].resize(100);
  const SplitResult result = split(scan);
  EXPECT_EQ(result.outside, 1);
  expectBoxes(result, boxes, 1.5);
}

TEST(Split, IsTheSameInAnyUnit) {
  const std::vector<Box> boxes = {{60, 60, 80, 40, 30, 20}, {120, 130, 60, 30, 0, 25}};
  const Scan scan = scanOf({200, 200, 1.0, 1.0}, heightOf(boxes));
  const double scale = 1.0 / 1024.0;
  Scan small = scan;
  for (Line& line : small) {
    for (STesk3DPosition& sample : line) {
      sample.pt3D = {scale * sample.pt3D.x, scale * sample.pt3D.y, scale * sample.pt3D.z};
    }
  }
  const auto splitIn = [](const Scan& one, double unit) {
    Progress progress("", kSplitSteps, true);
    const SplitParams params = {unit * 2.0, unit * 5.0, unit * 8.0, unit * 1.25, 0.6};
    return splitObjects(one, unit * kBeltZ, extentOf(one), params, progress);
  };
  const SplitResult large = splitIn(scan, 1.0);
  const SplitResult result = splitIn(small, scale);
  ASSERT_EQ(result.objects.size(), large.objects.size());
  for (std::size_t i = 0; i < large.objects.size(); ++i) {
    EXPECT_EQ(result.objects[i].samples, large.objects[i].samples);
    EXPECT_EQ(result.objects[i].outline.size(), large.objects[i].outline.size());
    EXPECT_NEAR(result.objects[i].length, scale * large.objects[i].length, 1e-5);
    EXPECT_NEAR(result.objects[i].x, scale * large.objects[i].x, 1e-5);
  }
}

TEST(Split, RefusesParametersThatContradictOneAnother) {
  const Scan scan = scanOf({40, 40, 1.0, 1.0}, heightOf({}));
  for (const char* options : {"--split-pixel 0.5", "--split-pixel 0", "--split-min-width 4",
                              "--split-waist 0", "--split-cut 0", "--split-min-height 0"}) {
    EXPECT_THROW(Method(options).paramsFor(scan), Failure) << options;
  }
  EXPECT_THROW(gridOf(scan, 1e-4), Failure);
}

TEST(Split, KeepsTheMapSmall) {
  Scan scan = scanOf({50, 50, 1.0, 1.0}, heightOf({}));
  for (std::size_t l = 0; l < 5; ++l) {
    scan[l][0].pt3D.x = 1e6 * static_cast<double>(l);
  }
  const MapGrid grid = gridOf(scan, 1.2);
  EXPECT_LT(grid.size.width, 80);
  EXPECT_LT(grid.size.height, 80);
  EXPECT_FALSE(grid.pixelOf({1e6, 0.0, 1.0}));
  EXPECT_FALSE(grid.pixelOf({std::numeric_limits<double>::quiet_NaN(), 0.0, 1.0}));
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      sample.pt3D.x *= 1e6;
      sample.pt3D.y *= 1e6;
    }
  }
  const cv::Size large = gridOf(scan, Method().paramsFor(scan).pixel).size;
  EXPECT_LE(1.0 * large.width * large.height, 1.1 * kMostPixels);
}

// The library's flood waits for pixels that no label reaches. Ragged masks have all kinds of them.
TEST(SplitRegions, EndsOnAnyMaskAndLabelsAllThatConnects) {
  std::minstd_rand random(3);
  for (int round = 0; round < 60; ++round) {
    const unsigned percent = 30U + 10U * (static_cast<unsigned>(round) % 7U);
    cv::Mat mask = cv::Mat::zeros(24, 37, CV_32F);
    std::vector<SQO_2DValueI> seeds;
    for (int row = 1; row < mask.rows - 1; ++row) {
      for (int col = 1; col < mask.cols - 1; ++col) {
        if (random() % 100U < percent) {
          mask.at<float>(row, col) = 1e6F;
          if (random() % 40U == 0U) {
            seeds.push_back({col, row, 0, 0.0, 0});
          }
        }
      }
    }
    const cv::Mat inside = distancesInside(mask);
    const cv::Mat labels = divide(mask, inside, seeds);
    const cv::Mat isSeeded = areasWithSeed(mask, seeds);
    EXPECT_EQ(cv::countNonZero((labels > 0) != (isSeeded > 0)), 0);
    EXPECT_EQ(cv::countNonZero(labels < 0), 0);
    for (const SQO_2DValueI& seed : seeds) {
      EXPECT_EQ(labels.at<int>(seed.y, seed.x), seed.value);
    }
  }
}

}  // namespace
}  // namespace program
