# Lets src/records/wide_kernel.h compile marked functions for a wider instruction set too, where the
# compiler and the loader can choose between the forms at load time.
include(CheckCXXSourceCompiles)

option(SCANLINE_WIDE_KERNELS "Compile marked loops for AVX2 as well, chosen at load time" ON)

function(scanline_wide_kernels target)
  if(NOT SCANLINE_WIDE_KERNELS)
    return()
  endif()
  check_cxx_source_compiles(
    "namespace n { __attribute__((target_clones(\"avx2\", \"default\"))) int f(int a) { return a + 1; } }
     int main(int argc, char**) { return n::f(argc); }"
    SCANLINE_HAS_TARGET_CLONES)
  if(SCANLINE_HAS_TARGET_CLONES)
    target_compile_definitions(${target} PRIVATE SCANLINE_HAS_TARGET_CLONES)
  endif()
endfunction()
