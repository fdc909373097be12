#include "checks.h"
#include "define.h"
#include "functions.h"

namespace binding {

namespace {

using Line = std::vector<STesk3DPosition>;
using Features = std::vector<SQO_basicFeature1D>;

void checkFlags(STesk3DPosition* lineData,
                int dataSize,
                int /*lineIdx*/,
                double /*refZ*/,
                SQO_cornerParam /*cornerPara*/,
                Features& /*line_features*/) {
  require(dataSize <= 65536, "lineData", "at most 65536 samples", std::to_string(dataSize));
  requireIndexStamps(lineData, static_cast<std::size_t>(dataSize));
}

void checkMask(Line& lineData,
               std::vector<int> groundMask,
               int /*lineIdx*/,
               double /*groundDist*/,
               SQO_cornerParam /*cornerPara*/,
               Features& /*line_features*/) {
  require(groundMask.size() == lineData.size(), "groundMask",
          "one element for each of the " + std::to_string(lineData.size()) + " samples",
          std::to_string(groundMask.size()));
  requireIndexStamps(lineData.data(), lineData.size());
}

void checkMarks(Line& lineData,
                int /*lineIdx*/,
                double /*slopeWin_y*/,
                double /*jumpTh_z*/,
                double /*peakWidth_y*/,
                Features& /*peaks*/) {
  for (std::size_t i = 0; i < lineData.size(); ++i) {
    require(lineData[i].nPointIdx != 16, "lineData", "no nPointIdx of 16, which marks a jump",
            "one in sample " + std::to_string(i) + "; clear nPointIdx first");
  }
}

void checkLabels(STesk3DPosition* /*lineData*/,
                 int dataSize,
                 int lineIdx,
                 double /*widthUnit*/,
                 SQO_slopeParam /*slopeParam*/,
                 std::vector<SQO_featureSemiCircle>& /*line_features*/,
                 cv::Mat& labelImage) {
  require(labelImage.rows >= dataSize, "labelImage",
          "a row for each of the " + std::to_string(dataSize) + " samples",
          std::to_string(labelImage.rows) + " rows");
  require(lineIdx >= 0 && lineIdx < labelImage.cols, "lineIdx",
          "a column of labelImage, from 0 to " + std::to_string(labelImage.cols - 1),
          std::to_string(lineIdx));
}

/// Sets the index of the line, which the function leaves to its caller.
void setLineOfShapes(STesk3DPosition* /*lineData*/,
                     int /*dataSize*/,
                     int lineIdx,
                     SQO_slopeParam /*slopeParam*/,
                     SQO_VFeatureParam /*vFeatureParam*/,
                     SQO_lineFeature* line_features) {
  line_features->lineIdx = lineIdx;
}

void setLineOfAngles(STesk3DPosition* /*lineData*/,
                     int /*dataSize*/,
                     int lineIdx,
                     SQO_lineRightAngleParam /*flatRise*/,
                     SQO_lineRightAngleParam /*riseFlat*/,
                     SQO_lineRightAngleParam /*flatFall*/,
                     SQO_lineRightAngleParam /*fallFlat*/,
                     SQO_lineFeature* line_features) {
  line_features->lineIdx = lineIdx;
}

}  // namespace

void defineFeatures(py::module_& m) {
  SCANLINE_DEFINE(m, qo_getLineCornerFeature, In, Count, In, In, Out);
  SCANLINE_DEFINE(m, qo_maskData_getLineCornerFeature, In, In, In, In, Out);
  SCANLINE_DEFINE(m, ju_getLineCornerFeature_PSM, InOut, Count, In, In, In, Out);
  SCANLINE_DEFINE(m, ju_getLineCorerFeature, InOut, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getLineCornerFeature_BQ, checkFlags, InOut, Count, In, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getLineContourCornerFeature_groundMask_BQ, checkMask, In, In, In,
                          In, In, Out);
  SCANLINE_DEFINE(m, qo_getLineGapFeature, InOut, In, In, In, Out);
  SCANLINE_DEFINE(m, qo_getLineJumpFeature_cornerMethod, In, Count, In, In, Out);
  SCANLINE_DEFINE(m, qo_getLineDownJumps, InOut, Count, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getLineLVFeature, setLineOfShapes, In, Count, In, In, In, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getLineRigthAngleFeature, setLineOfAngles, In, Count, In, In, In,
                          In, In, Out);
  SCANLINE_DEFINE(m, qo_getLineLocalPeaks, InOut, Count, In, In, Out, Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getFlatLineLocalPeaks_vector, checkMarks, InOut, In, In, In, In,
                          Out);
  SCANLINE_DEFINE_CHECKED(m, qo_getLineUpperSemiCircleFeature, checkLabels, InOut, Count, In, In,
                          In, Out, Image<CV_32S>);
  SCANLINE_DEFINE(m, ju_getRingArcFeature, InOut, In, In, In, Out);
  SCANLINE_DEFINE(m, ju_getLineGloveArcs, In, In, In, Out);
  SCANLINE_DEFINE(m, ju_getLineRaisedFeature, InOut, In, In, Out);
}

}  // namespace binding
