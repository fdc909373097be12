#pragma once

#include <atomic>
#include <mutex>
#include <string>

namespace examples {

/**
 * A progress bar on the standard error stream; nothing at all when that is not a terminal.
 *
 * advance() may be called from any thread.
 */
class Progress {
 public:
  Progress(std::string label, int total);
  /// Wipes the bar.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void advance();

 private:
  void draw(int percent);

  std::string label_;
  int total_;
  bool shown_;
  std::atomic<int> done_{0};
  std::mutex drawing_;
  int drawnPercent_ = -1;
};

}  // namespace examples
