#include "roads/extractor_calls.h"

#include <cmath>
#include <limits>

#include "roads/feature_types.h"
#include "roads/hole_labels.h"

namespace program {
namespace {

using Features = std::vector<SQO_basicFeature1D>;

constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

int sizeOf(const Line& line) {
  return static_cast<int>(line.size());
}

FoundFeature asFound(const SQO_basicFeature1D& feature) {
  return {nameOfType(feature.featureType),
          feature.featureType,
          feature.jumpPos2D.y,
          feature.jumpPos2D.y,
          feature.jumpPos,
          feature.jumpPos,
          feature.featureValue};
}

std::vector<FoundFeature> asFound(const Features& features) {
  std::vector<FoundFeature> found;
  found.reserve(features.size());
  for (const SQO_basicFeature1D& feature : features) {
    found.push_back(asFound(feature));
  }
  return found;
}

/// The library types these as peaks, though they are the farthest samples from the sensor.
std::vector<FoundFeature> asFound(Features lowest, const char* kind) {
  for (SQO_basicFeature1D& feature : lowest) {
    feature.featureType = FEATURE_VALLEY;
  }
  std::vector<FoundFeature> found = asFound(lowest);
  for (FoundFeature& feature : found) {
    feature.kind = kind;
  }
  return found;
}

std::vector<FoundFeature> asFound(const SQO_lineFeature& line) {
  std::vector<FoundFeature> found = asFound(line.features);
  const std::vector<FoundFeature> ends = asFound(line.endings);
  found.insert(found.end(), ends.begin(), ends.end());
  return found;
}

std::vector<FoundFeature> asFound(const std::vector<SJU_segFeature>& runs, const char* kind) {
  std::vector<FoundFeature> found;
  for (const SJU_segFeature& run : runs) {
    found.push_back({kind, 0, run.startPtIdx, run.endPtIdx, run.startPt, run.endPt, run.segValue});
  }
  return found;
}

SQO_cornerParam cornerParam(const Parameters& p) {
  return {p.get("corner.gap-y"), p.get("corner.gap-z"), p.get("corner.scale"),
          p.get("corner.angle"), p.get("corner.th1"),   p.get("corner.th2")};
}

STeskRangeD widthRange(const Parameters& p) {
  return {p.get("width.min"), p.get("width.max")};
}

/// The z of the levelled scan at which tables show a value.
double levelledZ(double shown, const PlaneChoice& plane) {
  return plane.chosen && !plane.chosen->isGround ? plane.chosen->height - shown : shown;
}

SQO_slopeParam slopeParam(const Parameters& p) {
  return {0.0, p.get("slope.z"), p.get("jump.z"), p.get("slope.gap-y")};
}

}  // namespace

std::vector<FoundFeature> findCorners(Line& line, const LineContext& c) {
  SQO_lineFeature found{};
  qo_getLineCornerFeature(line.data(), sizeOf(line), c.lineIdx, cornerParam(c.parameters), &found);
  return asFound(found);
}

std::vector<FoundFeature> findMaskedCorners(Line& line, const LineContext& c) {
  constexpr int kLabel = 1;
  const STeskRangeD y = {c.parameters.get("mask.y-min"), c.parameters.get("mask.y-max")};
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = sample.pt3D.y >= y.min && sample.pt3D.y <= y.max ? kLabel : 0;
  }
  Features found;
  qo_maskData_getLineCornerFeature(line, c.lineIdx, kLabel, cornerParam(c.parameters), found);
  return asFound(found);
}

std::vector<FoundFeature> findCornersBelow(Line& line, const LineContext& c) {
  SQO_lineFeature found{};
  const double limit = levelledZ(c.parameters.get("limit.z"), c.plane);
  ju_getLineCornerFeature_PSM(line.data(), sizeOf(line), c.lineIdx, limit,
                              cornerParam(c.parameters), &found);
  return asFound(found);
}

std::vector<FoundFeature> findRunCorners(Line& line, const LineContext& c) {
  Features found;
  ju_getLineCorerFeature(line, c.lineIdx, cornerParam(c.parameters), found);
  return asFound(found);
}

std::vector<FoundFeature> findCornersAtHeight(Line& line, const LineContext& c) {
  Features found;
  const double height = levelledZ(c.parameters.get("limit.z"), c.plane);
  qo_getLineCornerFeature_BQ(line.data(), sizeOf(line), c.lineIdx, height,
                             cornerParam(c.parameters), found);
  return asFound(found);
}

/// The ground is what lies near the reference plane.
std::vector<FoundFeature> findContourCorners(Line& line, const LineContext& c) {
  const double band = c.parameters.get("ground.band");
  std::vector<int> ground;
  for (const STesk3DPosition& sample : line) {
    const bool isGround = isMeasured(sample) && std::abs(c.plane.shown(sample.pt3D.z)) <= band;
    ground.push_back(isGround ? 1 : 0);
  }
  Features found;
  qo_getLineContourCornerFeature_groundMask_BQ(line, ground, c.lineIdx,
                                               c.parameters.get("ground.distance"),
                                               cornerParam(c.parameters), found);
  return asFound(found);
}

