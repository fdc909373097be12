#pragma once

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scanline::detail {

/// Where an entry of the index lies, or what is searched for.
struct LineAndY {
  int line;
  double y;
};

/**
 * Numbered places, hashed by cells of y. A search visits those near its own y in the order of their
 * numbers, and its cost does not depend on how many lie elsewhere.
 *
 * Entries on the line of the present searches sleep outside the cells until the line changes, so
 * that many places on one line do not slow down each other's searches.
 */
class NearIndex {
 public:
  static constexpr int kNone = INT_MAX;

  /// Two places are near if their y differ by less than `reach`.
  explicit NearIndex(double reach)
      : reach_(reach), cellsPerY_(std::min(kReachInCells / reach, DBL_MAX)), heads_(16, kNone) {}

  /// Number of entries.
  [[nodiscard]] int count() const {
    return count_;
  }

  /// The line last recorded for an id.
  [[nodiscard]] int lineOf(int id) const {
    return entries_[id].line;
  }

  /// Records a place, as an entry if `isEntry`. The id is the next one, from 0 on, or was
  /// just taken.
  void put(int id, const LineAndY& place, bool isEntry = true);

  /// Removes an entry. Does nothing if there is none.
  void erase(int id);

  /// Removes the entries that `test(id)`.
  template <typename Test>
  void eraseIf(Test test) {
    putAllToSleep();
    for (const int id : asleep_) {
      if (entries_[id].isIn && test(id)) {
        erase(id);
      }
    }
  }

  /// Visits the entries near `at`, other than those on its line, in the order of their ids up to
  /// the first that `fits(id)`. Takes this one out and returns its id, or returns kNone.
  template <typename Fits>
  int takeFirst(const LineAndY& at, Fits fits);

 private:
  struct Entry {
    double y = 0.0;
    int line = 0;
    int next = kNone;   // in its chain
    bool isIn = false;  // if not, a chain or the sleepers may still hold it
  };

  static constexpr double kReachInCells = 0.25;
  static constexpr double kSearchReach = 0.26;  // the same with a margin for rounding
  /// Places beyond this many cells share the outermost cell. Up to it a place is exact to far
  /// better than the margin of a search.
  static constexpr double kFarthestCell = 1099511627776.0;

  [[nodiscard]] bool canMatch(double y) const;
  [[nodiscard]] double inCells(double y) const;
  [[nodiscard]] int* headOf(double place);
  void prepare(int line);
  void putAllToSleep();

  double reach_;
  double cellsPerY_;
  int count_ = 0;
  std::vector<Entry> entries_;  // by id
  std::vector<int> heads_;      // chains in ascending order, one for each hash of a cell
  std::vector<int> asleep_;     // entries on `line_`, or on any line if `isMixed_`
  int line_ = 0;
  bool isMixed_ = false;
};

/// Without a reach, and for a y that is not finite, no difference is less than the reach.
inline bool NearIndex::canMatch(double y) const {
  return reach_ > 0.0 && std::isfinite(y);
}

/// Place of a y that can match, in cells from the outermost one.
inline double NearIndex::inCells(double y) const {
  return std::clamp(y * cellsPerY_, -kFarthestCell, kFarthestCell) + kFarthestCell;
}

/// The chain that holds the entries of a place's cell.
inline int* NearIndex::headOf(double place) {
  const auto cell = static_cast<std::uint64_t>(static_cast<std::int64_t>(place));
  return &heads_[(cell * 0x9E3779B97F4A7C15U >> 32U) & (heads_.size() - 1)];
}

template <typename Fits>
int NearIndex::takeFirst(const LineAndY& at, Fits fits) {
  if (!canMatch(at.y)) {
    return kNone;
  }
  if (isMixed_ || at.line != line_) {
    prepare(at.line);
  }
  const double place = inCells(at.y);
  // The links to the next entry of one chain and the other, merged by their ids.
  int* one = headOf(place - kSearchReach);
  int* other = headOf(place + kSearchReach);  // at most the next cell
  int end = kNone;
  other = other == one ? &end : other;
  for (;;) {
    int*& link = *one < *other ? one : other;
    const int id = *link;
    if (id == kNone) {
      return kNone;
    }
    Entry& entry = entries_[id];
    if (!entry.isIn) {
      *link = entry.next;
    } else if (entry.line == at.line) {
      *link = entry.next;
      asleep_.push_back(id);
    } else if (reach_ > std::abs(at.y - entry.y) && fits(id)) {
      *link = entry.next;
      erase(id);
      return id;
    } else {
      link = &entry.next;
    }
  }
}

}  // namespace scanline::detail
