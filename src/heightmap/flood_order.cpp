#include "heightmap/flood_order.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace scanline::detail {

namespace {

/// A grey value, counted from the smallest one up, and the place that it stands for.
struct Turn {
  std::uint32_t key;
  Place place;
};

/// Some bits of a key. Sorting by one digit after the other, from the lowest up and each time with
/// the order of equal digits kept, sorts by the key (radix sort).
struct Digit {
  unsigned shift;
  unsigned bits;

  [[nodiscard]] std::uint32_t of(std::uint32_t key) const {
    return (key >> shift) & ((1U << bits) - 1U);
  }
};

/// The digits of keys up to `maxKey`, from the lowest up.
std::vector<Digit> digitsOf(std::uint32_t maxKey) {
  constexpr unsigned kWhole = 14;  // keys as short as that have one digit
  constexpr unsigned kMost = 11;
  unsigned bits = 1;
  while (bits < 32 && maxKey >> bits != 0) {
    ++bits;
  }
  const unsigned count = bits <= kWhole ? 1 : (bits + kMost - 1) / kMost;
  std::vector<Digit> digits;
  for (unsigned k = 0; k < count; ++k) {
    digits.push_back({k * bits / count, (k + 1) * bits / count - k * bits / count});
  }
  return digits;
}

/// The grey values of a square image as keys.
class GrayKeys {
 public:
  GrayKeys(const PixelRows& gray, int side) : gray_(gray), side_(side) {
    int smallest = gray[0][0];
    int largest = smallest;
    for (int r = 0; r < side; ++r) {
      for (int c = 0; c < side; ++c) {
        smallest = std::min(smallest, gray[r][c]);
        largest = std::max(largest, gray[r][c]);
      }
    }
    smallest_ = static_cast<std::uint32_t>(smallest);
    maxKey_ = static_cast<std::uint32_t>(largest) - smallest_;
  }

  [[nodiscard]] std::uint32_t maxKey() const {
    return maxKey_;
  }

  /// Where in the sorted sequence the keys of each digit start.
  [[nodiscard]] std::vector<std::size_t> startsOf(Digit digit) const {
    std::vector<std::size_t> starts(std::size_t{1} << digit.bits);
    for (int r = 0; r < side_; ++r) {
      for (int c = 0; c < side_; ++c) {
        ++starts[digit.of(keyOf(gray_[r][c]))];
      }
    }
    std::size_t start = 0;
    for (std::size_t& entry : starts) {
      start += std::exchange(entry, start);
    }
    return starts;
  }

  /// Calls `visit(turn)` column by column.
  template <typename Visit>
  void forEach(const PaddedPlane& markers, Visit visit) const {
    // Some columns at a time, as a cache line holds values of several.
    constexpr int kColumns = 16;
    std::vector<int> columns(std::size_t{kColumns} * side_);
    for (int start = 0; start < side_; start += kColumns) {
      const int count = std::min(kColumns, side_ - start);
      for (int r = 0; r < side_; ++r) {
        for (int c = 0; c < count; ++c) {
          columns[static_cast<std::size_t>(c) * side_ + r] = gray_[r][start + c];
        }
      }
      for (int c = 0; c < count; ++c) {
        const int* column = columns.data() + static_cast<std::size_t>(c) * side_;
        const Place first = markers.placeOf(start + c, 0);
        for (int r = 0; r < side_; ++r) {
          visit(Turn{keyOf(column[r]), first + static_cast<Place>(r)});
        }
      }
    }
  }

 private:
  [[nodiscard]] std::uint32_t keyOf(int value) const {
    return static_cast<std::uint32_t>(value) - smallest_;
  }

  const PixelRows& gray_;
  int side_;
  std::uint32_t smallest_ = 0;
  std::uint32_t maxKey_ = 0;
};

}  // namespace

std::vector<Place> floodOrder(const PixelRows& gray, int side, const PaddedPlane& markers) {
  const GrayKeys keys(gray, side);
  const std::vector<Digit> digits = digitsOf(keys.maxKey());
  std::vector<Place> order(static_cast<std::size_t>(side) * side);
  std::vector<std::size_t> starts = keys.startsOf(digits.front());
  if (digits.size() == 1) {
    keys.forEach(markers, [&](Turn turn) { order[starts[turn.key]++] = turn.place; });
    return order;
  }
  std::vector<Turn> turns(order.size());
  keys.forEach(markers, [&](Turn turn) { turns[starts[digits.front().of(turn.key)]++] = turn; });
  std::vector<Turn> sorted(digits.size() > 2 ? order.size() : 0);
  for (std::size_t k = 1; k + 1 < digits.size(); ++k) {
    starts = keys.startsOf(digits[k]);
    for (const Turn turn : turns) {
      sorted[starts[digits[k].of(turn.key)]++] = turn;
    }
    turns.swap(sorted);
  }
  starts = keys.startsOf(digits.back());
  for (const Turn turn : turns) {
    order[starts[digits.back().of(turn.key)]++] = turn.place;
  }
  return order;
}

}  // namespace scanline::detail
