#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace scanline::detail {

/// What a search says of one entry of the index.
enum class Verdict {
  kFits,   ///< The entry is what is searched for.
  kNot,    ///< Not this time.
  kNever,  ///< Neither now nor in any later search: the entry leaves the index.
};

/**
 * Numbered positions on the y axis, hashed by cells, so that a search visits only entries within
 * reach of its own y. What it costs does not depend on how many entries lie elsewhere.
 */
class NearIndex {
 public:
  /// Two positions can match only if their y differ by less than `reach`.
  explicit NearIndex(double reach);

  void insert(int id, double y);
  /// Removes an entry, given with the y it was inserted at. One that has left already is passed
  /// over.
  void erase(int id, double y);
  void move(int id, double from, double to);

  /// The smallest id that `judge(id)` finds fitting, or -1. Sees every entry whose y is within
  /// reach, and possibly others.
  template <typename Judge>
  int firstFitting(double y, Judge judge);

  /// Gives every entry the number `newId(id)`.
  template <typename Renumber>
  void renumber(Renumber newId);

 private:
  static constexpr int kNone = -1;
  static constexpr double kSearchReach = 0.51;  // half a cell, and a margin for rounding

  struct Entry {
    int id;
    int next;  // entry of the same chain, or kNone
    std::int64_t cell;
  };

  [[nodiscard]] double inCells(double y) const;
  [[nodiscard]] std::int64_t cellOf(double y) const;
  [[nodiscard]] std::size_t bucketOf(std::int64_t cell) const;
  void link(int entry);
  void unlink(std::size_t bucket, int previous, int entry);
  void grow();

  double cellWidth_;
  std::vector<int> buckets_;  // first entry of each chain, or kNone
  std::vector<Entry> entries_;
  std::vector<int> free_;  // entries that are in no chain
};

template <typename Judge>
int NearIndex::firstFitting(double y, Judge judge) {
  int best = kNone;
  // A cell is two reaches wide: what is within reach lies less than half a cell away.
  const double place = inCells(y);
  const auto firstCell = static_cast<std::int64_t>(std::floor(place - kSearchReach));
  const auto lastCell = static_cast<std::int64_t>(std::floor(place + kSearchReach));
  for (std::int64_t cell = firstCell; cell <= lastCell; ++cell) {
    const std::size_t bucket = bucketOf(cell);
    int previous = kNone;
    for (int entry = buckets_[bucket]; entry != kNone;) {
      const int next = entries_[entry].next;
      const int id = entries_[entry].id;
      const bool worse = best != kNone && id > best;
      const Verdict verdict = worse || entries_[entry].cell != cell ? Verdict::kNot : judge(id);
      if (verdict == Verdict::kFits) {
        best = id;
      }
      if (verdict == Verdict::kNever) {
        unlink(bucket, previous, entry);
      } else {
        previous = entry;
      }
      entry = next;
    }
  }
  return best;
}

template <typename Renumber>
void NearIndex::renumber(Renumber newId) {
  for (Entry& entry : entries_) {
    entry.id = newId(entry.id);
  }
}

}  // namespace scanline::detail
