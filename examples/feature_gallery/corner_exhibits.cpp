#include <scanline/line_features.h>
#include "exhibit.h"
#include "profiles.h"

/// The exhibits of the corner search and its variants.

namespace examples {
namespace {

constexpr double kStep = 0.5;
constexpr double kNoise = 0.03;

/// A table with a box, a shadow behind it, and a V groove.
Line tableWithBox() {
  Line line = alongY({{0, 120},
                      {25, 120},
                      {26, 100},
                      {48, 100},
                      {49, 120},
                      {78, 120},
                      {88, 129},
                      {98, 120},
                      {120, 120}},
                     kStep);
  blank(line, 57.0, 66.0);
  roughen(line, kNoise);
  return line;
}

Findings findCorners(Line& line) {
  const SQO_cornerParam param = {5.0, 30.0, 3.0, 30.0, 45.0, 30.0};
  SQO_lineFeature found = {};
  qo_getLineCornerFeature(line.data(), sizeOf(line), 0, param, &found);
  return {describe({{"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"jumpCornerTh_2", param.jumpCornerTh_2},
                    {"minEndingGap", param.minEndingGap},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          lineMarks(found),
          {},
          {}};
}

/// Two grooved parts side by side, of which the labels tell which is which.
Line twoLabelledParts() {
  const Corners part = {{0, 100}, {11, 100}, {12, 112}, {38, 112}, {39, 100}, {50, 100}};
  Corners corners = part;
  for (const ProfilePoint& p : part) {
    corners.push_back({p.y + 60.0, p.z});
  }
  Line line = alongY(corners, kStep);
  roughen(line, kNoise);
  blank(line, 50.2, 59.8);
  label(line, 0.0, 50.0, 1);
  label(line, 60.0, 110.0, 2);
  return line;
}

Findings findMaskedCorners(Line& line) {
  const SQO_cornerParam param = {0.0, 0.0, 3.0, 30.0, 45.0, 30.0};
  std::vector<SQO_basicFeature1D> found;
  qo_maskData_getLineCornerFeature(line, 0, 2, param, found);
  return {describe({{"maskID", 2},
                    {"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"jumpCornerTh_2", param.jumpCornerTh_2}}),
          valueMarks(found, "measure"),
          {{{0.0, 50.0}, "nPointIdx = 1"}, {{60.0, 110.0}, "nPointIdx = 2"}},
          {}};
}

/// Two pockets, of which the second is deeper.
Line twoPockets() {
  Line line = alongY({{0, 80},
                      {15, 80},
                      {17, 100},
                      {38, 100},
                      {40, 80},
                      {65, 80},
                      {67, 120},
                      {88, 120},
                      {90, 80},
                      {105, 80}},
                     kStep);
  roughen(line, kNoise);
  numberSamples(line);
  return line;
}

Findings findCornersNearHeight(Line& line) {
  const SQO_cornerParam param = {5.0, 30.0, 3.0, 30.0, 30.0, 0.0};
  const double refZ = 118.0;
  std::vector<SQO_basicFeature1D> found;
  qo_getLineCornerFeature_BQ(line.data(), sizeOf(line), 0, refZ, param, found);
  return {describe({{"refZ", refZ},
                    {"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"minEndingGap", param.minEndingGap},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          pointMarks(found),
          {},
          {{refZ - 10.0, "refZ - 10"}, {refZ + 10.0, "refZ + 10"}}};
}

/// A pedestal on the ground with a block on top.
Line blockOnPedestal() {
  Line line = alongY({{0, 130},
                      {20, 130},
                      {23, 115},
                      {43, 115},
                      {46, 95},
                      {68, 95},
                      {71, 115},
                      {91, 115},
                      {94, 130},
                      {115, 130}},
                     kStep);
  roughen(line, kNoise);
  numberSamples(line);
  return line;
}

Findings findContourNearGround(Line& line) {
  const SQO_cornerParam param = {5.0, 30.0, 3.0, 30.0, 30.0, 0.0};
  const double groundDist = 8.0;
  const STeskRangeD ground[] = {{0.0, 20.0}, {94.0, 115.0}};
  std::vector<int> groundMask;
  for (const STesk3DPosition& sample : line) {
    const double y = sample.pt3D.y;
    groundMask.push_back(y <= ground[0].max || y >= ground[1].min ? 1 : 0);
  }
  std::vector<SQO_basicFeature1D> found;
  qo_getLineContourCornerFeature_groundMask_BQ(line, groundMask, 0, groundDist, param, found);
  return {describe({{"groundDist", groundDist},
                    {"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"minEndingGap", param.minEndingGap},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          valueMarks(found, "measure"),
          {{ground[0], "ground mask"}, {ground[1], "ground mask"}},
          {}};
}

/// A table that ends, with the floor far below it.
Line tableAboveFloor() {
  Line line = alongY({{0, 170},
                      {19.5, 170},
                      {20, 110},
                      {40, 110},
                      {41, 92},
                      {62, 92},
                      {63, 110},
                      {95, 110},
                      {95.5, 170},
                      {115, 170}},
                     kStep);
  blank(line, 68.0, 76.0);
  roughen(line, kNoise);
  numberSamples(line);
  return line;
}

Findings findCornersBelowHeight(Line& line) {
  const SQO_cornerParam param = {5.0, 30.0, 3.0, 30.0, 45.0, 30.0};
  const double maxZ = 140.0;
  SQO_lineFeature found = {};
  ju_getLineCornerFeature_PSM(line.data(), sizeOf(line), 0, maxZ, param, &found);
  return {describe({{"maxZ", maxZ},
                    {"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"jumpCornerTh_2", param.jumpCornerTh_2},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          lineMarks(found),
          {},
          {{maxZ, "maxZ"}}};
}

/// A channel with steep walls, and a V groove.
Line channelAndGroove() {
  Line line = alongY(
      {{0, 90}, {20, 90}, {22, 108}, {42, 108}, {44, 90}, {68, 90}, {78, 102}, {88, 90}, {108, 90}},
      kStep);
  roughen(line, kNoise);
  return line;
}

Findings findCornersInStretches(Line& line) {
  const SQO_cornerParam param = {0.0, 30.0, 3.0, 30.0, 30.0, 60.0};
  std::vector<SQO_basicFeature1D> found;
  ju_getLineCorerFeature(line, 0, param, found);
  return {describe({{"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"jumpCornerTh_2", param.jumpCornerTh_2},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          pointMarks(found),
          {},
          {}};
}

}  // namespace

std::vector<Exhibit> cornerExhibits() {
  return {
      {"qo_getLineCornerFeature",
       "The feet of a box and the bottom of a groove; triangles: ends of the data segments.",
       tableWithBox, findCorners},
      {"qo_maskData_getLineCornerFeature",
       "Two parts with the same groove; only the samples of one label are looked at.",
       twoLabelledParts, findMaskedCorners},
      {"qo_getLineCornerFeature_BQ",
       "Of two pockets only the one near the reference height; and the flat ends of the line.",
       twoPockets, findCornersNearHeight},
      {"qo_getLineContourCornerFeature_groundMask_BQ",
       "Upper edges with ground close by; those of the block on top are too far from it.",
       blockOnPedestal, findContourNearGround},
      {"ju_getLineCornerFeature_PSM",
       "The floor (grey) is blanked first; the table stays one segment in spite of the hole.",
       tableAboveFloor, findCornersBelowHeight},
      {"ju_getLineCorerFeature",
       "Corners at the bottom of a channel, typed by flat and steep arms, and of a groove.",
       channelAndGroove, findCornersInStretches},
  };
}

}  // namespace examples
