# Wants the exit code for bad input and one line on the standard error stream that holds `expected`.
function(turn_down expected)
  cmake_path(GET PROGRAM STEM name)
  execute_process(
    COMMAND ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE code
    OUTPUT_VARIABLE text
    ERROR_VARIABLE errors)
  if(NOT code STREQUAL "2"
     OR NOT text STREQUAL ""
     OR NOT errors MATCHES "^${name}: [^\n]+\n$"
     OR NOT errors MATCHES "${expected}")
    message(SEND_ERROR "'${ARGN}' ended with ${code}, not with '${expected}': ${text}${errors}")
  endif()
endfunction()
