#include <opencv2/core.hpp>

#include <scanline/line_features.h>
#include "exhibit.h"
#include "profiles.h"
#include "text_table.h"

/// The exhibits of peaks, semi-circles and glove arcs.

namespace examples {
namespace {

constexpr double kStep = 0.5;

/// A hilly surface: three hills, one of which has a small neighbour.
Line hills() {
  Line line = alongY({{0, 110}, {120, 110}}, kStep);
  addBump(line, 24.0, 16.0, 16.0);
  addBump(line, 56.0, 18.0, 22.0);
  addBump(line, 72.0, 6.0, 5.0);
  addBump(line, 98.0, 14.0, 12.0);
  return line;
}

Findings findPeaks(Line& line) {
  const double scale = 14.0;
  std::vector<SQO_basicFeature1D> valleys;
  std::vector<SQO_basicFeature1D> peaks;
  qo_getLineLocalPeaks(line.data(), sizeOf(line), 0, scale, valleys, peaks);
  peaks.insert(peaks.end(), valleys.begin(), valleys.end());
  return {describe({{"scale", scale}}), pointMarks(peaks), {}, {}};
}

/// A plate with a slot that has sharp walls, and a soft dent.
Line plateWithDents() {
  Line line =
      alongY({{0, 100}, {28, 100}, {28.2, 101.6}, {33, 101.6}, {33.2, 100}, {100, 100}}, 0.2);
  addBump(line, 68.0, 3.0, -1.8);
  roughen(line, 0.02);
  return line;
}

Findings findFlatLinePeaks(Line& line) {
  const double slopeWin_y = 1.0;
  const double jumpTh_z = 0.8;
  const double peakWidth_y = 8.0;
  std::vector<SQO_basicFeature1D> found;
  qo_getFlatLineLocalPeaks_vector(line, 0, slopeWin_y, jumpTh_z, peakWidth_y, found);
  return {
      describe({{"slopeWin_y", slopeWin_y}, {"jumpTh_z", jumpTh_z}, {"peakWidth_y", peakWidth_y}}),
      pointMarks(found),
      {},
      {}};
}

// Four tubes, of which nothing is measured between; the second and the third make a twin tube.
constexpr double kTubeRadius = 10.0;
constexpr double kTubeCentres[] = {16.0, 46.0, 72.0, 102.0};
constexpr STeskRangeD kTwinHole = {54.6, 63.4};

Line tubes() {
  Line line = alongY({{0, 100}, {118, 100}}, kStep);
  Line arches = line;
  for (const double centre : kTubeCentres) {
    addArch(arches, centre, kTubeRadius, kTubeRadius);
  }
  for (std::size_t i = 0; i < line.size(); ++i) {
    // Light does not come back from the flanks.
    line[i].pt3D.z = arches[i].pt3D.z < 94.0 ? arches[i].pt3D.z : 0.0;
  }
  return line;
}

/// The label image of the line alone: the hole inside the twin tube is labelled as one thing.
cv::Mat twinLabels(const Line& line) {
  cv::Mat labels = cv::Mat::zeros(sizeOf(line), 1, CV_32S);
  for (int i = 0; i < labels.rows; ++i) {
    const double y = line[static_cast<std::size_t>(i)].pt3D.y;
    labels.at<int>(i, 0) = y >= kTwinHole.min - 2.0 && y <= kTwinHole.max + 2.0 ? 1 : 0;
  }
  return labels;
}

Findings findSemiCircles(Line& line) {
  const double widthUnit = 6.0;
  const SQO_slopeParam slope = {4.0, 0.0, 0.0, 2.0};
  cv::Mat labels = twinLabels(line);
  std::vector<SQO_featureSemiCircle> found;
  qo_getLineUpperSemiCircleFeature(line.data(), sizeOf(line), 0, widthUnit, slope, found, labels);
  std::vector<Mark> marks;
  marks.reserve(found.size());
  for (const SQO_featureSemiCircle& s : found) {
    marks.push_back({MarkKind::stretch, 0, line[static_cast<std::size_t>(s.startPtIdx)].pt3D,
                     line[static_cast<std::size_t>(s.endPtIdx)].pt3D,
                     "width " + fixed(s.width, 1) + ", height " + fixed(s.height, 1)});
  }
  return {
      describe({{"widthUnit", widthUnit}, {"scale", slope.scale}, {"maxGap_y", slope.maxGap_y}}),
      marks,
      {{kTwinHole, "label 1"}},
      {}};
}

/// A deep bowl with strong flanks, and a shallow one.
Line bowls() {
  Line line = alongY({{0, 90}, {110, 90}}, kStep);
  addBump(line, 34.0, 16.0, -26.0);
  addBump(line, 82.0, 20.0, -6.0);
  return line;
}

Findings findGloveArcs(Line& line) {
  const SQO_gloveArcParam param = {3.0, 14.0, 60.0};
  std::vector<SQO_basicFeature1D> found;
  ju_getLineGloveArcs(line, 0, param, found);
  return {
      describe(
          {{"scale", param.scale}, {"armLen", param.armLen}, {"minTurnAngle", param.minTurnAngle}}),
      valueMarks(found, "turn"),
      {},
      {}};
}

}  // namespace

std::vector<Exhibit> peakExhibits() {
  return {
      {"qo_getLineLocalPeaks",
       "Peaks (small z) and valleys (large z) that are the extreme ones within the scale.", hills,
       findPeaks},
      {"qo_getFlatLineLocalPeaks_vector",
       "Places of greater z on a flat plate: a slot with sharp walls and a soft dent.",
       plateWithDents, findFlatLinePeaks},
      {"qo_getLineUpperSemiCircleFeature",
       "Tube tops between holes; the label joins two of them; the last on the line is not told.",
       tubes, findSemiCircles},
      {"ju_getLineGloveArcs",
       "The bottom of a deep arc whose flanks turn strongly; the shallow one turns too little.",
       bowls, findGloveArcs},
  };
}

}  // namespace examples
