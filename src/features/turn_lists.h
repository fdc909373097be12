#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace scanline::detail {

/// Lists the local maxima and minima of a sequence of values. Of equal values the last one is
/// listed.
///
/// Noise has no pattern, so there is no branch on the direction, which would often be mispredicted:
/// each item is written to both lists, and overwritten by the next one unless it belongs there.
class TurnLists {
 public:
  /// For a sequence of at most `items` items. Maxima and minima alternate, so neither list gets
  /// more than half of them.
  explicit TurnLists(std::size_t items) : maxima_(items / 2 + 2), minima_(items / 2 + 2) {}

  /// Takes the next item. `change` is its value minus that of the item before; 0 and NaN do not
  /// change the direction.
  void take(int item, double change) {
    const bool grows = change > 0.0;
    const bool falls = change < 0.0;
    maxima_.put(last_, falls & isGrowing_);
    minima_.put(last_, grows & isFalling_);
    isGrowing_ = grows | (isGrowing_ & !falls);
    isFalling_ = falls | (isFalling_ & !grows);
    last_ = item;
  }

  /// Lists the last item too, unless no value has changed.
  void close() {
    maxima_.put(last_, isGrowing_);
    minima_.put(last_, isFalling_);
  }

  /// Drops the items listed so far that fail a test.
  template <typename MaximumTest, typename MinimumTest>
  void filter(MaximumTest isMaximum, MinimumTest isMinimum) {
    maxima_.filter(isMaximum);
    minima_.filter(isMinimum);
  }

  std::vector<int> releaseMaxima() {
    return maxima_.release();
  }
  std::vector<int> releaseMinima() {
    return minima_.release();
  }

 private:
  /// Has room for one item more than it keeps.
  class List {
   public:
    explicit List(std::size_t room) : items_(room) {}

    void put(int item, bool isKept) {
      items_[count_] = item;
      count_ += isKept ? 1 : 0;
    }
    template <typename Test>
    void filter(Test test) {
      std::size_t kept = 0;
      for (std::size_t k = 0; k < count_; ++k) {
        items_[kept] = items_[k];
        kept += test(items_[k]) ? 1 : 0;
      }
      count_ = kept;
    }
    std::vector<int> release() {
      items_.resize(count_);
      return std::move(items_);
    }

   private:
    std::vector<int> items_;
    std::size_t count_ = 0;
  };

  List maxima_;
  List minima_;
  bool isGrowing_ = false;
  bool isFalling_ = false;
  int last_ = -1;
};

}  // namespace scanline::detail
