# Wants a picture of each extractor that the header declares, a line of text about each, and one
# line for bad usage. Wants PROGRAM, HEADER and FOLDER, a folder to work in.

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(
  COMMAND ${PROGRAM} --out ${FOLDER}/pictures
  RESULT_VARIABLE code
  OUTPUT_VARIABLE text
  ERROR_VARIABLE errors)
if(NOT code STREQUAL "0" OR NOT errors STREQUAL "")
  message(FATAL_ERROR "ended with ${code}: ${text}${errors}")
endif()

file(STRINGS ${HEADER} declarations REGEX "^SCANLINE_API void ")
foreach(declaration IN LISTS declarations)
  string(REGEX REPLACE "^SCANLINE_API void ([A-Za-z0-9_]+).*" "\\1" name "${declaration}")
  list(APPEND names ${name})
  set(picture ${FOLDER}/pictures/${name}.png)
  if(NOT EXISTS ${picture})
    message(SEND_ERROR "no picture of ${name}")
    continue()
  endif()
  file(READ ${picture} magic LIMIT 4 HEX)
  file(SIZE ${picture} size)
  if(NOT magic STREQUAL "89504e47" OR size GREATER 40000)
    message(SEND_ERROR "the picture of ${name}, ${size} bytes, is no small PNG")
  endif()
  if(NOT text MATCHES "(^|\n)${name}: [^\n]* at y [0-9]")
    message(SEND_ERROR "${name} is not told of:\n${text}")
  endif()
endforeach()
list(LENGTH names declared)
file(GLOB pictures ${FOLDER}/pictures/*)
list(LENGTH pictures written)
if(NOT written EQUAL declared)
  message(SEND_ERROR "${declared} extractors, ${written} pictures")
endif()

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
     OR NOT errors MATCHES "^feature_gallery: [^\n]+\n$"
     OR NOT errors MATCHES "${expected}")
    message(SEND_ERROR "'${ARGN}' ended with ${code}, not with '${expected}': ${text}${errors}")
  endif()
endfunction()

file(WRITE ${FOLDER}/file "")
turn_down("--nonsense" --nonsense)
turn_down("--out" --out)
turn_down("cannot make the folder" --out ${FOLDER}/file/pictures)
file(MAKE_DIRECTORY ${FOLDER}/blocked/qo_getLineCornerFeature.png)
turn_down("cannot write" --out ${FOLDER}/blocked)
