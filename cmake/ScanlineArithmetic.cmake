# Compiles a target so that every compiler gives the same bits at every optimisation level: no
# contraction to fused operations, no reassociation. These options come after those of
# CMAKE_CXX_FLAGS. src/records/exact_arithmetic.h refuses relaxed arithmetic that they leave on.
function(scanline_exact_arithmetic target)
  if(MSVC AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # clang-cl contracts under /fp:precise.
    target_compile_options(${target} PRIVATE /fp:precise /clang:-ffp-contract=off)
  elseif(MSVC AND MSVC_VERSION LESS 1930)
    # Before Visual Studio 2022, /fp:precise contracts where the processor has fused operations.
    target_compile_options(${target} PRIVATE /fp:strict)
  elseif(MSVC)
    target_compile_options(${target} PRIVATE /fp:precise)
  else()
    target_compile_options(${target} PRIVATE -ffp-contract=off)
  endif()
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND NOT MSVC)
    # Clang has no macros that show these.
    target_compile_options(
      ${target} PRIVATE -fno-associative-math -fno-reciprocal-math -fno-approx-func -fsigned-zeros)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 13)
    # Where intermediate results are wider than their types; older versions lack it for C++.
    target_compile_options(${target} PRIVATE -fexcess-precision=standard)
  endif()
endfunction()
