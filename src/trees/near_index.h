#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <set>
#include <vector>

namespace scanline::detail {

/// What a search finds out about one entry of the index.
enum class Verdict {
  kFits,   ///< The entry is what is searched for.
  kNot,    ///< The entry does not fit.
  kNever,  ///< Nor will it fit in any later search: it leaves the index.
};

/// Where an entry of the index lies, or what is searched for.
struct LineAndY {
  int line;
  double y;
};

/**
 * Numbered places, ordered by cells of y, in each cell by lines, and on each line by number. A
 * search visits only places of other lines within reach of its own y, in the order of their
 * numbers. Its cost does not depend on how many places lie elsewhere, or on its own line.
 */
class NearIndex {
 public:
  /// Two places can match only if their y differ by less than `reach` and their lines differ.
  explicit NearIndex(double reach);

  void insert(int id, const LineAndY& at);
  /// Removes an entry, given with the place it was inserted at. Does nothing if it has left
  /// already.
  void erase(int id, const LineAndY& at);
  /// Moves an entry that a search has just found. Allocates nothing.
  void move(int id, const LineAndY& from, const LineAndY& to);

  /// The smallest id that `judge(id)` finds fitting, or -1. Judges the entries within reach, and
  /// possibly others, in the order of their ids up to that one.
  template <typename Judge>
  int firstFitting(const LineAndY& at, Judge judge);

 private:
  struct Entry {
    std::int64_t cell;
    int line;
    int id;

    bool operator<(const Entry& other) const;
  };
  using Entries = std::set<Entry>;
  struct Head {
    Entries* entries;
    Entries::iterator next;
  };

  static constexpr int kNoId = -1;
  static constexpr int kLowest = std::numeric_limits<int>::min();
  static constexpr int kHighest = std::numeric_limits<int>::max();

  [[nodiscard]] bool canMatch(double y) const;
  [[nodiscard]] std::int64_t cellOf(double y) const;
  Entries& bucketOf(std::int64_t cell);
  void grow();
  void findHeads(const LineAndY& at);

  double reach_;
  double cellWidth_;
  std::vector<Entries> buckets_;  // each holds the entries of some of the cells
  std::size_t count_ = 0;
  std::vector<Head> heads_;  // of a search: the next entry of each line in each cell
};

template <typename Judge>
int NearIndex::firstFitting(const LineAndY& at, Judge judge) {
  const auto isLater = [](const Head& a, const Head& b) { return b.next->id < a.next->id; };
  findHeads(at);
  std::make_heap(heads_.begin(), heads_.end(), isLater);
  while (!heads_.empty()) {
    std::pop_heap(heads_.begin(), heads_.end(), isLater);
    const auto [entries, entry] = heads_.back();
    const auto [cell, line, id] = *entry;
    const Verdict verdict = judge(id);
    if (verdict == Verdict::kFits) {
      return id;
    }
    auto next = std::next(entry);
    if (verdict == Verdict::kNever) {
      entries->erase(entry);
      --count_;
    }
    if (next != entries->end() && next->cell == cell && next->line == line) {
      heads_.back().next = next;
      std::push_heap(heads_.begin(), heads_.end(), isLater);
    } else {
      heads_.pop_back();
    }
  }
  return kNoId;
}

}  // namespace scanline::detail
