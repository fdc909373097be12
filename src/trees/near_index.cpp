#include "trees/near_index.h"

#include <algorithm>

namespace scanline::detail {

void NearIndex::put(int id, const LineAndY& place, bool isEntry) {
  if (id == static_cast<int>(entries_.size())) {
    entries_.emplace_back();
  }
  isEntry = isEntry && canMatch(place.y);
  if (isEntry) {
    unchained_.push_back(id);
    isMixed_ = isMixed_ || place.line != line_;
    ++count_;
  }
  entries_[id] = {place.y, place.line, kNone, isEntry};
}

void NearIndex::erase(int id) {
  count_ -= entries_[id].isEntry ? 1 : 0;
  entries_[id].isEntry = false;
}

/// Prepares for searches from a line: adds the entries without a chain to their chains. They are
/// added in descending order of ids, so each is usually close to the front of its chain.
void NearIndex::prepare(int line) {
  if (count_ > static_cast<int>(heads_.size())) {
    unchainAll();
    heads_.assign(heads_.size() * 4, kNone);
  }
  line_ = line;
  isMixed_ = false;
  const auto unsorted =
      std::is_sorted_until(unchained_.begin(), unchained_.end());  // usually few ids
  std::sort(unsorted, unchained_.end());
  std::inplace_merge(unchained_.begin(), unsorted, unchained_.end());
  for (auto id = unchained_.rbegin(); id != unchained_.rend(); ++id) {
    Entry& entry = entries_[*id];
    if (entry.isEntry) {
      int* link = headOf(inCells(entry.y));
      while (*link < *id) {
        link = &entries_[*link].next;
      }
      entry.next = *link;
      *link = *id;
    }
  }
  unchained_.clear();
}

void NearIndex::unchainAll() {
  isMixed_ = true;
  for (int& head : heads_) {
    for (; head != kNone; head = entries_[head].next) {
      unchained_.push_back(head);
    }
  }
}

}  // namespace scanline::detail
