# Runs the program on its own part, on that part read back from a file, and on input that it must
# turn down. Wants PROGRAM, MAKE_BAD_SCANS and FOLDER, a folder to work in.

include(${CMAKE_CURRENT_LIST_DIR}/program_checks.cmake)

# Gives the report, up to the times, in `report`.
function(track report)
  run(text "map;profile" ${ARGN})
  string(REGEX REPLACE "\nTime\n.*" "" text "${text}")
  set(${report} "${text}" PARENT_SCOPE)
endfunction()

function(expect text)
  foreach(expected IN LISTS ARGN)
    if(NOT text MATCHES "${expected}")
      message(SEND_ERROR "the report does not tell '${expected}':\n${text}")
    endif()
  endforeach()
endfunction()

# Both gaps and no other, with their places, widths and, in the made part, their true centre lines:
# off by less than 0.05 on the whole and 0.15 anywhere.
set(close "0\\.0[0-4][0-9] / 0\\.(0[0-9]|1[0-4])[0-9]")
set(seam "seam +0 - 399 +89\\.[0-9] % +99\\.[0-9]+ +3\\.0[0-9]+ .* 3\\.00 +parabola")
set(slot "slot +48 - 344 +(99\\.[0-9]|100\\.0) % +74\\.[0-9]+ +1\\.[67][0-9]+ .* 1\\.60 +line")
set(findings
    "levelled by 1\\.80 deg"
    "\n  1 ${seam} +${close} +${close}\n  2 ${slot} +${close} +${close}\n\n"
    "radius at the apex (29|30)[0-9]"
    "4[0-9] lines missed, 2 interruptions. 6\\.5 mm on lines 112 - 136. 4\\.5 mm on lines 280 - 296")
track(made --save-scan ${scans}/part.tiff)
expect("${made}" ${findings})

# A seed is the scan, whatever the number of threads.
track(again --seed 1 --threads 1)
track(other --seed 2)
expect("${other}" ${findings})
if(NOT made STREQUAL again OR made STREQUAL other)
  message(SEND_ERROR "seeds:\n${made}\n${again}\n${other}")
endif()

# From a file nothing but the truth is missing; without the bridge the seam falls to pieces.
track(reread ${scans}/part.tiff --unit mm)
expect("${reread}" "\n  1 +0 - 399 .* - +parabola +${close} +-\n  2 +48 - 344 .* - +line +${close} +-\n\n")
track(unbridged --bridge 2)
expect("${unbridged}" "1 slot .*2 seam +137 - 279 .*3 seam +0 - 111 .*4 seam +297 - 399 ")

# Files that are odd but good.
foreach(name IN ITEMS range.png range.tiff flat.tiff wild.tiff)
  track(report ${scans}/${name})
  expect("${report}" "0 gaps on the lines" "none; try")
endforeach()

turn_down("no such file" ${scans}/missing.tiff)
turn_down("no image, or damaged" ${scans}/text.tiff)
turn_down("too small" ${scans}/one_line.tiff)
turn_down("no measurement" ${scans}/holes.tiff)
turn_down("--noise" --noise -1)
turn_down("--lines" --lines 0)
turn_down("--seed" --seed x)
turn_down("--width-min" --width-min 3 --width-max 2)
turn_down("--line: the scan has lines 0 to 399" --line 400)
turn_down("--z-is-distance" ${scans}/part.tiff --z-is-distance)
turn_down("cannot make the folder" --out ${scans}/text.tiff/pictures)
