#include "trees/near_index.h"

#include <algorithm>

namespace scanline::detail {
namespace {

/// Places beyond this many cells share the outermost cell. Below it a place is exact to far better
/// than the margin of a search.
constexpr double kFarthestCell = 1099511627776.0;

}  // namespace

NearIndex::NearIndex(double reach) : cellWidth_(2.0 * reach), buckets_(16, kNone) {}

double NearIndex::inCells(double y) const {
  const double place = y / cellWidth_;
  if (std::isnan(place)) {
    return 0.0;  // matches nothing, wherever it is put
  }
  return std::clamp(place, -kFarthestCell, kFarthestCell);
}

std::int64_t NearIndex::cellOf(double y) const {
  return static_cast<std::int64_t>(std::floor(inCells(y)));
}

std::size_t NearIndex::bucketOf(std::int64_t cell) const {
  const std::uint64_t mixed = static_cast<std::uint64_t>(cell) * 0x9E3779B97F4A7C15ULL;
  return static_cast<std::size_t>(mixed >> 32U) & (buckets_.size() - 1);
}

void NearIndex::link(int entry) {
  int& first = buckets_[bucketOf(entries_[entry].cell)];
  entries_[entry].next = first;
  first = entry;
}

void NearIndex::unlink(std::size_t bucket, int previous, int entry) {
  (previous == kNone ? buckets_[bucket] : entries_[previous].next) = entries_[entry].next;
  free_.push_back(entry);
}

void NearIndex::insert(int id, double y) {
  const std::int64_t cell = cellOf(y);
  int entry = static_cast<int>(entries_.size());
  if (free_.empty()) {
    entries_.push_back({});
  } else {
    entry = free_.back();
    free_.pop_back();
  }
  entries_[entry] = {id, kNone, cell};
  link(entry);
  if (entries_.size() > buckets_.size()) {
    grow();
  }
}

void NearIndex::erase(int id, double y) {
  const std::size_t bucket = bucketOf(cellOf(y));
  int previous = kNone;
  for (int entry = buckets_[bucket]; entry != kNone; entry = entries_[entry].next) {
    if (entries_[entry].id == id) {
      unlink(bucket, previous, entry);
      return;
    }
    previous = entry;
  }
}

void NearIndex::move(int id, double from, double to) {
  if (cellOf(from) != cellOf(to)) {
    erase(id, from);
    insert(id, to);
  }
}

void NearIndex::grow() {
  std::vector<int> chained;
  for (const int first : buckets_) {
    for (int entry = first; entry != kNone; entry = entries_[entry].next) {
      chained.push_back(entry);
    }
  }
  buckets_.assign(buckets_.size() * 4, kNone);
  for (const int entry : chained) {
    link(entry);
  }
}

}  // namespace scanline::detail
