#include "roads/split_contacts.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <opencv2/imgproc.hpp>

namespace program {
namespace {

/// Half the width of what is thin for a region, in pixels.
int thinFor(const cv::Mat& region) {
  constexpr double kShareOfHalfWidth = 0.15;
  double halfWidth = 0.0;
  cv::Mat distances;
  cv::distanceTransform(region, distances, cv::DIST_L2, cv::DIST_MASK_3);
  cv::minMaxLoc(distances, nullptr, &halfWidth);
  return std::max(static_cast<int>(std::lround(kShareOfHalfWidth * halfWidth)), 1);
}

/// What is too thin to hold a disc of some radius. A pixel around the discs still belongs to them,
/// so that corners stay.
cv::Mat thinPiecesOf(const cv::Mat& region, int radius) {
  const auto disc = [](int r) {
    return cv::getStructuringElement(cv::MORPH_ELLIPSE, {2 * r + 1, 2 * r + 1});
  };
  // Nothing lies beyond the border of the crop.
  cv::Mat thick;
  cv::erode(region, thick, disc(radius), {-1, -1}, 1, cv::BORDER_CONSTANT, cv::Scalar(0));
  cv::dilate(thick, thick, disc(radius + 1));
  return region & ~thick;
}

/// The other region that touches most of a piece; 0 if there is none.
int mainNeighbour(const cv::Mat& labels, const cv::Mat& piece, int own) {
  cv::Mat around;
  cv::dilate(piece, around, cv::Mat::ones(3, 3, CV_8U));
  std::map<int, int> contacts;
  for (int row = 0; row < labels.rows; ++row) {
    for (int col = 0; col < labels.cols; ++col) {
      const int label = labels.at<int>(row, col);
      if (around.at<uchar>(row, col) != 0 && label > 0 && label != own) {
        ++contacts[label];
      }
    }
  }
  const auto most = std::max_element(contacts.begin(), contacts.end(),
                                     [](auto& a, auto& b) { return a.second < b.second; });
  return most == contacts.end() ? 0 : most->first;
}

/// Gives the thin pieces of a region that touch another one to that.
void giveAwayThinPieces(cv::Mat labels, int own) {
  const cv::Mat region = labels == own;
  cv::Mat pieces;
  cv::Mat boxes;
  cv::Mat centres;
  const int count = cv::connectedComponentsWithStats(thinPiecesOf(region, thinFor(region)), pieces,
                                                     boxes, centres, 8, CV_32S);
  const cv::Rect all({0, 0}, labels.size());
  for (int i = 1; i < count; ++i) {
    const int* stat = boxes.ptr<int>(i);
    const cv::Rect box = cv::Rect(stat[cv::CC_STAT_LEFT] - 1, stat[cv::CC_STAT_TOP] - 1,
                                  stat[cv::CC_STAT_WIDTH] + 2, stat[cv::CC_STAT_HEIGHT] + 2) &
                         all;
    cv::Mat part = labels(box);
    const cv::Mat piece = pieces(box) == i;
    const int neighbour = mainNeighbour(part, piece, own);
    if (neighbour > 0) {
      part.setTo(neighbour, piece);
    }
  }
}

}  // namespace

std::vector<cv::Rect> boxesOf(const cv::Mat& labels, int count) {
  std::vector<cv::Rect> boxes(static_cast<std::size_t>(count) + 1);
  for (int row = 0; row < labels.rows; ++row) {
    const int* label = labels.ptr<int>(row);
    for (int col = 0; col < labels.cols; ++col) {
      if (label[col] > 0) {
        boxes[static_cast<std::size_t>(label[col])] |= cv::Rect(col, row, 1, 1);
      }
    }
  }
  const cv::Rect image({0, 0}, labels.size());
  for (cv::Rect& box : boxes) {
    box = box.empty() ? box : (box + cv::Size(2, 2) - cv::Point(1, 1)) & image;
  }
  return boxes;
}

void straightenContacts(cv::Mat& labels, int count) {
  const std::vector<cv::Rect> boxes = boxesOf(labels, count);
  for (int label = 1; label <= count; ++label) {
    const cv::Rect& box = boxes[static_cast<std::size_t>(label)];
    if (!box.empty()) {
      giveAwayThinPieces(labels(box), label);
    }
  }
}

}  // namespace program
