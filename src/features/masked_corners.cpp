// Finds the corners of the samples of one label.
#include <scanline/line_features.h>
#include "features/arms.h"
#include "features/corner_types.h"
#include "features/line_samples.h"
#include "features/profile.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

void qo_maskData_getLineCornerFeature(std::vector<STesk3DPosition>& lineData,
                                      int lineIdx,
                                      int maskID,
                                      SQO_cornerParam cornerPara,
                                      std::vector<SQO_basicFeature1D>& line_features) {
  const detail::Profile profile = detail::collectProfile(
      lineData.data(), static_cast<int>(lineData.size()), [maskID](const STesk3DPosition& sample) {
        const bool isLabelled = sample.nPointIdx == maskID;
        return detail::isMeasured(sample.pt3D.z) && isLabelled;
      });
  // A chord that is longer leads to another piece of the label.
  const detail::Arms arms(
      profile, {cornerPara.scale, cornerPara.scale * 4.0, detail::MissingNeighbour::kNoArms});
  std::vector<SQO_basicFeature1D> corners;
  for (const int peak : detail::cornerPeaks(arms, profile, cornerPara)) {
    const int type = detail::typeBySteepArms(arms, peak, cornerPara);
    corners.push_back(detail::featureAt(lineData.data(), profile.index[peak], type, lineIdx,
                                        arms.turnAngle(peak)));
  }
  detail::append(corners, line_features);
}
