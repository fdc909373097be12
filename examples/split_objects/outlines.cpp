#include "outlines.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include <scanline/feature_records.h>

namespace examples {
namespace {

// The flags of a sample hold one type for either direction; the library reserves the edge labels
// from 5 to 8.
constexpr int kCrossTypeShift = 4;
constexpr int kFirstEdgeLabel = 9;

/// The edge of an object. Where a higher neighbour covers its rim that is another edge.
int edgeLabelOf(int objectLabel, bool isUnder) {
  return kFirstEdgeLabel + 2 * (objectLabel - 1) + (isUnder ? 1 : 0);
}

int objectOf(int edgeLabel) {
  return (edgeLabel - kFirstEdgeLabel) / 2 + 1;
}

/// The samples of a scan in one of its two directions.
class Direction {
 public:
  Direction(Scan& scan, const cv::Mat& labels, cv::Mat& edges, bool isAcross)
      : scan_(scan), labels_(labels), edges_(edges), isAcross_(isAcross) {}

  [[nodiscard]] int tracks() const {
    return isAcross_ ? labels_.rows : labels_.cols;
  }
  [[nodiscard]] int length() const {
    return isAcross_ ? labels_.cols : labels_.rows;
  }
  [[nodiscard]] STesk3DPosition& sample(int track, int i) const {
    const auto line = static_cast<std::size_t>(isAcross_ ? i : track);
    return scan_[line][static_cast<std::size_t>(isAcross_ ? track : i)];
  }
  [[nodiscard]] int label(int track, int i) const {
    return isAcross_ ? labels_.at<int>(track, i) : labels_.at<int>(i, track);
  }
  /// Distance of two samples in the direction.
  [[nodiscard]] double distance(int track, int i, int k) const {
    const STesk3DPoint& a = sample(track, i).pt3D;
    const STesk3DPoint& b = sample(track, k).pt3D;
    return std::abs(isAcross_ ? a.x - b.x : a.y - b.y);
  }
  void setEnd(int track, int i, int type, bool isUnder) const {
    sample(track, i).nPointIdx |= isAcross_ ? type << kCrossTypeShift : type;
    int& edge = (isAcross_ ? edges_.at<cv::Vec4i>(track, i) : edges_.at<cv::Vec4i>(i, track))[0];
    edge = std::max(edge, edgeLabelOf(label(track, i), isUnder));
  }

 private:
  Scan& scan_;
  const cv::Mat& labels_;
  cv::Mat& edges_;
  bool isAcross_;
};

/// Finds the ends of objects in one direction.
class EndFinder {
 public:
  EndFinder(const Direction& direction, double gap, double step, int reach)
      : direction_(direction), gap_(gap), step_(step), reach_(reach) {}

  void markEnds() const {
    for (int track = 0; track < direction_.tracks(); ++track) {
      for (int i = 0; i < direction_.length(); ++i) {
        if (direction_.label(track, i) > 0) {
          markEnd(track, i);
        }
      }
    }
  }

 private:
  /// Gives a sample its type if the object ends there towards lower or higher index. Seen with the
  /// index, the height rises onto an object and falls behind it, unless a higher one is beside it.
  void markEnd(int track, int i) const {
    if (endsTowards(track, i, -1)) {
      const bool isUnder = isUnderNeighbour(track, i, -1);
      direction_.setEnd(track, i, isUnder ? FEATURE_JUMP_FALL : FEATURE_JUMP_RISE, isUnder);
    } else if (endsTowards(track, i, 1)) {
      const bool isUnder = isUnderNeighbour(track, i, 1);
      direction_.setEnd(track, i, isUnder ? FEATURE_JUMP_RISE : FEATURE_JUMP_FALL, isUnder);
    }
  }

  [[nodiscard]] bool isInside(int i) const {
    return i >= 0 && i < direction_.length();
  }

  /// Whether the next measured sample is of no or another object, or too far away. Single samples
  /// without a measurement end nothing.
  [[nodiscard]] bool endsTowards(int track, int i, int way) const {
    for (int k = i + way; isInside(k) && direction_.distance(track, i, k) < gap_; k += way) {
      if (isMeasured(direction_.sample(track, k))) {
        return direction_.label(track, k) != direction_.label(track, i);
      }
    }
    return true;
  }

