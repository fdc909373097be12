#pragma once

#include <cfloat>

// Refuses compiler options under which the NaN rules or the bits of the results would change.
// Clang defines macros for the first two only, so the build switches the others off.
#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ != 0) || \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) ||                          \
    defined(__NO_SIGNED_ZEROS__) || defined(_M_FP_FAST) || defined(_M_FP_CONTRACT)
#error "scanline needs exact arithmetic: do not use -ffast-math, options of it, or /fp:fast"
#endif

// On x86, arithmetic without SSE2 is wider than its types. 16 affects half precision only.
#if FLT_EVAL_METHOD != 0 && FLT_EVAL_METHOD != 16
#error "scanline needs exact arithmetic: use -msse2 -mfpmath=sse or /arch:SSE2"
#endif
