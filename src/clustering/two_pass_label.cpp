// Labels the connected regions of a binary image and measures them.
#include <algorithm>
#include <cassert>
#include <climits>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include <scanline/clustering.h>
#include "clustering/row_runs.h"
#include "records/new_image.h"

namespace {

using scanline::detail::IntegerRows;
using scanline::detail::labelType;
using scanline::detail::RowRuns;

constexpr int kFirstLabel = 2;

/// Connected runs, as trees whose root is the first run of each region. Runs are numbered in the
/// order of the scan.
class Equivalences {
 public:
  /// Reserves room for `most` runs, so that none is ever moved. Where memory is committed on first
  /// use, unused room costs only address space.
  explicit Equivalences(std::size_t most) {
    parents_.reserve(most);
  }

  [[nodiscard]] int size() const {
    return static_cast<int>(parents_.size());
  }

  /// Adds a run below another, or a root if `parent` is its own number.
  void add(int parent) {
    parents_.push_back(parent);
  }

  int root(int run) {
    // Halving the path on the way up needs neither a second walk nor a stack.
    while (parents_[run] != run) {
      parents_[run] = parents_[parents_[run]];
      run = parents_[run];
    }
    return run;
  }

  /// Merges the region of `root` with that of `run`, and returns the common root.
  int join(int root, int run) {
    const int other = this->root(run);
    const int first = std::min(root, other);
    parents_[std::max(root, other)] = first;
    return first;
  }

  /// Returns a number for each run: calls `numberOf()` for each root, in the order of the scan, and
  /// gives all runs below it the same number.
  template <typename NumberOf>
  std::vector<int> numbered(NumberOf numberOf) && {
    for (int run = 0; run < size(); ++run) {
      // A parent precedes its children, so it has its number already.
      parents_[run] = parents_[run] == run ? numberOf() : parents_[parents_[run]];
    }
    return std::move(parents_);
  }

 private:
  std::vector<int> parents_;
};

/// Adds the runs of a row, connected to those of the row above, whose numbers start at
/// `firstAbove`. `reach` is 1 if runs are also connected by corners, otherwise 0.
void linkRow(
    const RowRuns& above, int firstAbove, const RowRuns& row, int reach, Equivalences& regions) {
  const int* up = above.edges();
  int upRun = firstAbove;
  const int* edge = row.edges();
  for (int k = 0; k < row.count(); ++k, edge += 2) {
    const int begin = edge[0] - reach;
    const int end = edge[1] + reach;
    while (up[1] <= begin) {
      up += 2;
      ++upRun;
    }
    if (up[0] >= end) {
      regions.add(regions.size());
      continue;
    }
    int root = regions.root(upRun);
    while (up[2] < end) {
      up += 2;
      root = regions.join(root, ++upRun);
    }
    regions.add(root);
  }
}

Equivalences linkRuns(const cv::Mat& image, int connectivity) {
  const int reach = connectivity == 8 ? 1 : 0;
  Equivalences regions(image.total() / 2);
  IntegerRows pixels(image);
  RowRuns above(image.cols);
  RowRuns row(image.cols);
  for (int r = 1; r < image.rows - 1; ++r) {
    row.find(pixels.next(r));
    linkRow(above, regions.size() - above.count(), row, reach, regions);
    std::swap(above, row);
  }
  return regions;
}

/// Finds or adds the record of each region, in the order of their labels.
class RegionRecords {
 public:
  explicit RegionRecords(const std::vector<SQO_Region>& regions)
      : firstAdded_(static_cast<int>(regions.size())) {
    for (std::size_t i = 0; i < regions.size(); ++i) {
      earlier_[regions[i].labelID] = static_cast<int>(i);
    }
    // The first region always gets a new record, even if one with its label was passed in.
    earlier_.erase(kFirstLabel);
  }

  /// Index of the record of the next region. Those added follow those that were passed in.
  int next() {
    const int label = nextLabel_++;
    const auto found = earlier_.find(label);
    if (found != earlier_.end()) {
      return found->second;
    }
    added_.push_back({{INT_MAX, INT_MIN, INT_MAX, INT_MIN}, 0, label});
    return firstAdded_ + static_cast<int>(added_.size()) - 1;
  }

  [[nodiscard]] const std::vector<SQO_Region>& added() const {
    return added_;
  }

 private:
  int firstAdded_;
  std::vector<SQO_Region> added_;
  std::unordered_map<int, int> earlier_;
  int nextLabel_ = kFirstLabel;
};

/// Adds pixels `begin` to `end - 1` of row `r` to a region.
void measure(SQO_Region& region, int r, int begin, int end) {
  region.roi.left = std::min(region.roi.left, begin);
  region.roi.right = std::max(region.roi.right, end - 1);
  region.roi.top = std::min(region.roi.top, r);
  region.roi.bottom = std::max(region.roi.bottom, r);
  region.ptCounter += end - begin;
}

/// Labels the runs in an image of 0 and 1.
void labelRuns(const std::vector<int>& recordOfRun,
               RowRuns& row,
               std::vector<SQO_Region>& regions,
               cv::Mat& image) {
  auto record = recordOfRun.begin();
  for (int r = 1; r < image.rows - 1; ++r) {
    int* pixels = image.ptr<int>(r);
    row.find(pixels);
    const int* edge = row.edges();
    for (int k = 0; k < row.count(); ++k, edge += 2, ++record) {
      SQO_Region& region = regions[*record];
      measure(region, r, edge[0], edge[1]);
      std::fill(pixels + edge[0], pixels + edge[1], region.labelID);
    }
  }
}

/// The image for the labels: `labImg` if it has the size and the type, otherwise a new one.
cv::Mat labelImage(const cv::Mat& bwImg, const cv::Mat& labImg) {
  const int type = labelType(bwImg);
  const bool fits = !labImg.empty() && labImg.size == bwImg.size && labImg.type() == type;
  return fits ? labImg : scanline::detail::newImage(bwImg.rows, bwImg.cols, type);
}

}  // namespace

void QO_TwoPassLabel(const cv::Mat& bwImg,
                     cv::Mat& labImg,
                     std::vector<SQO_Region>& regions,
                     int connectivity) {
  assert(bwImg.empty() || bwImg.channels() == 1);
  if (bwImg.empty()) {
    labImg.release();
    return;
  }
  cv::Mat labels = labelImage(bwImg, labImg);
  if (bwImg.rows < 3 || bwImg.cols < 3) {
    bwImg.convertTo(labels, CV_32S);
    labImg = labels;
    return;
  }
  RegionRecords records(regions);
  const std::vector<int> recordOfRun =
      linkRuns(bwImg, connectivity).numbered([&] { return records.next(); });
  RowRuns row(bwImg.cols);
  regions.insert(regions.end(), records.added().begin(), records.added().end());
  // From here on nothing is allocated.
  bwImg.convertTo(labels, CV_32S);
  labelRuns(recordOfRun, row, regions, labels);
  labImg = labels;
}
