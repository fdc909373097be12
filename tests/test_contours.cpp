#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <scanline/heightmap.h>
#include "builders.h"

static_assert(sizeof(SQO_contourPtInfo) == 56 && offsetof(SQO_contourPtInfo, scanDist) == 24 &&
              sizeof(SQO_conotourPair) == 136 && offsetof(SQO_conotourPair, pairReserved) == 12 &&
              offsetof(SQO_conotourPair, pairReservedD) == 16);

namespace {

/// A sample of section `s`: of a line or, with the axes exchanged, of the samples of one index.
struct Spot {
  int s, i, own, edge;
  int other = 0, mark = 0;
};

/// A scan at unit spacing, with a peak of value 2.0 at index 10 of the section in the middle.
struct Scene {
  int sections;
  std::vector<Spot> spots;
  double width = 10.0;
  bool useMark = true;
  int peakFlag = 1;
};
constexpr int kCount = 20;

struct Outline {
  std::vector<SQO_lineConotours> lists[4] = {{{99, {}}}, {{99, {}}}, {{99, {}}}, {{99, {}}}};
  int max[4] = {-7, -7, -7, -7};
};

/// Virtual labels of the one kind of walk in place of those of the other, if `exchanged`.
int label(int edge, bool exchanged) {
  return !exchanged || edge < 5 || edge > 8 ? edge : (edge < 7 ? edge + 2 : edge - 2);
}

Outline scanned(const Scene& scene, bool exchanged) {
  const auto place = [&](int s, int i) { return exchanged ? cv::Point(i, s) : cv::Point(s, i); };
  const cv::Point size = place(scene.sections, kCount);
  build::Scan scan = build::surfaceScan(size.x, size.y, [](double x, double y) { return x - y; });
  cv::Mat edges(size.y, size.x, CV_32SC4, cv::Scalar(0, 9, 9, 0));
  for (const Spot& spot : scene.spots) {
    const cv::Point at = place(spot.s, spot.i);
    const int types = exchanged ? spot.other + 16 * spot.own : spot.own + 16 * spot.other;
    scan[at.x][at.y].nPointIdx = types + 256 * spot.mark - 65536;  // the upper bits mean nothing
    edges.at<cv::Vec4i>(at)[0] = label(spot.edge, exchanged);
  }
  for (int s = 0; s < scene.sections; ++s) {
    const cv::Point offTheGrid = place(s, 3);  // only the peak's own index tells what is near
    scan[offTheGrid.x][offTheGrid.y].pt3D = {1e9, 1e9, 0.0};
  }
  const cv::Point peak = place(scene.sections / 2, 10);
  edges.at<cv::Vec4i>(peak)[3] = scene.peakFlag;
  std::vector<STesk3DLaserLine> lines = build::pointerForm(scan);
  Outline out;
  auto& [lists, max] = out;
  qo_peakXYScan(lines.data(), size.x, edges, {peak.x, peak.y, 0, 2.0, 0}, {}, {scene.width, 0.0},
                scene.useMark, lists[0], lists[1], lists[2], lists[3], max, max + 1, max + 2,
                max + 3);
  return out;
}

/// "section> index:type/label", with ! for a point that faces the walk; checks the rest.
std::string told(const Outline& out, int list, bool exchanged) {
  std::string text;
  int maxEdge = 0;
  for (const SQO_lineConotours& contour : out.lists[list]) {
    text += std::to_string(contour.lineIdx) + "> ";
    for (const SQO_contourPtInfo& p : contour.contourPts) {
      maxEdge = std::max(maxEdge, p.edgeId);
      const int i = exchanged ? p.x : p.y;
      EXPECT_TRUE(p.x + p.y == i + contour.lineIdx && p.edgePt.z == p.x - p.y &&
                  p.scanDist == std::abs(i - 10));
      text += std::to_string(i) + ':' + std::to_string(p.type) + '/' +
              std::to_string(label(p.edgeId, exchanged)) + (p.sideFlag == 1 ? "! " : " ");
    }
  }
  EXPECT_EQ(out.max[list], maxEdge);
  return text;
}

/// What the walks towards lower and higher index found; those of the other axis find nothing.
void expectOutline(const Scene& scene, const std::string& low, const std::string& high) {
  for (const bool exchanged : {false, true}) {
    SCOPED_TRACE(exchanged ? "across lines" : "along a line");
    const Outline out = scanned(scene, exchanged);
    const int first = exchanged ? 2 : 0;
    EXPECT_EQ(told(out, first, exchanged), low);
    EXPECT_EQ(told(out, first + 1, exchanged), high);
    EXPECT_EQ(told(out, 2 - first, exchanged) + told(out, 3 - first, exchanged), "99> 99> ");
  }
}

TEST(PeakXYScan, WalksToTheFirstBoundaryEachWay) {
  constexpr Spot kLeft = {0, 5, 1, 2};
  const std::string left = "5:1/2! ";
  const auto expectWalks = [](const char* situation, const std::vector<Spot>& spots,
                              const std::string& low, const std::string& high,
                              bool useMark = true) {
    SCOPED_TRACE(situation);
    const auto list = [](const std::string& points) {
      return points.empty() ? "99> " : "0> " + points + "99> ";
    };
    expectOutline({1, spots, 10.0, useMark}, list(low), list(high));
  };
  expectWalks("jumps and slopes",
              {kLeft, {0, 4, 1, 3}, {0, 12, 3, 1}, {0, 14, 4, 2}, {0, 15, 7, 1}, {0, 16, 1, 1}},
              left, "12:3/1 14:4/2! 15:7/1 ");
  expectWalks(
      "other types; no label",
      {{0, 7, 5, 1}, {0, 6, 15, 4}, {0, 5, 8, 1}, {0, 4, 1, 1}, {0, 14, 2, 0}, {0, 15, 2, 2}},
      "7:5/1 6:15/4 5:8/1 ", "");
  expectWalks("beside the peak", {{0, 9, 3, 1}, kLeft, {0, 11, 4, 1}, {0, 15, 2, 1}}, "", "");
  expectWalks("virtual labels; foreign ones",
              {{0, 7, 3, 5}, {0, 6, 3, 1}, {0, 12, 4, 8}, {0, 13, 4, 6}, {0, 14, 2, 1}}, "7:3/5! ",
              "12:4/8! 13:4/6! ");
  expectWalks("beyond, at the half-span", {{0, 0, 1, 4}, {0, 19, 2, 1}}, "", "19:2/1! ");
  expectWalks("marks", {{0, 6, 0, 0, 0, 1}, {0, 14, 0, 3, 0, 128}}, "6:8/5 ", "14:8/6 ");
  expectWalks("marked types", {{0, 6, 2, 3, 0, 1}, {0, 14, 4, 3, 0, 1}}, "6:2/3 ", "14:4/3! ");
  expectWalks("marks unused", {{0, 6, 0, 3, 0, 1}, kLeft, {0, 14, 0, 3, 0, 1}}, left, "", false);
  expectWalks("types four on", {kLeft, {0, 13, 0, 1, 1}, {0, 17, 6, 1}, {0, 18, 2, 1}}, left,
              "17:6/1 ");
  expectWalks("types five on", {kLeft, {0, 13, 0, 1, 2}, {0, 14, 0, 1, 0, 1}, {0, 18, 2, 1}}, "",
              "");
  expectWalks("the end ahead", {kLeft, {0, 16, 0, 1, 1}}, "", "");
  expectWalks("other jump at the end", {kLeft, {0, 14, 0, 1, 3}, {0, 19, 0, 1, 1}}, left, "");
  expectWalks("stop below", {{0, 8, 3, 4}, {0, 7, 0, 0, 1}, {0, 15, 2, 3}}, "8:3/4! ", "15:2/3! ");
}

TEST(PeakXYScan, TakesSectionsNearThePeakInOrderAroundWhatTheListsHold) {
  Scene scene = {7, {{1, 0, 3, 1}}, 11.0};
  for (const int s : {0, 1, 2, 3, 4, 6}) {
    scene.spots.push_back({s, 15, 2, s + 10});
  }
  const std::string upTo4 = "0> 15:2/10! 1> 15:2/11! 2> 15:2/12! 3> 15:2/13! 99> 4> 15:2/14! ";
  expectOutline(scene, "1> 0:3/1! 99> ", upTo4 + "6> 15:2/16! ");
  scene.spots.push_back({5, 13, 0, 0, 1});
  expectOutline(scene, "1> 0:3/1! 99> ", upTo4);

  scene = {7, {{0, 12, 2, 9}, {1, 12, 2, 3}, {5, 12, 2, 2}, {6, 12, 2, 9}}, 3.0};
  expectOutline(scene, "99> ", "1> 12:2/3! 99> 5> 12:2/2! ");
  scene.width = 0.5;
  expectOutline(scene, "99> ", "99> ");
  scene.peakFlag = 0;
  const Outline untouched = scanned(scene, false);
  EXPECT_EQ(std::count(untouched.max, untouched.max + 4, -7), 4);
}

SQO_contourPtInfo point(int edge, double dist = 1.0, int sideFlag = 0) {
  return {1, 2, 3, edge, sideFlag, dist, {dist, 5.0, dist}};
}

/// The heights of points that came from point(), which equal their distances, and the verdict.
using Kept = std::pair<std::vector<double>, int>;

Kept kept(const std::vector<SQO_2DValueI>& points, int tag, int verdict) {
  Kept result = {{}, verdict};
  for (const SQO_2DValueI& p : points) {
    EXPECT_TRUE(p.x == 1 && p.y == 2 && p.value == 3 && p.tag == tag);
    result.first.push_back(p.valueD);
  }
  return result;
}

TEST(ContourPts, PicksOneEdgeAndJudgesTheWholeList) {
  std::vector<SQO_lineConotours> contours = {{0, {point(1, 7.0, 1), point(2, 1.0, 1)}},
                                             {1, {point(1, 8.0, 1)}}};
  std::vector<SQO_2DValueI> points;
  int verdict = 0;
  qo_getContourPts(contours, 1, points, &verdict);
  EXPECT_EQ(kept(points, 0, verdict), Kept({7.0, 8.0}, 1));
  qo_getContourPts(contours, 1, points, &verdict);
  EXPECT_EQ(kept(points, 0, verdict), Kept({7.0, 8.0, 7.0, 8.0}, 0)) << "half is not most";
}

TEST(ContourPostProc, KeepsLongEdgesNearestToThePeak) {
  const auto processed = [](std::vector<SQO_contourPtInfo> points, double distTol) {
    std::vector<SQO_2DValueI> out;
    int verdict = 9;
    qo_contourPostProc(points, 9, distTol, out, 6, &verdict);
    Kept result = kept(out, 6, verdict);
    out.resize(out.size() + 20);
    qo_contourPostProc(points, 9, distTol, out, 6, &verdict);
    EXPECT_EQ(verdict, 0) << "what the list held counts";
    return result;
  };
  std::vector<SQO_contourPtInfo> tenEdges;
  std::vector<SQO_contourPtInfo> nearButShort(3, point(0, 0.5, 1));
  for (int k = 0; k < 10; ++k) {
    tenEdges.push_back(point(k));
    nearButShort.push_back(point(1, 3.0, k < 6 ? 1 : 0));
  }
  EXPECT_EQ(processed({point(0)}, 0.0), Kept({}, 0));
  EXPECT_EQ(processed(tenEdges, 1.0), Kept({}, 0));
  EXPECT_EQ(processed(nearButShort, 0.1), Kept(std::vector<double>(10, 3.0), 1));
  const std::vector<SQO_contourPtInfo> single = {point(2, 3.0), point(0, 1.0, 2), point(1, 2.5)};
  EXPECT_EQ(processed(single, 1.5), Kept({1.0}, 1));
  EXPECT_EQ(processed(single, 1.75), Kept({1.0, 2.5}, 0)) << "half is not most";
  EXPECT_EQ(processed({point(2, 3.0, 1), point(0), point(2), point(0, 2.0)}, 1.0),
            Kept({3.0, 1.0, 1.0, 2.0}, 0));
  EXPECT_EQ(processed({point(0, NAN), point(1)}, 1.0), Kept({}, 0));
  EXPECT_EQ(processed({point(0), point(1, NAN)}, 1.0), Kept({1.0}, 0));
}

TEST(PairingContourPts, KeepsPairsOfListedEdgesStrictlyInsideTheWindow) {
  std::vector<SQO_conotourPair> pairs = {{0, 1, 2, 7, 8.0, point(0, 1.0, 0), point(0, 2.0, 1)},
                                         {1, 1, 2, 7, 8.0, point(0, 0.0, 1), point(0, 1.0, 1)},
                                         {2, 1, 2, 7, 8.0, point(0, 1.0, 1), point(0, 3.0, 1)},
                                         {3, 1, 2, 7, 8.0, point(0, 2.0, 1), point(0, 1.0, 0)},
                                         {4, 1, 2, 7, 8.0, point(0, 1.0, 2), point(0, 1.0, 0)},
                                         {5, 2, 1, 7, 8.0, point(0, 1.0, 1), point(0, 1.0, 1)}};
  std::vector<SQO_intPair> edgePairs = {{1, 1, 0}, {1, 2, 0}, {1, 2, 0}};
  std::vector<SQO_conotourPair> matched;
  int verdicts[2] = {9, 9};
  const auto run = [&](STeskRangeD window, bool useX) {
    qo_getPairingContourPts(pairs, edgePairs, matched, window, useX, verdicts, verdicts + 1);
    return matched.size();
  };
  ASSERT_EQ(run({0.0, 3.0}, true), 3U);
  EXPECT_TRUE(matched[0].pairTag == 0 && matched[1].pairTag == 3 && matched[2].pairTag == 4);
  EXPECT_TRUE(matched[2].pairReserved == 7 && matched[2].pairReservedD == 8.0);
  EXPECT_TRUE(verdicts[0] == 1 && verdicts[1] == 0) << "half of 3 is 1";
  EXPECT_EQ(run({0.0, 3.0}, true), 6U);
  EXPECT_TRUE(verdicts[0] == 0 && verdicts[1] == 0) << "what the list held counts";
  EXPECT_EQ(run({0.0, 5.0}, false), 6U) << "all have a y of 5.0";
  EXPECT_EQ(run({4.5, 5.5}, false), 11U);
}

}  // namespace
