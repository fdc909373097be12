#include "heightmap/flood_order.h"

#include <algorithm>
#include <vector>

#include "heightmap/row_kernels.h"
#include "records/new_array.h"

namespace scanline::detail {

namespace {

/// A pixel and its sort key: its grey value minus the smallest one.
struct KeyedPixel {
  std::uint32_t key;
  PixelPosition pixel;
};

/// Some bits of a key, and the number of keys for each of their values. Sorting by one digit after
/// the other, from the lowest to the highest and each time stably, sorts by the key (radix sort).
struct Digit {
  unsigned shift;
  unsigned bits;
  std::vector<std::size_t> counts;

  [[nodiscard]] std::uint32_t of(std::uint32_t key) const {
    return (key >> shift) & ((1U << bits) - 1U);
  }
};

/// The digits of keys up to `maxKey`, from the lowest to the highest, with counts of 0.
std::vector<Digit> digitsOf(std::uint32_t maxKey) {
  constexpr unsigned kMaxBitsOfOnlyDigit = 14;  // keys of up to this many bits have one digit
  constexpr unsigned kMaxBits = 11;
  unsigned bits = 1;
  while (bits < 32 && maxKey >> bits != 0) {
    ++bits;
  }
  const unsigned count = bits <= kMaxBitsOfOnlyDigit ? 1 : (bits + kMaxBits - 1) / kMaxBits;
  std::vector<Digit> digits;
  for (unsigned k = 0; k < count; ++k) {
    const unsigned shift = k * bits / count;
    const unsigned width = (k + 1) * bits / count - shift;
    digits.push_back({shift, width, std::vector<std::size_t>(std::size_t{1} << width)});
  }
  return digits;
}

/// The grey values of a square image as keys.
class GrayKeys {
 public:
  GrayKeys(const PixelRows& gray, int side) : gray_(gray), side_(side) {
    RowExtrema extrema = {gray[0][0], gray[0][0]};
    for (int r = 0; r < side; ++r) {
      extendBy(gray[r].data(), side, extrema);
    }
    smallest_ = static_cast<std::uint32_t>(extrema.smallest);
    maxKey_ = static_cast<std::uint32_t>(extrema.largest) - smallest_;
  }

  [[nodiscard]] std::uint32_t maxKey() const {
    return maxKey_;
  }

  /// Counts the values of all digits.
  void count(std::vector<Digit>& digits) const {
    for (int r = 0; r < side_; ++r) {
      const int* const row = gray_[r].data();
      for (Digit& digit : digits) {
        for (int c = 0; c < side_; ++c) {
          ++digit.counts[digit.of(keyOf(row[c]))];
        }
      }
    }
  }

  /// Calls `visit(keyedPixel)` column by column.
  template <typename Visit>
  void forEach(Visit visit) const {
    const auto columns = newArray<int>(std::size_t{kColumns} * side_);
    for (int start = 0; start < side_; start += kColumns) {
      const int count = std::min(kColumns, side_ - start);
      if (count == kColumns) {
        copyColumns(start, kColumns, columns.get());  // a known count unrolls
      } else {
        copyColumns(start, count, columns.get());
      }
      for (int c = 0; c < count; ++c) {
        const int* const column = columns.get() + static_cast<std::size_t>(c) * side_;
        for (int r = 0; r < side_; ++r) {
          visit(KeyedPixel{keyOf(column[r]),
                           {static_cast<std::uint16_t>(start + c), static_cast<std::uint16_t>(r)}});
        }
      }
    }
  }

 private:
  /// Columns are copied several at a time, as a cache line holds values of several.
  static constexpr int kColumns = 16;

  void copyColumns(int start, int count, int* columns) const {
    for (int r = 0; r < side_; ++r) {
      const int* const row = gray_[r].data() + start;
      for (int c = 0; c < count; ++c) {
        columns[static_cast<std::size_t>(c) * side_ + r] = row[c];
      }
    }
  }

  [[nodiscard]] std::uint32_t keyOf(int value) const {
    return static_cast<std::uint32_t>(value) - smallest_;
  }

  const PixelRows& gray_;
  int side_;
  std::uint32_t smallest_ = 0;
  std::uint32_t maxKey_ = 0;
};

/// Sorts stably by a digit: calls `put(slot, keyedPixel)` for each pixel that `forEachPixel`
/// visits, with its place in the sorted sequence.
template <typename ForEachPixel, typename Put>
void sortByDigit(const Digit& digit, ForEachPixel forEachPixel, Put put) {
  std::vector<std::size_t> slots;
  slots.reserve(digit.counts.size());
  std::size_t slot = 0;
  for (const std::size_t count : digit.counts) {
    slots.push_back(slot);
    slot += count;
  }
  forEachPixel([&](KeyedPixel item) { put(slots[digit.of(item.key)]++, item); });
}

}  // namespace

std::unique_ptr<PixelPosition[]> floodOrder(const PixelRows& gray, int side) {
  const GrayKeys keys(gray, side);
  std::vector<Digit> digits = digitsOf(keys.maxKey());
  keys.count(digits);
  const std::size_t size = static_cast<std::size_t>(side) * side;
  auto order = newArray<PixelPosition>(size);
  const auto forEachKey = [&](auto visit) { keys.forEach(visit); };
  const auto putInOrder = [&](std::size_t slot, KeyedPixel item) { order[slot] = item.pixel; };
  if (digits.size() == 1) {
    sortByDigit(digits.front(), forEachKey, putInOrder);
    return order;
  }
  auto items = newArray<KeyedPixel>(size);
  auto sorted = digits.size() > 2 ? newArray<KeyedPixel>(size) : nullptr;
  const auto forEachItem = [&](auto visit) { std::for_each_n(items.get(), size, visit); };
  sortByDigit(digits.front(), forEachKey,
              [&](std::size_t slot, KeyedPixel item) { items[slot] = item; });
  for (std::size_t k = 1; k + 1 < digits.size(); ++k) {
    sortByDigit(digits[k], forEachItem,
                [&](std::size_t slot, KeyedPixel item) { sorted[slot] = item; });
    items.swap(sorted);
  }
  sortByDigit(digits.back(), forEachItem, putInOrder);
  return order;
}

}  // namespace scanline::detail