std::vector<FoundFeature> findGaps(Line& line, const LineContext& c) {
  std::vector<SQO_basicFeatureGap> gaps;
  qo_getLineGapFeature(line, c.lineIdx, cornerParam(c.parameters), widthRange(c.parameters), gaps);
  std::vector<FoundFeature> found;
  for (const SQO_basicFeatureGap& gap : gaps) {
    const STesk3DPoint& a = gap.gapStart.pt3D;
    const STesk3DPoint& b = gap.gapEnd.pt3D;
    found.push_back({"gap", 0, gap.gapStart.nPointIdx, gap.gapEnd.nPointIdx, a, b,
                     std::hypot(b.x - a.x, b.y - a.y)});
  }
  return found;
}

std::vector<FoundFeature> findCornerJumps(Line& line, const LineContext& c) {
  Features found;
  qo_getLineJumpFeature_cornerMethod(line.data(), sizeOf(line), c.lineIdx,
                                     cornerParam(c.parameters), found);
  for (SQO_basicFeature1D& feature : found) {
    feature.featureValue = c.plane.shown(feature.featureValue);
  }
  return asFound(found);
}

std::vector<FoundFeature> findDownJumps(Line& line, const LineContext& c) {
  Features found;
  qo_getLineDownJumps(line.data(), sizeOf(line), c.lineIdx, c.parameters.get("jump.z"), found);
  return asFound(found);
}

std::vector<FoundFeature> findPeaks(Line& line, const LineContext& c) {
  Features valleys;
  Features peaks;
  qo_getLineLocalPeaks(line.data(), sizeOf(line), c.lineIdx, c.parameters.get("peak.scale"),
                       valleys, peaks);
  peaks.insert(peaks.end(), valleys.begin(), valleys.end());
  return asFound(peaks);
}

std::vector<FoundFeature> findDents(Line& line, const LineContext& c) {
  // The search takes the stamp 16 for the mark of a jump.
  for (STesk3DPosition& sample : line) {
    sample.nPointIdx = 0;
  }
  Features found;
  const Parameters& p = c.parameters;
  qo_getFlatLineLocalPeaks_vector(line, c.lineIdx, p.get("dent.window"), p.get("jump.z"),
                                  p.get("width.max"), found);
  return asFound(found, "dent");
}

std::vector<FoundFeature> findShapes(Line& line, const LineContext& c) {
  SQO_lineFeature found{};
  const Parameters& p = c.parameters;
  qo_getLineLVFeature(line.data(), sizeOf(line), c.lineIdx, slopeParam(p),
                      {p.get("v.apex-z"), p.get("width.max")}, &found);
  return asFound(found);
}

std::vector<FoundFeature> findRightAngles(Line& line, const LineContext& c) {
  SQO_lineFeature found{};
  const Parameters& p = c.parameters;
  const SQO_lineRightAngleParam arms = {p.get("arm.flat"), p.get("arm.steep"),
                                        p.get("arm.deviation")};
  qo_getLineRigthAngleFeature(line.data(), sizeOf(line), c.lineIdx, arms, arms, arms, arms, &found);
  return asFound(found);
}

std::vector<FoundFeature> findRingArcs(Line& line, const LineContext& c) {
  std::vector<SJU_segFeature> found;
  ju_getRingArcFeature(line, c.lineIdx, cornerParam(c.parameters), widthRange(c.parameters), found);
  return asFound(found, "ring arc");
}

std::vector<FoundFeature> findTubes(Line& line, const LineContext& c) {
  cv::Mat labels = labelledHoles(line, c.lineIdx, c.parameters.get("tube.hole"));
  std::vector<SQO_featureSemiCircle> tubes;
  qo_getLineUpperSemiCircleFeature(line.data(), sizeOf(line), c.lineIdx,
                                   c.parameters.get("tube.unit"), slopeParam(c.parameters), tubes,
                                   labels);
  std::vector<FoundFeature> found;
  for (const SQO_featureSemiCircle& tube : tubes) {
    found.push_back({"tube", 0, tube.startPtIdx, tube.endPtIdx,
                     line[static_cast<std::size_t>(tube.startPtIdx)].pt3D,
                     line[static_cast<std::size_t>(tube.endPtIdx)].pt3D, tube.width});
  }
  return found;
}

std::vector<FoundFeature> findGloveArcs(Line& line, const LineContext& c) {
  Features found;
  const Parameters& p = c.parameters;
  ju_getLineGloveArcs(line, c.lineIdx,
                      {p.get("corner.scale"), p.get("glove.arm"), p.get("glove.angle")}, found);
  return asFound(found, "glove arc");
}

std::vector<FoundFeature> findRaised(Line& line, const LineContext& c) {
  std::vector<SJU_segFeature> found;
  const Parameters& p = c.parameters;
  ju_getLineRaisedFeature(
      line, c.lineIdx,
      {p.get("jump.z"), p.get("raised.slope"), p.get("width.min"), p.get("width.max")}, found);
  return asFound(found, "raised run");
}

}  // namespace program
