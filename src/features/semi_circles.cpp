// Finds tubes: narrow runs of a line with a local peak.
#include <cassert>
#include <cmath>
#include <limits>
#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_runs.h"
#include "records/append.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Tubes = std::vector<SQO_featureSemiCircle>;

constexpr int kNoState = 0;

/// The valid sample for which `measure` is smallest, the earliest of equal ones; -1 if there is
/// none. NaN in z does not count.
template <typename Measure>
int findLeast(const STesk3DPosition* lineData, int first, int last, Measure measure) {
  int least = -1;
  double smallest = 0.0;
  for (int i = first; i <= last; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (!(point.z >= detail::kNoSampleZ)) {
      continue;
    }
    if (const double value = measure(point); least < 0 || value < smallest) {
      least = i;
      smallest = value;
    }
  }
  return least;
}

/// The tube between two measured samples.
SQO_featureSemiCircle tubeBetween(const STesk3DPosition* lineData,
                                  int lineIdx,
                                  int first,
                                  int last) {
  const double startY = lineData[first].pt3D.y;
  const double endY = lineData[last].pt3D.y;
  const double middleY = (startY + endY) * 0.5;
  const int middle = findLeast(lineData, first, last, [middleY](const STesk3DPoint& point) {
    return std::abs(point.y - middleY);
  });
  const int top =
      findLeast(lineData, first, last, [](const STesk3DPoint& point) { return point.z; });
  const STesk3DPoint& midPt = lineData[middle].pt3D;
  const double width = std::abs(startY - endY);
  return {kNoState, lineIdx, first, last, middle, midPt, width, lineData[top].pt3D.z};
}

/// Whether z rises anywhere in a run after it has fallen. The smallest of such turning points is a
/// local peak at any scale, since no other one is smaller.
bool hasPeak(const STesk3DPosition* lineData, const SQO_RUN& run) {
  bool hasFallen = false;
  double before = lineData[run.start].pt3D.z;
  for (int i = run.start + 1; i < run.start + run.len; ++i) {
    const double z = lineData[i].pt3D.z;
    if (detail::isMissing(z)) {
      continue;
    }
    if (hasFallen && z > before) {
      return true;
    }
    hasFallen = hasFallen || z < before;
    before = z;
  }
  return false;
}

/// The runs of a line, joined across narrow holes.
std::vector<SQO_RUN> joinedRuns(const STesk3DPosition* lineData, int dataSize, double maxGap_y) {
  std::vector<SQO_RUN> runs =
      detail::findRuns(lineData, dataSize, std::numeric_limits<double>::infinity());
  detail::joinRuns(lineData, maxGap_y, runs);
  return runs;
}

/// The runs with a peak and a width below `widthLimit`.
Tubes findTubes(const STesk3DPosition* lineData,
                int lineIdx,
                double widthLimit,
                const std::vector<SQO_RUN>& runs) {
  Tubes tubes;
  for (const SQO_RUN& run : runs) {
    const int last = detail::lastOf(run);
    if (!detail::isAbsorbed(run) && hasPeak(lineData, run) &&
        widthLimit > std::abs(lineData[run.start].pt3D.y - lineData[last].pt3D.y)) {
      tubes.push_back(tubeBetween(lineData, lineIdx, run.start, last));
    }
  }
  return tubes;
}

/// Stamps the samples of each run with their index inside it. A run of one sample keeps its stamp.
void stampRuns(const std::vector<SQO_RUN>& runs, STesk3DPosition* lineData) {
  for (const SQO_RUN& run : runs) {
    if (detail::isAbsorbed(run) || run.len == 1) {
      continue;
    }
    for (int i = 0; i < run.len; ++i) {
      lineData[run.start + i].nPointIdx = i;
    }
  }
}

/// Whether the samples next to both ends of the hole between two tubes have the same label.
bool isHoleLabelled(const cv::Mat& labelImage,
                    const SQO_featureSemiCircle& before,
                    const SQO_featureSemiCircle& after) {
  const int label = labelImage.at<int>(before.endPtIdx + 1, before.lineIdx);
  return label >= 1 && label == labelImage.at<int>(after.startPtIdx - 1, before.lineIdx);
}

/// Joins each tube with the next one if the hole between them is labelled. The last tube is not
/// reported by itself.
Tubes joinAcrossLabels(const STesk3DPosition* lineData,
                       const cv::Mat& labelImage,
                       const Tubes& tubes) {
  Tubes joined;
  for (std::size_t i = 0; i + 1 < tubes.size(); ++i) {
    const SQO_featureSemiCircle& tube = tubes[i];
    const SQO_featureSemiCircle& next = tubes[i + 1];
    if (!isHoleLabelled(labelImage, tube, next)) {
      joined.push_back(tube);
      continue;
    }
    joined.push_back(tubeBetween(lineData, tube.lineIdx, tube.startPtIdx, next.endPtIdx));
    ++i;  // A tube is joined once at most.
  }
  return joined;
}

}  // namespace

void qo_getLineUpperSemiCircleFeature(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      double widthUnit,
                                      SQO_slopeParam slopeParam,
                                      std::vector<SQO_featureSemiCircle>& line_features,
                                      cv::Mat& labelImage) {
  assert(dataSize < 1 || lineData != nullptr);
  assert(dataSize < 1 || (labelImage.type() == CV_32S && labelImage.rows >= dataSize &&
                          lineIdx >= 0 && labelImage.cols > lineIdx));
  const std::vector<SQO_RUN> runs = joinedRuns(lineData, dataSize, slopeParam.maxGap_y);
  const Tubes tubes = findTubes(lineData, lineIdx, widthUnit * 4.0, runs);
  detail::append(joinAcrossLabels(lineData, labelImage, tubes), line_features);
  stampRuns(runs, lineData);
}
