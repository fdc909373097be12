#pragma once

#include <vector>

#include <scanline/scan_records.h>

/// What a nearly flat line shows to the sides of its slopes.
namespace scanline::detail {

/// Mark on the samples at the ends of jumps, in the working words of the caller's line.
constexpr int kJumpMark = 16;

/// What a look along the line to one side of a slope shows.
struct SideView {
  int highest;     ///< Sample of the greatest z; -1 if a mark or the end of the line stopped it.
  double mean;     ///< Mean z; defined unless it was stopped.
  bool meetsMark;  ///< It was a mark that stopped it.
};

/// Looks along a line from its samples, over `width` in y, up to a mark. The first sample of the
/// line is out of reach.
class SideViewer {
 public:
  SideViewer(const std::vector<STesk3DPosition>& lineData, double width);

  /// Takes the marks as they are now; to be called before the first view. Allocates nothing.
  void readMarks();

  /// Looks from a valid sample to lower indices (`step` -1) or to higher ones (1). Costs the
  /// samples of the view, and nothing if it is stopped.
  [[nodiscard]] SideView view(int start, int step) const;

 private:
  /// The valid samples from one of the line on, up to a mark or the end of the line.
  struct Stretch {
    double minY;  ///< NaN if no y is a number.
    double maxY;
    bool endsAtMark;
  };

  static Stretch extended(const Stretch& beyond, const STesk3DPosition& sample);

  const std::vector<STesk3DPosition>& lineData_;
  double width_;
  std::vector<Stretch> before_;  ///< For each sample, the stretch from it to lower indices.
  std::vector<Stretch> after_;   ///< The same to higher indices.
};

}  // namespace scanline::detail
