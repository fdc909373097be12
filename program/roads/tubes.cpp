#include "roads/tubes.h"

#include <limits>
#include <opencv2/core.hpp>

namespace program {
namespace {

/// A line without the samples that lie lower than asked for, which would connect tubes on a plane.
Line overPlane(Line line, const ArcParams& params) {
  const double limit = params.tubeHeight > 0.0 ? params.planeZ - params.tubeHeight
                                               : std::numeric_limits<double>::infinity();
  for (STesk3DPosition& sample : line) {
    if (sample.pt3D.z > limit) {
      sample.pt3D.z = 0.0;
    }
  }
  return line;
}

/// Whether the library's search finds a tube in a run of its own.
bool isTube(const Line& line, const SQO_RUN& run, const ArcParams& params) {
  const auto first = line.begin() + run.start;
  Line alone(first, first + run.len);
  // The search never reports the last tube of a line, so a small one far away follows.
  const double y = alone.back().pt3D.y + 10.0 * (params.tubeGap + params.width.max);
  const double step = 0.1 * params.width.max;
  alone.push_back({0, {0.0, y, 0.0}});
  for (const double z : {2.0, 1.0, 2.0}) {
    alone.push_back({0, {0.0, alone.back().pt3D.y + step, z}});
  }
  cv::Mat labels = cv::Mat::zeros(static_cast<int>(alone.size()), 1, CV_32S);
  std::vector<SQO_featureSemiCircle> tubes;
  qo_getLineUpperSemiCircleFeature(alone.data(), labels.rows, 0, 0.25 * params.width.max,
                                   {0.0, 0.0, 0.0, params.tubeGap}, tubes, labels);
  return !tubes.empty();
}

}  // namespace

std::vector<SQO_RUN> tubesOf(const Line& line, const ArcParams& params) {
  Line raised = overPlane(line, params);
  std::vector<SQO_RUN> runs;
  ju_getLineDataIntervals(raised, {params.tubeGap, params.tubeStep, 0.0}, runs);
  std::vector<SQO_RUN> tubes;
  for (const SQO_RUN& run : runs) {
    if (isTube(raised, run, params)) {
      tubes.push_back(run);
    }
  }
  return tubes;
}

}  // namespace program
