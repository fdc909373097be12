#include "trees/near_index.h"

#include <algorithm>

namespace scanline::detail {

void NearIndex::put(int id, const LineAndY& place, bool isEntry) {
  if (id == static_cast<int>(entries_.size())) {
    entries_.emplace_back();
  }
  const bool isIn = isEntry && canMatch(place.y);
  if (isIn) {
    asleep_.push_back(id);
    isMixed_ = isMixed_ || place.line != line_;
    ++count_;
  }
  entries_[id] = {place.y, place.line, kNone, isIn};
}

void NearIndex::erase(int id) {
  count_ -= entries_[id].isIn ? 1 : 0;
  entries_[id].isIn = false;
}

/// Prepares for searches on a line: chains the sleepers. Each goes to the front of its chain, or
/// close to it, since the greatest come first.
void NearIndex::prepare(int line) {
  if (count_ > static_cast<int>(heads_.size())) {
    putAllToSleep();
    heads_.assign(heads_.size() * 4, kNone);
  }
  line_ = line;
  isMixed_ = false;
  const auto unsorted = std::is_sorted_until(asleep_.begin(), asleep_.end());  // seldom many
  std::sort(unsorted, asleep_.end());
  std::inplace_merge(asleep_.begin(), unsorted, asleep_.end());
  for (auto id = asleep_.rbegin(); id != asleep_.rend(); ++id) {
    Entry& entry = entries_[*id];
    if (entry.isIn) {
      int* link = headOf(inCells(entry.y));
      while (*link < *id) {
        link = &entries_[*link].next;
      }
      entry.next = *link;
      *link = *id;
    }
  }
  asleep_.clear();
}

void NearIndex::putAllToSleep() {
  isMixed_ = true;
  for (int& head : heads_) {
    for (; head != kNone; head = entries_[head].next) {
      asleep_.push_back(head);
    }
  }
}

}  // namespace scanline::detail
