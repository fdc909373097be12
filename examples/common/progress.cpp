#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "quiet_stderr.h"

namespace examples {

Progress::Progress(std::string label, int total)
    : label_(std::move(label)), total_(std::max(total, 1)), shown_(stderrIsTerminal()) {}

Progress::~Progress() {
  if (drawnPercent_ >= 0) {
    std::fprintf(stderr, "\r\033[K");
  }
}

void Progress::advance() {
  const int done = ++done_;
  if (!shown_) {
    return;
  }
  // More steps than announced must not run out of the bar.
  const int percent = std::min(100, static_cast<int>(100LL * done / total_));
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

}  // namespace examples
