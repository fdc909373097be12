#include <scanline/line_features.h>
#include "features/corner_stages.h"
#include "features/corner_types.h"
#include "features/signed_peaks.h"
#include "features/stretches.h"
#include "records/append.h"

namespace scanline::detail {
namespace {

int typeByArms(Arms arms) {
  switch (arms) {
    case Arms::kFlatThenSteep:
      return FEATURE_JUMP_FALL;
    case Arms::kSteepThenFlat:
      return FEATURE_JUMP_RISE;
    case Arms::kOther:
      break;
  }
  return FEATURE_CORNER_OTHER;
}

}  // namespace

void ju_selectCornerPeaks(const Slopes& slopes,
                          const Samples& validPoints,
                          const SQO_cornerParam& cornerPara,
                          double peakWin,
                          Slopes& posPeaks,
                          Slopes& negPeaks) {
  const double window = peakWin * peakWin;
  const CornerExtrema extrema = extremaPass(slopes, ExtremaSign::kMatching);
  append(
      peakPass(extrema.maxima, validPoints, {cornerPara.cornerTh, window, CornerMeasure::kValue}),
      posPeaks);
  append(peakPass(extrema.minima, validPoints,
                  {cornerPara.cornerTh, window, CornerMeasure::kMagnitude}),
         negPeaks);
}

}  // namespace scanline::detail

namespace detail = scanline::detail;

void ju_getLineCorerFeature(std::vector<STesk3DPosition>& lineData,
                            int lineIdx,
                            SQO_cornerParam cornerPara,
                            std::vector<SQO_basicFeature1D>& line_features) {
  const auto [stretches, slopes] =
      detail::slopedStretches(lineData, cornerPara.minEndingGap_z, cornerPara.scale);
  detail::Slopes posPeaks;
  detail::Slopes negPeaks;
  detail::ju_selectCornerPeaks(slopes, stretches.points, cornerPara,
                               cornerPara.scale + cornerPara.scale, posPeaks, negPeaks);
  std::vector<SQO_basicFeature1D> corners;
  for (const auto& peak : posPeaks) {
    const int type = detail::typeByArms(detail::armsOf(peak, cornerPara));
    corners.push_back(detail::featureAt(stretches.points[peak.pntIdx], type, lineIdx, 0.0));
  }
  detail::append(corners, line_features);
  detail::stampIndices(lineData);
}
