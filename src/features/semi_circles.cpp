// Finds the narrow stretches of a line that hold a peak of z towards the sensor.
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

using Stretches = std::vector<SQO_featureSemiCircle>;

constexpr int kNoState = 0;

/// The sample for which `measure` is smallest, the earliest among equals; -1 without samples.
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

/// The stretch between two samples, both of which are valid.
SQO_featureSemiCircle stretchBetween(const STesk3DPosition* lineData,
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

/// Whether a run holds a local peak: z rises after it has fallen. Whatever the scale of the search
/// for peaks, the lowest of the turns is one, as no other is lower.
bool holdsPeak(const STesk3DPosition* lineData, const SQO_RUN& run) {
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

/// The runs of a line, joined across narrow holes; `value` is 0 in those that were absorbed.
std::vector<SQO_RUN> joinedRuns(const STesk3DPosition* lineData, int dataSize, double maxGap_y) {
  std::vector<SQO_RUN> runs =
      detail::findRuns(lineData, dataSize, std::numeric_limits<double>::infinity());
  detail::joinRuns(lineData, maxGap_y, runs);
  return runs;
}

/// The runs that hold a peak and stay below `widthLimit`. A peak lies strictly inside its run, so
/// one that is found decides for the run as a whole.
Stretches findStretches(const STesk3DPosition* lineData,
                        int lineIdx,
                        double widthLimit,
                        const std::vector<SQO_RUN>& runs) {
  Stretches stretches;
  for (const SQO_RUN& run : runs) {
    const int last = run.start + run.len - 1;
    if (run.value != 0 && holdsPeak(lineData, run) &&
        widthLimit > std::abs(lineData[run.start].pt3D.y - lineData[last].pt3D.y)) {
      stretches.push_back(stretchBetween(lineData, lineIdx, run.start, last));
    }
  }
  return stretches;
}

/// Stamps the samples of each run with their index inside it; a run of one sample keeps its stamp.
void stampRuns(const std::vector<SQO_RUN>& runs, STesk3DPosition* lineData) {
  for (const SQO_RUN& run : runs) {
    if (run.value == 0 || run.len == 1) {
      continue;
    }
    for (int i = 0; i < run.len; ++i) {
      lineData[run.start + i].nPointIdx = i;
    }
  }
}

/// Whether the samples that face each other across the hole between two stretches share a label.
bool isHoleLabelled(const cv::Mat& labelImage,
                    const SQO_featureSemiCircle& before,
                    const SQO_featureSemiCircle& after) {
  const int label = labelImage.at<int>(before.endPtIdx + 1, before.lineIdx);
  return label >= 1 && label == labelImage.at<int>(after.startPtIdx - 1, before.lineIdx);
}

/// Joins each stretch with the next one if the hole between them is labelled. The last stretch is
/// only there to be joined.
Stretches joinAcrossLabels(const STesk3DPosition* lineData,
                           const cv::Mat& labelImage,
                           const Stretches& stretches) {
  Stretches joined;
  for (std::size_t i = 0; i + 1 < stretches.size(); ++i) {
    const SQO_featureSemiCircle& stretch = stretches[i];
    const SQO_featureSemiCircle& next = stretches[i + 1];
    if (!isHoleLabelled(labelImage, stretch, next)) {
      joined.push_back(stretch);
      continue;
    }
    joined.push_back(stretchBetween(lineData, stretch.lineIdx, stretch.startPtIdx, next.endPtIdx));
    ++i;  // The next one is used up.
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
  const std::vector<SQO_RUN> runs = joinedRuns(lineData, dataSize, slopeParam.maxGap_y);
  const Stretches stretches = findStretches(lineData, lineIdx, widthUnit * 4.0, runs);
  detail::append(joinAcrossLabels(lineData, labelImage, stretches), line_features);
  stampRuns(runs, lineData);
}
