#include "base/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace program {

Progress::Progress(std::string label, long long total, bool quiet)
    : label_(std::move(label)),
      total_(std::max(total, 1LL)),
      shown_(!quiet && ::isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
  if (drawnPercent_ >= 0) {
    std::fprintf(stderr, "\r\033[K");
  }
}

void Progress::advance(long long steps) {
  const long long done = done_ += steps;
  if (!shown_) {
    return;
  }
  const int percent = static_cast<int>(std::min(100LL, 100 * done / total_));
  const std::unique_lock<std::mutex> mine(drawing_, std::try_to_lock);
  if (mine.owns_lock() && percent > drawnPercent_) {
    draw(percent);
  }
}

void Progress::draw(int percent) {
  constexpr int kWidth = 32;
  const int filled = percent * kWidth / 100;
  drawnPercent_ = percent;
  std::fprintf(stderr, "\r%-24s [%s%s] %3d %%", label_.c_str(),
               std::string(static_cast<std::size_t>(filled), '=').c_str(),
               std::string(static_cast<std::size_t>(kWidth - filled), ' ').c_str(), percent);
  std::fflush(stderr);
}

}  // namespace program
