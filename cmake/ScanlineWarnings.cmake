# The warnings that scanline's own targets compile with; never passed on to users of the library.
function(scanline_warnings target)
  if(NOT SCANLINE_WARNINGS)
    return()
  endif()
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive-)
  else()
    target_compile_options(
      ${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wshadow
                        -Wdouble-promotion -Wold-style-cast -Wnon-virtual-dtor)
  endif()
endfunction()