  /// Whether what follows is nearer to the scanner than the object. The line between two regions
  /// is a little beside the step, so this is looked for at a distance.
  [[nodiscard]] bool isUnderNeighbour(int track, int i, int way) const {
    const int beyond = i + way * reach_;
    const int within = i - way * reach_;
    if (!isInside(beyond) || !isMeasured(direction_.sample(track, beyond))) {
      return false;
    }
    const bool hasWithin = isInside(within) && isMeasured(direction_.sample(track, within));
    const double own = direction_.sample(track, hasWithin ? within : i).pt3D.z;
    return own - direction_.sample(track, beyond).pt3D.z > step_;
  }

  const Direction& direction_;
  double gap_;
  double step_;
  int reach_;
};

void clearFlags(Scan& scan) {
  for (Line& line : scan) {
    for (STesk3DPosition& sample : line) {
      sample.nPointIdx = 0;
    }
  }
}

/// An image without edges in which all samples of objects may carry a peak.
cv::Mat imageForEdges(const cv::Mat& labels) {
  cv::Mat edges(labels.size(), CV_32SC4, cv::Scalar::all(0));
  edges.setTo(cv::Scalar(0, 0, 0, 1), labels > 0);
  return edges;
}

/// What the walks to one side met of an object's own edges.
std::vector<SQO_contourPtInfo> pointsOf(const std::vector<SQO_lineConotours>& walks, int object) {
  std::vector<SQO_contourPtInfo> points;
  for (const SQO_lineConotours& walk : walks) {
    std::copy_if(walk.contourPts.begin(), walk.contourPts.end(), std::back_inserter(points),
                 [object](const SQO_contourPtInfo& pt) { return objectOf(pt.edgeId) == object; });
  }
  return points;
}

}  // namespace

cv::Mat labelSamples(const Scan& scan, const PixelGrid& grid, const Regions& regions) {
  const int samples = static_cast<int>(scan.front().size());
  cv::Mat labels(samples, static_cast<int>(scan.size()), CV_32S, cv::Scalar(0));
  for (int col = 0; col < labels.cols; ++col) {
    const Line& line = scan[static_cast<std::size_t>(col)];
    for (int row = 0; row < labels.rows; ++row) {
      const STesk3DPosition& sample = line[static_cast<std::size_t>(row)];
      if (isMeasured(sample)) {
        labels.at<int>(row, col) = std::max(regions.labels.at<int>(grid.pixelOf(sample.pt3D)), 0);
      }
    }
  }
  return labels;
}

cv::Mat markEdges(Scan& scan, const cv::Mat& labels, const EdgeParams& params) {
  clearFlags(scan);
  cv::Mat edges = imageForEdges(labels);
  const Direction along(scan, labels, edges, false);
  const Direction across(scan, labels, edges, true);
  EndFinder(along, params.gap, params.step, params.reach.width).markEnds();
  EndFinder(across, params.gap, params.step, params.reach.height).markEnds();
  return edges;
}

Outline findOutline(std::vector<STesk3DLaserLine>& lines,
                    cv::Mat& edges,
                    const SQO_2DValueI& middle,
                    double reach) {
  // Half of the peak's value comes off the width, and what remains is how far the walks go.
  const SQO_bagParam bag = {reach + 0.5 * middle.valueD, 0.0};
  const SQO_treeGrowParam notRead{};
  constexpr bool kNoMarks = false;
  std::array<std::vector<SQO_lineConotours>, kSides> walks;
  std::array<int, kSides> maxEdges{};
  qo_peakXYScan(lines.data(), static_cast<int>(lines.size()), edges, middle, notRead, bag, kNoMarks,
                walks[kLowY], walks[kHighY], walks[kLowX], walks[kHighX], &maxEdges[kLowY],
                &maxEdges[kHighY], &maxEdges[kLowX], &maxEdges[kHighX]);
  Outline outline{};
  for (std::size_t side = 0; side < kSides; ++side) {
    std::vector<SQO_contourPtInfo> points = pointsOf(walks[side], middle.value);
    // No edge of the object is farther away than this, so only short ones are dropped.
    const double anyDistance = reach;
    int isFacing = 0;
    qo_contourPostProc(points, maxEdges[side], anyDistance, outline.points[side], middle.value,
                       &isFacing);
    outline.isFree[side] = isFacing == 1;
  }
  return outline;
}

}  // namespace examples
