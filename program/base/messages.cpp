#include "base/messages.h"

#include <cstdio>
#include <utility>

namespace program {

void Messages::warn(std::string code, std::string text) {
  if (!quiet_) {
    std::fprintf(stderr, "scanline: warning: %s\n", text.c_str());
  }
  warnings_.push_back({std::move(code), std::move(text)});
}

}  // namespace program
