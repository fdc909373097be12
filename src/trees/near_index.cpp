#include "trees/near_index.h"

#include <cmath>

namespace scanline::detail {
namespace {

/// Places beyond this many cells share the outermost cell. Below it a place is exact to far better
/// than the margin of a search.
constexpr double kFarthestCell = 1099511627776.0;

}  // namespace

NearIndex::NearIndex(double reach) : reach_(reach), cellWidth_(2.0 * reach), chains_(16) {}

/// Without a reach, and for a y that is not finite, no difference is less than the reach.
bool NearIndex::canMatch(double y) const {
  return reach_ > 0.0 && std::isfinite(y);
}

/// Only for a y that can match, so the quotient is a number.
double NearIndex::inCells(double y) const {
  return std::clamp(y / cellWidth_, -kFarthestCell, kFarthestCell);
}

std::int64_t NearIndex::cellOf(double y) const {
  return static_cast<std::int64_t>(std::floor(inCells(y)));
}

std::size_t NearIndex::bucketOf(std::int64_t cell) const {
  const std::uint64_t mixed = static_cast<std::uint64_t>(cell) * 0x9E3779B97F4A7C15ULL;
  return static_cast<std::size_t>(mixed >> 32U) & (chains_.size() - 1);
}

/// The first entry of a chain, from `index` on, that lies in a cell.
int NearIndex::withCell(int index, std::int64_t cell) const {
  while (index != kNone && entries_[index].cell != cell) {
    index = entries_[index].next;
  }
  return index;
}

void NearIndex::insert(int id, double y) {
  if (!canMatch(y)) {
    return;
  }
  firstId_ = entries_.empty() ? id : firstId_;
  const int index = id - firstId_;
  entries_.resize(static_cast<std::size_t>(index) + 1, {0, kNone, kNone, State::kOut});
  entries_[index].cell = cellOf(y);
  chain(index, kNone);
  if (chained_ > chains_.size()) {
    grow();
  }
}

void NearIndex::erase(int id) {
  const int index = id - firstId_;
  if (index >= 0 && index < static_cast<int>(entries_.size())) {
    remove(index);
  }
}

void NearIndex::move(int id, const LineAndY& to) {
  const int index = id - firstId_;
  const bool matches = canMatch(to.y);
  const std::int64_t cell = matches ? cellOf(to.y) : 0;
  if (matches && entries_[index].state == State::kChained && entries_[index].cell == cell) {
    return;
  }
  remove(index);
  if (matches) {
    entries_[index].cell = cell;
    await(index, to.line);
  }
}

void NearIndex::await(int index, int line) {
  if (line != waitingLine_) {
    chainWaiting();
    waitingLine_ = line;
  }
  waiting_.push_back(index);
  entries_[index].state = State::kWaiting;
}

/// Chains the entries that wait. Each looks for its place from the one before it, since they often
/// come in ascending order and close together.
void NearIndex::chainWaiting() {
  int before = kNone;
  for (const int index : waiting_) {
    if (entries_[index].state == State::kWaiting) {
      chain(index, before);
      before = index;
    }
  }
  waiting_.clear();
  if (chained_ > chains_.size()) {
    grow();
  }
}

/// Puts an entry into the chain of its bucket. The search for its place begins at `near` if that
/// is in the same chain, else at the end.
void NearIndex::chain(int index, int near) {
  Entry& entry = entries_[index];
  const std::size_t bucket = bucketOf(entry.cell);
  Chain& chain = chains_[bucket];
  int previous = chain.last;
  if (near != kNone && bucketOf(entries_[near].cell) == bucket) {
    previous = near;
    while (entries_[previous].next != kNone && entries_[previous].next < index) {
      previous = entries_[previous].next;
    }
  }
  while (previous != kNone && previous > index) {
    previous = entries_[previous].previous;
  }
  entry.previous = previous;
  entry.next = previous == kNone ? chain.first : entries_[previous].next;
  (entry.previous == kNone ? chain.first : entries_[entry.previous].next) = index;
  (entry.next == kNone ? chain.last : entries_[entry.next].previous) = index;
  entry.state = State::kChained;
  ++chained_;
}

void NearIndex::remove(int index) {
  Entry& entry = entries_[index];
  if (entry.state == State::kChained) {
    Chain& chain = chains_[bucketOf(entry.cell)];
    (entry.previous == kNone ? chain.first : entries_[entry.previous].next) = entry.next;
    (entry.next == kNone ? chain.last : entries_[entry.next].previous) = entry.previous;
    --chained_;
  }
  entry.state = State::kOut;
}

void NearIndex::grow() {
  chains_.assign(chains_.size() * 4, {});
  chained_ = 0;
  for (int index = 0; index < static_cast<int>(entries_.size()); ++index) {
    if (entries_[index].state == State::kChained) {
      chain(index, kNone);
    }
  }
}

}  // namespace scanline::detail
