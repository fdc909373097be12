#pragma once

#include <climits>
#include <cstdint>

namespace scanline::detail {

/**
 * The pixels of a flood as words that can be tested together for different labels.
 *
 * A labelled cell holds its label and, in the bits above it, the same bits inverted. If cells are
 * combined by OR, a bit is set in both places exactly if their labels differ. Cells without a label
 * hold
 * - 0 before they are visited,
 * - `kWatershed` if different labels met in them,
 * - `kWaiting` and their level while they wait for a label.
 */
template <typename Word>
struct FloodCells {
  static constexpr unsigned kLabelBits = sizeof(Word) * CHAR_BIT / 2 - 1;
  static constexpr Word kLabelMask = (Word{1} << kLabelBits) - 1;
  static constexpr Word kWatershed = Word{1} << (2 * kLabelBits);
  static constexpr Word kWaiting = kWatershed << 1U;

  /// The cell of a marker. The cell of a marker below 0, which is not a label, is `kWatershed`.
  static constexpr Word cellOf(int marker) {
    const auto label = static_cast<Word>(marker);
    const Word labelled = label | ((label ^ kLabelMask) << kLabelBits);
    return marker > 0 ? labelled : (marker == 0 ? 0 : kWatershed);
  }
  static constexpr bool isLabelled(Word cell) {
    return cell != 0 && cell < kWatershed;
  }
  static constexpr int labelOf(Word cell) {
    return static_cast<int>(cell & kLabelMask);
  }
  static constexpr bool isWaiting(Word cell) {
    return cell >= kWaiting;
  }
  static constexpr Word waitingAt(int level) {
    return kWaiting | static_cast<Word>(level);
  }
  static constexpr int levelOf(Word waiting) {
    return static_cast<int>(waiting & ~kWaiting);
  }

  // For cells that were combined by OR, none of which waits:
  static constexpr bool hasLabel(Word combined) {
    return (combined & ~kWatershed) != 0;
  }
  static constexpr bool hasDifferentLabels(Word combined) {
    return (combined & (combined >> kLabelBits) & kLabelMask) != 0;
  }
  static constexpr Word onlyLabel(Word combined) {
    return combined & ~kWatershed;
  }
};

}  // namespace scanline::detail
