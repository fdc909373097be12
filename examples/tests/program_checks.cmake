# Checks of a program from outside: what a good call writes, and how bad input is turned down. Wants
# PROGRAM and FOLDER, a folder to work in, which it empties; with MAKE_BAD_SCANS it makes the folder
# `scans` of odd and of bad files in it.

cmake_path(GET PROGRAM STEM program_name)
set(scans ${FOLDER}/scans)
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${scans})
if(MAKE_BAD_SCANS)
  execute_process(COMMAND ${MAKE_BAD_SCANS} ${scans} COMMAND_ERROR_IS_FATAL ANY)
endif()

# Runs the program with the rest of the arguments; wants exit code 0, silence on the standard error
# stream, and the pictures `<program>_<picture>.png` in its folder. Gives the report in `report`.
function(run report pictures)
  set(out ${FOLDER}/${program_name}_out)
  file(REMOVE_RECURSE ${out})
  execute_process(
    COMMAND ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE code
    OUTPUT_VARIABLE text
    ERROR_VARIABLE errors)
  if(NOT code STREQUAL "0" OR NOT errors STREQUAL "")
    message(SEND_ERROR "'${ARGN}' ended with ${code}: ${errors}")
  endif()
  foreach(picture IN LISTS pictures)
    set(magic "")
    if(EXISTS ${out}/${program_name}_${picture}.png)
      file(READ ${out}/${program_name}_${picture}.png magic LIMIT 4 HEX)
    endif()
    if(NOT magic STREQUAL "89504e47")
      message(SEND_ERROR "'${ARGN}' wrote no picture ${picture}")
    endif()
  endforeach()
  set(${report} "${text}" PARENT_SCOPE)
endfunction()

# Wants the exit code for bad input and one line on the standard error stream that holds `expected`.
function(turn_down expected)
  execute_process(
    COMMAND ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE code
    OUTPUT_VARIABLE text
    ERROR_VARIABLE errors)
  if(NOT code STREQUAL "2"
     OR NOT text STREQUAL ""
     OR NOT errors MATCHES "^${program_name}: [^\n]+\n$"
     OR NOT errors MATCHES "${expected}")
    message(SEND_ERROR "'${ARGN}' ended with ${code}, not with '${expected}': ${text}${errors}")
  endif()
endfunction()
