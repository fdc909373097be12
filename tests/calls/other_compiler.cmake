# Builds the library with another compiler and without wide kernels, and compares the results of all
# functions, bit for bit.
# Arguments: source, binary, compiler, launcher, program.
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGV} failed:\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

run(${CMAKE_COMMAND} -S ${source} -B ${binary} -G Ninja -D CMAKE_CXX_COMPILER=${compiler}
    -D CMAKE_CXX_COMPILER_LAUNCHER=${launcher} -D CMAKE_BUILD_TYPE=Release
    "-DCMAKE_CXX_FLAGS_RELEASE=-O3 -DNDEBUG" -D SCANLINE_BUILD_TESTS=OFF
    -D SCANLINE_BUILD_BENCHMARKS=OFF -D SCANLINE_BUILD_EXAMPLES=OFF -D SCANLINE_BUILD_PROGRAM=OFF
    -D SCANLINE_BUILD_PYTHON=OFF -D SCANLINE_BUILD_DOCS=OFF -D SCANLINE_INSTALL=OFF -D SCANLINE_WIDE_KERNELS=OFF)
run(${CMAKE_COMMAND} --build ${binary} --parallel 2 --target scanline)
run(${program} --hashes)
set(expected "${output}")
run(${CMAKE_COMMAND} -E env LD_PRELOAD=${binary}/src/libscanline.so ${program} --hashes)
if(NOT output STREQUAL expected)
  string(REGEX MATCHALL "[^\n]+" output "${output}")
  string(REGEX MATCHALL "[^\n]+" expected "${expected}")
  list(REMOVE_ITEM output ${expected})
  message(FATAL_ERROR "results differ from those of ${compiler}: ${output}")
endif()
message("${compiler} gives the same results")
