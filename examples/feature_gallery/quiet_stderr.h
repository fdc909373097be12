#pragma once

namespace examples {

/**
 * Sends the process's standard error stream to nowhere while it lives.
 *
 * Image codecs write their own complaints about damaged files straight to it, past all log levels.
 * Not for use while other threads have something to say.
 */
class QuietStderr {
 public:
  QuietStderr();
  ~QuietStderr();
  QuietStderr(const QuietStderr&) = delete;
  QuietStderr& operator=(const QuietStderr&) = delete;

 private:
  int saved_;
};

/// Whether the standard error stream is a terminal.
bool stderrIsTerminal();

}  // namespace examples
