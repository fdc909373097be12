#pragma once

namespace scanline::detail {

/// Prefetches memory that will be read soon, if the compiler supports it.
inline void prefetch([[maybe_unused]] const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address);
#endif
}

/// Prefetches memory that will be written soon, if the compiler supports it.
inline void prefetchForWrite([[maybe_unused]] const void* address) {
#if defined(__GNUC__)
  __builtin_prefetch(address, 1);
#endif
}

}  // namespace scanline::detail
