#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scanline::detail {

/// What a search finds out about one entry of the index.
enum class Verdict {
  kFits,       ///< The entry is what is searched for.
  kNot,        ///< The entry does not fit.
  kNotOnLine,  ///< Nor will it fit any search for the same line.
  kNever,      ///< Nor will it fit in any later search: it leaves the index.
};

/// Where an entry of the index lies, or what is searched for.
struct LineAndY {
  int line;
  double y;
};

/**
 * Numbered places, hashed by cells of y, so that a search visits only those within reach of its own
 * y, in the order of their numbers. Its cost does not depend on how many places lie elsewhere.
 *
 * An entry that fits no search for the present line waits aside until the line changes, so that
 * many places of one line do not get into each other's way.
 */
class NearIndex {
 public:
  /// Two places can match only if their y differ by less than `reach`.
  explicit NearIndex(double reach);

  /// Adds an entry. The first one has the smallest id of all.
  void insert(int id, double y);
  /// Removes an entry. Does nothing if it has left already.
  void erase(int id);
  /// Gives an entry another place.
  void move(int id, const LineAndY& to);

  /// The smallest id that `judge(id)` finds fitting, or -1. Judges the entries within reach, and
  /// possibly others, in the order of their ids up to that one.
  template <typename Judge>
  int firstFitting(const LineAndY& at, Judge judge);

 private:
  static constexpr int kNone = -1;
  static constexpr double kSearchReach = 0.51;  // half a cell, and a margin for rounding
  static constexpr int kMostCells = 3;          // that such a search meets

  enum class State : std::uint8_t { kOut, kWaiting, kChained };
  /// Entries are linked by their indices, which are ids less the first one.
  struct Entry {
    std::int64_t cell;
    int previous;
    int next;
    State state;
  };
  /// Entries in ascending order.
  struct Chain {
    int first = kNone;
    int last = kNone;
  };

  [[nodiscard]] bool canMatch(double y) const;
  [[nodiscard]] double inCells(double y) const;
  [[nodiscard]] std::int64_t cellOf(double y) const;
  [[nodiscard]] std::size_t bucketOf(std::int64_t cell) const;
  [[nodiscard]] int withCell(int index, std::int64_t cell) const;
  void await(int index, int line);
  void chainWaiting();
  void chain(int index, int near);
  void remove(int index);
  void grow();

  double reach_;
  double cellWidth_;
  std::vector<Chain> chains_;  // by bucket
  std::size_t chained_ = 0;
  std::vector<Entry> entries_;
  int firstId_ = 0;
  std::vector<int> waiting_;  // some of them may have left
  int waitingLine_ = 0;
};

template <typename Judge>
int NearIndex::firstFitting(const LineAndY& at, Judge judge) {
  if (!canMatch(at.y)) {
    return kNone;
  }
  if (at.line != waitingLine_) {
    chainWaiting();
  }
  // A cell is two reaches wide: what is within reach lies less than half a cell away.
  const double place = inCells(at.y);
  const auto firstCell = static_cast<std::int64_t>(std::floor(place - kSearchReach));
  const auto lastCell = static_cast<std::int64_t>(std::floor(place + kSearchReach));
  const int cells = static_cast<int>(lastCell - firstCell) + 1;
  std::array<int, kMostCells> next = {kNone, kNone, kNone};
  for (int k = 0; k < cells; ++k) {
    next[k] = withCell(chains_[bucketOf(firstCell + k)].first, firstCell + k);
  }
  for (;;) {
    int best = kNone;
    for (int k = 0; k < cells; ++k) {
      if (next[k] != kNone && (best == kNone || next[k] < next[best])) {
        best = k;
      }
    }
    if (best == kNone) {
      return kNone;
    }
    const int index = next[best];
    next[best] = withCell(entries_[index].next, firstCell + best);
    const Verdict verdict = judge(index + firstId_);
    if (verdict == Verdict::kFits) {
      return index + firstId_;
    }
    if (verdict != Verdict::kNot) {
      remove(index);
    }
    if (verdict == Verdict::kNotOnLine) {
      await(index, at.line);
    }
  }
}

}  // namespace scanline::detail
