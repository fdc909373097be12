#include "quiet_stderr.h"

#include <cstdio>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace examples {
namespace {

// The same five calls under two sets of names.
#ifdef _WIN32
int duplicate(int file) {
  return _dup(file);
}
void replace(int from, int to) {
  _dup2(from, to);
}
void closeFile(int file) {
  _close(file);
}
int openNowhere() {
  return _open("NUL", _O_WRONLY);
}
bool isTerminal(int file) {
  return _isatty(file) != 0;
}
#else
int duplicate(int file) {
  return dup(file);
}
void replace(int from, int to) {
  dup2(from, to);
}
void closeFile(int file) {
  close(file);
}
int openNowhere() {
  return open("/dev/null", O_WRONLY);
}
bool isTerminal(int file) {
  return isatty(file) != 0;
}
#endif

constexpr int kStderr = 2;

}  // namespace

QuietStderr::QuietStderr() : saved_(duplicate(kStderr)) {
  const int nowhere = saved_ < 0 ? -1 : openNowhere();
  if (nowhere >= 0) {
    std::fflush(stderr);
    replace(nowhere, kStderr);
    closeFile(nowhere);
  }
}

QuietStderr::~QuietStderr() {
  if (saved_ >= 0) {
    std::fflush(stderr);
    replace(saved_, kStderr);
    closeFile(saved_);
  }
}

bool stderrIsTerminal() {
  return isTerminal(kStderr);
}

}  // namespace examples
