#include "pipeline.h"

#include "each_line.h"

namespace examples {

SQO_planeCalibPara calibrate(Scan& scan) {
  std::vector<STesk3DLaserLine> lines = pointerForm(scan);
  return qo_getPlaneCalibPara(lines.data(), static_cast<int>(lines.size()));
}

Scan levelled(Scan scan, const SQO_planeCalibPara& calibration) {
  constexpr double kCutNothing = 0.0;
  forEachLine(scan, [&](std::size_t l) {
    lineDataRT_vector(scan[l], calibration.levelMatrix, kCutNothing);
  });
  return scan;
}

LineGaps findGaps(Scan& scan, const GapParams& params) {
  LineGaps gaps(scan.size());
  forEachLine(scan, [&](std::size_t l) {
    qo_getLineGapFeature(scan[l], static_cast<int>(l), params.corner, params.width, gaps[l]);
  });
  return gaps;
}

std::vector<SQO_gapFeatureTree> followGaps(LineGaps& gaps, const SQO_treeGrowParam& grow) {
  // The list of trees is all that is kept from line to line, so a running scan can be followed in
  // the same way.
  std::vector<SQO_gapFeatureTree> trees;
  for (std::size_t l = 0; l < gaps.size(); ++l) {
    const bool isLast = l + 1 == gaps.size();
    qo_lineGapsGrowing(static_cast<int>(l), isLast, gaps[l], trees, grow);
  }
  return trees;
}

}  // namespace examples
