#include <cmath>
#include <limits>
#include <opencv2/core/mat.hpp>
#include <vector>

#include <scanline/line_features.h>
#include "features/line_runs.h"
#include "records/sample_rules.h"

namespace detail = scanline::detail;

namespace {

using Stretches = std::vector<SQO_featureSemiCircle>;

constexpr int kUnused = 0;
constexpr int kUsed = 5;

/// The sample for which `measure` is smallest, the earliest among equals; -1 without samples.
template <typename Measure>
int findLeast(const STesk3DPosition* lineData, int first, int last, Measure measure) {
  int least = -1;
  for (int i = first; i <= last; ++i) {
    const STesk3DPoint& point = lineData[i].pt3D;
    if (point.z >= detail::kNoSampleZ &&
        (least < 0 || measure(point) < measure(lineData[least].pt3D))) {
      least = i;
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
  return {kUnused, lineIdx, first, last, middle, midPt, width, lineData[top].pt3D.z};
}

/// The runs of a line, joined across narrow holes, that hold a peak and stay below `widthLimit`.
/// A peak lies strictly inside its run, so one that is found decides for the run as a whole.
Stretches findStretches(STesk3DPosition* lineData,
                        int dataSize,
                        int lineIdx,
                        double widthLimit,
                        const SQO_slopeParam& param) {
  std::vector<SQO_RUN> runs =
      detail::findRuns(lineData, dataSize, std::numeric_limits<double>::infinity());
  detail::joinRuns(lineData, param.maxGap_y, runs);
  Stretches stretches;
  std::vector<SQO_basicFeature1D> valleys;
  std::vector<SQO_basicFeature1D> peaks;
  for (const SQO_RUN& run : runs) {
    if (run.value == 0) {
      continue;
    }
    valleys.clear();
    peaks.clear();
    qo_getLineLocalPeaks(lineData + run.start, run.len, lineIdx, param.scale, valleys, peaks);
    const int last = run.start + run.len - 1;
    if (!peaks.empty() &&
        widthLimit > std::abs(lineData[run.start].pt3D.y - lineData[last].pt3D.y)) {
      stretches.push_back(stretchBetween(lineData, lineIdx, run.start, last));
    }
  }
  return stretches;
}

/// Whether the samples that face each other across the hole between two stretches share a label.
bool isHoleLabelled(const cv::Mat& labelImage,
                    const SQO_featureSemiCircle& before,
                    const SQO_featureSemiCircle& behind) {
  const int label = labelImage.at<int>(before.endPtIdx + 1, before.lineIdx);
  return label >= 1 && label == labelImage.at<int>(behind.startPtIdx - 1, before.lineIdx);
}

}  // namespace

void qo_getLineUpperSemiCircleFeature(STesk3DPosition* lineData,
                                      int dataSize,
                                      int lineIdx,
                                      double widthUnit,
                                      SQO_slopeParam slopeParam,
                                      std::vector<SQO_featureSemiCircle>& line_features,
                                      cv::Mat& labelImage) {
  Stretches stretches = findStretches(lineData, dataSize, lineIdx, widthUnit * 4.0, slopeParam);
  // The last stretch is only there to be joined.
  for (std::size_t i = 0; i + 1 < stretches.size(); ++i) {
    const SQO_featureSemiCircle& stretch = stretches[i];
    SQO_featureSemiCircle& next = stretches[i + 1];
    if (stretch.segState == kUsed) {
      continue;
    }
    if (!isHoleLabelled(labelImage, stretch, next)) {
      line_features.push_back(stretch);
      continue;
    }
    line_features.push_back(stretchBetween(lineData, lineIdx, stretch.startPtIdx, next.endPtIdx));
    next.segState = kUsed;
  }
}
