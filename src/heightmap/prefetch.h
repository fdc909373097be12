#pragma once

namespace scanline::detail {

/// Has the caches load what will be read soon, if the compiler can ask for it.
inline void prefetch([[maybe_unused]] const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#endif
}

}  // namespace scanline::detail
