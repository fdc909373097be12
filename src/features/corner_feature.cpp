#include "features/corner_stages.h"
#include "features/line_runs.h"
#include "line_features.h"

namespace detail = scanline::detail;

namespace {

/// Type of a corner by the slopes of its two arms.
int cornerType(const detail::SQO_pointSlope& corner, const SQO_cornerParam& param) {
  const double steep = param.jumpCornerTh_1;
  const double flat = param.jumpCornerTh_2;
  if (corner.backwardAngle > steep && corner.forwardAngle > -flat) {
    return FEATURE_JUMP_RISE;
  }
  if (-steep > corner.forwardAngle && flat > corner.backwardAngle) {
    return FEATURE_JUMP_FALL;
  }
  return FEATURE_CORNER_OTHER;
}

void appendCorners(const STesk3DPosition* lineData,
                   int dataSize,
                   int lineIdx,
                   const SQO_cornerParam& param,
                   std::vector<SQO_basicFeature1D>& features) {
  const detail::Samples points = detail::collectValidPoints(lineData, dataSize);
  const detail::Slopes slopes =
      detail::slopePass(points, detail::SlopeSearch::unlimited(param.scale));
  const detail::CornerExtrema extrema = detail::extremaPass(slopes, detail::ExtremaSign::kAny);
  const detail::Slopes peaks = detail::peakPass(
      extrema.maxima, points,
      {param.cornerTh, param.scale * 4.0 * param.scale, detail::CornerMeasure::kValue});
  for (const detail::SQO_pointSlope& peak : peaks) {
    const STesk3DPosition& point = points[peak.pntIdx];
    features.push_back({cornerType(peak, param), {lineIdx, point.nPointIdx}, point.pt3D, 0.0});
  }
}

}  // namespace

void qo_getLineCornerFeature(STesk3DPosition* lineData,
                             int dataSize,
                             int lineIdx,
                             SQO_cornerParam cornerPara,
                             SQO_lineFeature* line_features) {
  line_features->lineIdx = lineIdx;
  appendCorners(lineData, dataSize, lineIdx, cornerPara, line_features->features);
  std::vector<SQO_RUN> runs = detail::findRuns(lineData, dataSize, cornerPara.minEndingGap_z);
  detail::joinRuns(lineData, cornerPara.minEndingGap, cornerPara.minEndingGap_z, runs);
  detail::appendEndings(lineData, lineIdx, runs, line_features->endings);
}
