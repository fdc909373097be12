#include "trees/near_index.h"

#include <cmath>
#include <tuple>

namespace scanline::detail {

/// Places beyond this many cells share the outermost cell.
constexpr double kFarthestCell = 4503599627370496.0;

// With cells two reaches wide, what is within reach lies in two or three cells. The width stays
// finite, so that a place in cells is a number even for an infinite y.
NearIndex::NearIndex(double reach)
    : reach_(reach),
      cellWidth_(std::min(2.0 * reach, std::numeric_limits<double>::max())),
      buckets_(16) {}

bool NearIndex::Entry::operator<(const Entry& other) const {
  return std::tie(cell, line, id) < std::tie(other.cell, other.line, other.id);
}

/// Without a reach, and for a y that is not finite, no difference is less than the reach.
bool NearIndex::canMatch(double y) const {
  return reach_ > 0.0 && std::isfinite(y);
}

/// Grows with y, since quotients round monotonically.
std::int64_t NearIndex::cellOf(double y) const {
  constexpr double kMax = std::numeric_limits<double>::max();
  const double place = std::clamp(y, -kMax, kMax) / cellWidth_;
  return static_cast<std::int64_t>(std::floor(std::clamp(place, -kFarthestCell, kFarthestCell)));
}

NearIndex::Entries& NearIndex::bucketOf(std::int64_t cell) {
  const std::uint64_t mixed = static_cast<std::uint64_t>(cell) * 0x9E3779B97F4A7C15ULL;
  return buckets_[static_cast<std::size_t>(mixed >> 32U) & (buckets_.size() - 1)];
}

void NearIndex::insert(int id, const LineAndY& at) {
  if (!canMatch(at.y)) {
    return;
  }
  if (++count_ > buckets_.size()) {
    grow();
  }
  const std::int64_t cell = cellOf(at.y);
  bucketOf(cell).insert({cell, at.line, id});
}

void NearIndex::erase(int id, const LineAndY& at) {
  if (canMatch(at.y)) {
    const std::int64_t cell = cellOf(at.y);
    count_ -= bucketOf(cell).erase({cell, at.line, id});
  }
}

void NearIndex::move(int id, const LineAndY& from, const LineAndY& to) {
  const std::int64_t cell = cellOf(from.y);
  auto entry = bucketOf(cell).extract({cell, from.line, id});
  const std::int64_t newCell = cellOf(to.y);
  entry.value() = {newCell, to.line, id};
  bucketOf(newCell).insert(std::move(entry));
}

void NearIndex::grow() {
  std::vector<Entries> old(buckets_.size() * 4);
  old.swap(buckets_);
  for (Entries& entries : old) {
    while (!entries.empty()) {
      bucketOf(entries.begin()->cell).insert(entries.extract(entries.begin()));
    }
  }
}

/// Finds the first entry of each other line in each cell within reach. Sums round monotonically, so
/// an entry whose y differs from `at.y` by less than the reach is in none but these cells.
void NearIndex::findHeads(const LineAndY& at) {
  heads_.clear();
  if (!canMatch(at.y)) {
    return;
  }
  const std::int64_t lastCell = cellOf(at.y + reach_);
  for (std::int64_t cell = cellOf(at.y - reach_); cell <= lastCell; ++cell) {
    Entries& entries = bucketOf(cell);
    auto head = entries.lower_bound({cell, kLowest, 0});
    while (head != entries.end() && head->cell == cell) {
      if (head->line != at.line) {
        heads_.push_back({&entries, head});
      }
      const int line = head->line;
      ++head;
      if (head != entries.end() && head->cell == cell && head->line == line) {
        head = entries.upper_bound({cell, line, kHighest});
      }
    }
  }
}

}  // namespace scanline::detail
