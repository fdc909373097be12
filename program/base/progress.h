#pragma once

#include <atomic>
#include <mutex>
#include <string>

namespace program {

/**
 * A progress bar on the standard error stream; nothing at all if that is not a terminal.
 *
 * advance() may be called from any thread.
 */
class Progress {
 public:
  Progress(std::string label, long long total, bool quiet);
  /// Clears the bar.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance(long long steps = 1);

 private:
  void draw(int percent);

  std::string label_;
  long long total_;
  bool shown_;
  std::atomic<long long> done_{0};
  std::mutex drawing_;
  int drawnPercent_ = -1;
};

}  // namespace program
