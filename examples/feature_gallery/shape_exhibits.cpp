#include <cmath>

#include <scanline/line_features.h>
#include "exhibit.h"
#include "profiles.h"
#include "text_table.h"

/// The exhibits of gaps, jumps, L and V shapes, right angles, arcs and raised stretches.

namespace examples {
namespace {

constexpr double kStep = 0.5;
constexpr double kNoise = 0.03;

/// Three panels with a narrow and a wide joint.
Line panels() {
  Line line = alongY({{0, 80},
                      {28, 80},
                      {29.5, 92},
                      {32.5, 92},
                      {34, 80},
                      {62, 80},
                      {63.5, 92},
                      {82, 92},
                      {83.5, 80},
                      {110, 80}},
                     kStep);
  roughen(line, kNoise);
  return line;
}

Findings findGaps(Line& line) {
  const SQO_cornerParam param = {0.0, 30.0, 2.0, 40.0, 0.0, 0.0};
  const STeskRangeD width = {2.0, 12.0};
  std::vector<SQO_basicFeatureGap> found;
  qo_getLineGapFeature(line, 0, param, width, found);
  std::vector<Mark> marks;
  for (const SQO_basicFeatureGap& gap : found) {
    const STesk3DPoint& a = gap.gapStart.pt3D;
    const STesk3DPoint& b = gap.gapEnd.pt3D;
    marks.push_back(
        {MarkKind::span, 0, a, b, "gap, width " + fixed(std::hypot(b.x - a.x, b.y - a.y), 1)});
  }
  return {describe({{"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"minEndingGap_z", param.minEndingGap_z},
                    {"gapParam.min", width.min},
                    {"gapParam.max", width.max}}),
          marks,
          {},
          {}};
}

/// Steps whose flanks spread over several samples, the last one over many.
Line softSteps() {
  Line line = alongY({{0, 110},
                      {22, 110},
                      {25, 98},
                      {44, 98},
                      {47, 84},
                      {66, 84},
                      {69, 98},
                      {86, 98},
                      {100, 110},
                      {115, 110}},
                     kStep);
  roughen(line, kNoise);
  return line;
}

Findings findCornerJumps(Line& line) {
  const SQO_cornerParam param = {6.0, 8.0, 3.0, 30.0, 25.0, 55.0};
  std::vector<SQO_basicFeature1D> found;
  qo_getLineJumpFeature_cornerMethod(line.data(), sizeOf(line), 0, param, found);
  return {describe({{"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"jumpCornerTh_1", param.jumpCornerTh_1},
                    {"jumpCornerTh_2", param.jumpCornerTh_2},
                    {"minEndingGap", param.minEndingGap},
                    {"minEndingGap_z", param.minEndingGap_z}}),
          valueMarks(found, "z"),
          {},
          {}};
}

/// Stairs that lead away from the sensor; one step is low, one hides behind a hole.
Line stairs() {
  Line line = alongY({{0, 80},
                      {20, 80},
                      {20.5, 92},
                      {42, 92},
                      {42.5, 95},
                      {64, 95},
                      {64.5, 110},
                      {86, 110},
                      {86.5, 80},
                      {105, 80}},
                     kStep);
  blank(line, 64.5, 70.0);
  roughen(line, kNoise);
  return line;
}

Findings findDownJumps(Line& line) {
  const double jumpZ = 8.0;
  std::vector<SQO_basicFeature1D> found;
  qo_getLineDownJumps(line.data(), sizeOf(line), 0, jumpZ, found);
  return {describe({{"jumpZ", jumpZ}}), pointMarks(found), {}, {}};
}

/// A box with sharp walls, a V groove, and a bank with a steep face.
Line boxGrooveAndBank() {
  Line line = alongY({{0, 120},
                      {20, 120},
                      {20.5, 98},
                      {50, 98},
                      {50.5, 120},
                      {66, 120},
                      {73, 133},
                      {80, 120},
                      {98, 120},
                      {104, 100},
                      {128, 100}},
                     kStep);
  roughen(line, kNoise);
  return line;
}

Findings findShapes(Line& line) {
  const SQO_slopeParam slope = {0.0, 5.0, 8.0, 3.0};
  const SQO_VFeatureParam v = {4.0, 10.0};
  SQO_lineFeature found = {};
  qo_getLineLVFeature(line.data(), sizeOf(line), 0, slope, v, &found);
  return {describe({{"minSlope_z", slope.minSlope_z},
                    {"jumpTh_z", slope.jumpTh_z},
                    {"maxGap_y", slope.maxGap_y},
                    {"apexDiff_z", v.apexDiff_z},
                    {"maxWidth_y", v.maxWidth_y}}),
          lineMarks(found),
          {},
          {}};
}

/// A rail and a slot with upright walls that hold samples.
Line railAndSlot() {
  Line line = alongProfile({{0, 100},
                            {22, 100},
                            {22.2, 82},
                            {44, 82},
                            {44.2, 100},
                            {66, 100},
                            {66.2, 116},
                            {88, 116},
                            {88.2, 100},
                            {110, 100}},
                           kStep);
  roughen(line, kNoise);
  return line;
}

Findings findRightAngles(Line& line) {
  const SQO_lineRightAngleParam arms = {8.0, 6.0, 0.8};
  SQO_lineFeature found = {};
  qo_getLineRigthAngleFeature(line.data(), sizeOf(line), 0, arms, arms, arms, arms, &found);
  return {"for all four kinds: " + describe({{"flatArmLen", arms.flatArmLen},
                                             {"steepArmLen", arms.steepArmLen},
                                             {"armTol", arms.armTol}}),
          lineMarks(found),
          {},
          {}};
}

/// A wide and a narrow round bead.
Line beads() {
  Line line = alongY({{0, 100}, {110, 100}}, kStep);
  addArch(line, 38.0, 13.0, 12.0);
  addArch(line, 84.0, 4.0, 4.0);
  return line;
}

Findings findRingArcs(Line& line) {
  const SQO_cornerParam param = {0.0, 20.0, 2.0, 60.0, 0.0, 0.0};
  const STeskRangeD width = {12.0, 30.0};
  std::vector<SJU_segFeature> found;
  ju_getRingArcFeature(line, 0, param, width, found);
  return {describe({{"scale", param.scale},
                    {"cornerTh", param.cornerTh},
                    {"minEndingGap_z", param.minEndingGap_z},
                    {"ringArcWidth.min", width.min},
                    {"ringArcWidth.max", width.max}}),
          stretchMarks(found, "arc, turn"),
          {},
          {}};
}

/// Two ribs of the wanted width and a wide block between them.
Line ribs() {
  Line line = alongY({{0, 110},
                      {15, 110},
                      {15.5, 95},
                      {27, 95},
                      {27.5, 110},
                      {42, 110},
                      {42.5, 95},
                      {72, 95},
                      {72.5, 110},
                      {86, 110},
                      {86.5, 90},
                      {94, 90},
                      {94.5, 110},
                      {110, 110}},
                     kStep);
  roughen(line, kNoise);
  return line;
}

Findings findRaised(Line& line) {
  const SQO_raisedFeatureParam param = {5.0, 3.0, 5.0, 20.0};
  std::vector<SJU_segFeature> found;
  ju_getLineRaisedFeature(line, 0, param, found);
  return {describe({{"minJumpZ", param.minJumpZ},
                    {"minJumpK", param.minJumpK},
                    {"minWidth", param.minWidth},
                    {"maxWidth", param.maxWidth}}),
          stretchMarks(found, "raised, width"),
          {},
          {}};
}

}  // namespace

std::vector<Exhibit> shapeExhibits() {
  return {
      {"qo_getLineGapFeature", "The narrow joint between two panels; the wide one is out of range.",
       panels, findGaps},
      {"qo_getLineJumpFeature_cornerMethod",
       "Steps that spread over samples, on the side away from the sensor; the ramp is too wide.",
       softSteps, findCornerJumps},
      {"qo_getLineDownJumps",
       "Steps away from the sensor, also across a hole; neither low steps nor those towards it.",
       stairs, findDownJumps},
      {"qo_getLineLVFeature",
       "Walls of a box, a V groove and a steep bank; triangles: segment ends.", boxGrooveAndBank,
       findShapes},
      {"qo_getLineRigthAngleFeature", "The four kinds of right angle on a rail and a slot.",
       railAndSlot, findRightAngles},
      {"ju_getRingArcFeature", "A round bead; the small one is narrower than the limits.", beads,
       findRingArcs},
      {"ju_getLineRaisedFeature", "Two ribs of the wanted width; the block between is too wide.",
       ribs, findRaised},
  };
}

}  // namespace examples
