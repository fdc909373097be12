#pragma once

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scanline::detail {

/// The place of an entry of the index, or of a search.
struct LineAndY {
  int line;
  double y;
};

/**
 * Places with ids, hashed by cells of y. A search visits the places near its own y in ascending
 * order of their ids. Its cost does not depend on how many places lie elsewhere.
 *
 * The entries of a cell are in one chain, which cells with the same hash share. Entries on the line
 * that is being searched from are kept out of the chains until the line changes, so that many
 * places on one line do not slow down each other's searches.
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

  /// Records the place of an id, as an entry if `isEntry`. The id is the next unused one, or that
  /// of an entry that was just taken.
  void put(int id, const LineAndY& place, bool isEntry = true);

  /// Removes the entry of an id, if there is one.
  void erase(int id);

  /// Removes the entries for which `test(id)`.
  template <typename Test>
  void eraseIf(Test test) {
    unchainAll();
    for (const int id : unchained_) {
      if (entries_[id].isEntry && test(id)) {
        erase(id);
      }
    }
  }

  /// Visits the entries near `at` that are on other lines, in ascending order of their ids, up to
  /// the first for which `fits(id)`. Removes this entry and returns its id, or returns kNone.
  template <typename Fits>
  int takeFirst(const LineAndY& at, Fits fits);

 private:
  struct Entry {
    double y = 0.0;
    int line = 0;
    int next = kNone;      // in its chain
    bool isEntry = false;  // if not, a chain or `unchained_` may still hold its id
  };

  static constexpr double kReachInCells = 0.25;
  static constexpr double kSearchReach = 0.26;  // the same with a margin for rounding
  /// Places farther out than this many cells share the outermost cell. Closer in, the rounding of a
  /// place is far below the margin of a search.
  static constexpr double kFarthestCell = 1099511627776.0;

  [[nodiscard]] bool canMatch(double y) const;
  [[nodiscard]] double inCells(double y) const;
  [[nodiscard]] int* headOf(double place);
  void prepare(int line);
  void unchainAll();

  double reach_;
  double cellsPerY_;
  int count_ = 0;
  std::vector<Entry> entries_;  // by id
  std::vector<int> heads_;      // chains in ascending order of ids, one for each hash of a cell
  std::vector<int> unchained_;  // entries in no chain: on `line_`, or on any line if `isMixed_`
  int line_ = 0;
  bool isMixed_ = false;
};

/// Whether any difference from this y can be less than the reach.
inline bool NearIndex::canMatch(double y) const {
  return reach_ > 0.0 && std::isfinite(y);
}

/// Place of a y that can match, in cells, counted from the outermost one.
inline double NearIndex::inCells(double y) const {
  return std::clamp(y * cellsPerY_, -kFarthestCell, kFarthestCell) + kFarthestCell;
}

/// The chain of the cell at a place.
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
  // The links to the next entries of the two chains, which are merged by ids.
  int* one = headOf(place - kSearchReach);
  int* other = headOf(place + kSearchReach);  // the same cell or the next one
  int end = kNone;
  other = other == one ? &end : other;
  for (;;) {
    int*& link = *one < *other ? one : other;
    const int id = *link;
    if (id == kNone) {
      return kNone;
    }
    Entry& entry = entries_[id];
    if (!entry.isEntry) {
      *link = entry.next;
    } else if (entry.line == at.line) {
      *link = entry.next;
      unchained_.push_back(id);
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
