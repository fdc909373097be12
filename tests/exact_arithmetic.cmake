# Compiles a private header of the library with options under which results would change, and wants
# each refused. Arguments: CXX, ID of the compiler, PROCESSOR, ROOT of the source tree.
set(refused -ffast-math -Ofast -ffinite-math-only)
set(accepted "" -O3 -fno-math-errno)
if(ID STREQUAL "GNU")
  list(APPEND refused -funsafe-math-optimizations -freciprocal-math -fno-signed-zeros
       "-fassociative-math -fno-signed-zeros -fno-trapping-math")
  if(PROCESSOR MATCHES "x86_64|AMD64")
    list(APPEND refused -mfpmath=387)
  endif()
elseif(NOT ID MATCHES "Clang")
  message("This compiler's options are not known here")
  return()
endif()

function(compile options result errors)
  separate_arguments(options UNIX_COMMAND "${options}")
  execute_process(
    COMMAND ${CXX} -std=c++17 -fsyntax-only -x c++ -I ${ROOT}/src -I ${ROOT}/include ${options}
            ${ROOT}/src/records/sample_rules.h
    RESULT_VARIABLE code
    ERROR_VARIABLE text)
  set(${result} ${code} PARENT_SCOPE)
  set(${errors} "${text}" PARENT_SCOPE)
endfunction()

foreach(options IN LISTS accepted)
  compile("${options}" code errors)
  if(NOT code EQUAL 0)
    message(SEND_ERROR "'${options}' is refused: ${errors}")
  endif()
endforeach()
foreach(options IN LISTS refused)
  compile("${options}" code errors)
  if(code EQUAL 0 OR NOT errors MATCHES "scanline needs exact arithmetic")
    message(SEND_ERROR "'${options}' is not refused (${code}): ${errors}")
  endif()
endforeach()
