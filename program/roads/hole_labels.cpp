#include "roads/hole_labels.h"

#include <cmath>

namespace program {

cv::Mat labelledHoles(const Line& line, int lineIdx, double width) {
  const int size = static_cast<int>(line.size());
  cv::Mat labels = cv::Mat::zeros(size, lineIdx + 1, CV_32S);
  int label = 0;
  int before = -1;
  for (int i = 0; i < size; ++i) {
    const STesk3DPosition& sample = line[static_cast<std::size_t>(i)];
    if (!isMeasured(sample)) {
      continue;
    }
    if (before >= 0 && before + 1 < i &&
        std::abs(sample.pt3D.y - line[static_cast<std::size_t>(before)].pt3D.y) <= width) {
      labels(cv::Range(before + 1, i), cv::Range(lineIdx, lineIdx + 1)) = ++label;
    }
    before = i;
  }
  return labels;
}

}  // namespace program
