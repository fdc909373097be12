#pragma once

// SCANLINE_WIDE_KERNEL in front of a function definition compiles the function a second time for
// AVX2; the loader picks the fastest form that the processor supports. Contraction and
// reassociation are off, so both forms perform the same operations in the same order on each
// element and give the same bits.
//
// It is meant for functions whose loops vectorise, not for templates or inline functions. A
// function that they call must be inlined, or it runs in its plain form. The loader picks before a
// sanitizer is initialised, so builds with sanitizers have the plain form only.
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
