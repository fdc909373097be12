#include "allocations.h"

#include <cerrno>
#include <cstddef>
#include <new>

// The allocation functions of the C library, in place of its own, so that those of the C++ library,
// of OpenCV and of Eigen all come here. Under a sanitizer they pass on to the sanitizer's.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define REAL(function) __interceptor_##function
#else
#define REAL(function) __libc_##function
#endif

extern "C" {
void* REAL(malloc)(std::size_t size);
void* REAL(calloc)(std::size_t count, std::size_t size);
void* REAL(realloc)(void* block, std::size_t size);
void* REAL(memalign)(std::size_t alignment, std::size_t size);
void REAL(free)(void* block);
}

namespace {

struct State {
  long live = 0;
  long untilFailure = 0;  // 0: none is to fail
  bool forever = false;
  bool failed = false;
};
thread_local State state;

bool fails() {
  if (state.untilFailure == 0 || --state.untilFailure > 0) {
    return false;
  }
  state.untilFailure = state.forever ? 1 : 0;
  state.failed = true;
  errno = ENOMEM;
  return true;
}

template <typename Allocate>
void* allocate(const Allocate& real) {
  void* block = fails() ? nullptr : real();
  state.live += block != nullptr ? 1 : 0;
  return block;
}

}  // namespace

namespace calls {

void failAllocations(long number, bool forever) {
  state.untilFailure = number;
  state.forever = forever;
  state.failed = false;
}

bool stopFailing() {
  state.untilFailure = 0;
  return state.failed;
}

long liveBlocks() {
  return state.live;
}

}  // namespace calls

extern "C" {

void* malloc(std::size_t size) {
  return allocate([=] { return REAL(malloc)(size); });
}

void* calloc(std::size_t count, std::size_t size) {
  return allocate([=] { return REAL(calloc)(count, size); });
}

void* realloc(void* block, std::size_t size) {
  if (block == nullptr) {
    return malloc(size);
  }
  return fails() ? nullptr : REAL(realloc)(block, size);
}

void* memalign(std::size_t alignment, std::size_t size) {
  return allocate([=] { return REAL(memalign)(alignment, size); });
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = memalign(alignment, size);
  return *block != nullptr ? 0 : ENOMEM;
}

void free(void* block) {
  state.live -= block != nullptr ? 1 : 0;
  REAL(free)(block);
}

}  // extern "C"
