#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <opencv2/core.hpp>
#include <sstream>
#include <string>
#include <vector>

#include <scanline/heightmap.h>
#include "builders.h"
#include "plain_contours.h"

namespace {

using plain::Contours;
using plain::PeakScene;
using Points = plain::ContourPoints;

std::string text(const SQO_contourPtInfo& p) {
  std::ostringstream out;
  out << p.x << ',' << p.y << ':' << p.type << '/' << p.edgeId << '!' << p.sideFlag << '@'
      << p.scanDist << '(' << p.edgePt.x << ' ' << p.edgePt.y << ' ' << p.edgePt.z << ") ";
  return out.str();
}

std::string text(const std::vector<SQO_2DValueI>& points) {
  std::ostringstream out;
  for (const auto& [x, y, value, valueD, tag] : points) {
    out << x << ',' << y << ':' << value << '@' << valueD << '#' << tag << ' ';
  }
  return out.str();
}

/// A scan around a peak, mostly on a grid, with flags that are frequent or rare.
PeakScene randomScene(cv::RNG& random) {
  const int lines = random.uniform(1, 14);
  const int samples = random.uniform(1, 14);
  const int period = random.uniform(1, 12);
  const auto rarely = [&](int end) {
    return random.uniform(0, period) == 0 ? random.uniform(0, end) : 0;
  };
  PeakScene scene = {build::surfaceScan(lines, samples, [](double x, double y) { return x - y; }),
                     cv::Mat(samples, lines, CV_32SC4),
                     {random.uniform(0, lines), random.uniform(0, samples), 0, 0.0, 0},
                     random.uniform(-1, 24) * 0.5,
                     random.uniform(0, 3) > 0};
  for (int l = 0; l < lines; ++l) {
    for (int i = 0; i < samples; ++i) {
      auto& [flags, point] = scene.scan[l][i];
      // The bits above the mark have no meaning.
      flags = rarely(10) + 16 * rarely(10) + 256 * rarely(2) + 32768 * rarely(2) - 65536;
      point.x += random.uniform(0, 40) == 0 ? 40.0 : 30.0;
      point.y += random.uniform(0, 40) == 0 ? 40.0 : 50.0;
      scene.edges.at<cv::Vec4i>(i, l) = {random.uniform(-1, 10), 9, 9, 0};
    }
  }
  scene.edges.at<cv::Vec4i>(scene.peak.y, scene.peak.x)[3] = -1;
  return scene;
}

struct Outline {
  std::array<Contours, 4> lists;
  std::array<int, 4> max;
};

std::string text(const Outline& out) {
  std::string all;
  for (int i = 0; i < 4; ++i) {
    all += "\nmax " + std::to_string(out.max[i]) + ": ";
    for (const auto& [index, points] : out.lists[i]) {
      all += std::to_string(index) + "> ";
      for (const SQO_contourPtInfo& p : points) {
        all += text(p);
      }
    }
  }
  return all;
}

TEST(PeakXYScan, AgreesWithThePlainFormOnRandomScenes) {
  cv::RNG random(1);
  for (int round = 0; round < 4000; ++round) {
    PeakScene scene = randomScene(random);
    std::vector<STesk3DLaserLine> lines = build::pointerForm(scene.scan);
    Outline out = {{{{{99, {}}}, {{98, {}}}, {}, {{97, {}}}}}, {-7, -7, -7, -7}};
    Outline expected = out;
    // One list may be passed for several directions.
    const int highY = round % 8 == 1 ? 0 : 1;
    const int lowX = round % 8 == 2 ? 0 : 2;
    auto& [wanted, wantedMax] = expected;
    if (round % 16 != 0) {
      plain::peakXYScan(scene, {&wanted[0], &wanted[highY], &wanted[lowX], &wanted[3]}, wantedMax);
    } else {
      scene.edges.at<cv::Vec4i>(scene.peak.y, scene.peak.x)[3] = 0;  // no peak: nothing is written
    }
    scene.peak.valueD = round % 5;
    const double width = scene.halfSpan + scene.peak.valueD * 0.5;
    auto& [lists, max] = out;
    qo_peakXYScan(lines.data(), static_cast<int>(lines.size()), scene.edges, scene.peak, {},
                  {width, 0.0}, scene.useMark, lists[0], lists[highY], lists[lowX], lists[3],
                  &max[0], &max[1], &max[2], &max[3]);
    ASSERT_EQ(text(out), text(expected)) << round;
  }
}

/// Points of a few edges, with many equal values.
Points randomPoints(cv::RNG& random, int edges) {
  Points points(random.uniform(0, 24));
  for (SQO_contourPtInfo& p : points) {
    const double dist = random.uniform(0, 60) == 0 ? std::nan("") : random.uniform(0, 5) * 0.5;
    const int edge = random.uniform(0, 3) > 0 ? edges : random.uniform(0, edges + 1);
    p = {random.uniform(0, 9),
         random.uniform(0, 9),
         random.uniform(1, 9),
         edge,
         random.uniform(-1, 3),
         dist,
         {random.uniform(0, 4) * 1.0, random.uniform(0, 4) * 1.0, dist}};
  }
  return points;
}

TEST(ContourPts, SelectionAgreesWithThePlainForm) {
  cv::RNG random(2);
  for (int round = 0; round < 4000; ++round) {
    const int edge = random.uniform(0, 4);
    Contours contours = {{0, randomPoints(random, edge)}, {1, randomPoints(random, edge)}};
    Points all = contours[0].contourPts;
    all.insert(all.end(), contours[1].contourPts.begin(), contours[1].contourPts.end());
    std::vector<SQO_2DValueI> list(random.uniform(0, 6));
    std::vector<SQO_2DValueI> expected = list;
    int verdict = 9;
    qo_getContourPts(contours, edge, list, &verdict);
    ASSERT_EQ(verdict, plain::appendPoints(plain::ofEdge(all, edge), 0, expected));
    ASSERT_EQ(text(list), text(expected));
    const double distTol = random.uniform(-1, 9) * 0.25;
    qo_contourPostProc(all, edge + round % 2, distTol, list, 6, &verdict);
    ASSERT_EQ(
        verdict,
        all.empty() ? 0 : plain::appendPoints(plain::contourPostProc(all, distTol), 6, expected));
    ASSERT_EQ(text(list), text(expected));
  }
}

}  // namespace
