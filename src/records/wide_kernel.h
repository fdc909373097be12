#pragma once

// SCANLINE_WIDE_KERNEL in front of a function definition compiles the function a second time for
// AVX2; the loader picks the form that the processor has. Both forms perform the same operations in
// the same order on each element, since contraction and reassociation are off, so both give the same
// bits.
//
// For functions whose loops vectorise: no templates, nothing inline. What they call must be inlined
// or it runs in its plain form. Sanitizers cannot work before the loader has picked, so their builds
// go without.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define SCANLINE_SANITIZED
#endif
#elif defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SCANLINE_SANITIZED
#endif

#if defined(SCANLINE_HAS_TARGET_CLONES) && !defined(SCANLINE_SANITIZED)
#define SCANLINE_WIDE_KERNEL __attribute__((target_clones("avx2", "default")))
#else
#define SCANLINE_WIDE_KERNEL
#endif
