# Runs the program on belts that it makes, on one of them read back from a file, and on input that it
# must turn down. Wants PROGRAM, MAKE_BAD_SCANS and FOLDER, a folder to work in.

include(${CMAKE_CURRENT_LIST_DIR}/program_checks.cmake)

# Gives the report without the times in `report`.
function(split report)
  run(text "1_mask;2_distances;3_regions;4_outlines" ${ARGN})
  string(REGEX REPLACE "\nTimes\n.*" "" text "${text}")
  set(${report} "${text}" PARENT_SCOPE)
endfunction()

# Every object of a belt is found once, within 10 mm of its place on a belt 1000 mm wide, and the
# tilt as it was made.
function(split_belt count)
  split(text --objects ${count} ${ARGN})
  if(NOT text MATCHES "found ${count} of ${count}, and 0 that were not made\n")
    message(SEND_ERROR "'${ARGN}': not every object is found once:\n${text}")
  elseif(NOT text MATCHES "position error: mean [0-2]\\.[0-9], max [0-9]\\.[0-9] mm")
    message(SEND_ERROR "'${ARGN}': objects are out of place:\n${text}")
  elseif(NOT text MATCHES "made belt, tilted by ([0-9.]+) deg.*belt tilted by ([0-9.]+) deg;")
    message(SEND_ERROR "'${ARGN}': the report names no tilt:\n${text}")
  elseif(NOT CMAKE_MATCH_1 STREQUAL CMAKE_MATCH_2)
    message(SEND_ERROR "'${ARGN}': tilt of ${CMAKE_MATCH_2}, not ${CMAKE_MATCH_1}")
  endif()
endfunction()

split_belt(14)
foreach(seed IN ITEMS 2 3 4 5)
  split_belt(9 --seed ${seed} --noise 1.5)
endforeach()
split_belt(1 --noise 0)

# The same belt gives the same report, on any number of threads; another seed another one.
split(made --seed 7 --objects 5 --save-scan ${scans}/belt.tiff)
split(again --seed 7 --objects 5 --threads 1)
split(other --seed 8 --objects 5)
if(NOT made STREQUAL again OR made STREQUAL other)
  message(SEND_ERROR "the reports do not follow the seed:\n${made}\n${again}\n${other}")
endif()
split(reread ${scans}/belt.tiff --unit mm)
foreach(report IN ITEMS made reread)
  string(REGEX MATCH "\nObjects: 5 [^\n]*\n([^\n]+\n)+" ${report}_objects "${${report}}")
endforeach()
if(made_objects STREQUAL "" OR NOT made_objects STREQUAL reread_objects)
  message(SEND_ERROR "the file does not give the objects:\n${made}\n${reread}")
endif()

# Without an object that is wide or high enough nothing is found, and nothing waits for ever.
foreach(option IN ITEMS --min-width --cut)
  split(none --objects 2 ${option} 2000)
  if(NOT none MATCHES "Objects: 0 .*found 0 of 2, and 0")
    message(SEND_ERROR "${option}: objects are left:\n${none}")
  endif()
endforeach()

turn_down("no such file" ${scans}/missing.tiff)
turn_down("no image, or damaged" ${scans}/text.tiff)
turn_down("its pixels are" ${scans}/colour8.png)
turn_down("too small" ${scans}/one_line.tiff)
turn_down("no measurement" ${scans}/holes.tiff)
turn_down("no belt found" ${scans}/flat.tiff)
turn_down("a million units" ${scans}/steep.tiff)
foreach(option IN ITEMS --cut --step --min-width)
  turn_down("${option}" ${option} 0)
  turn_down("${option}" ${option} nan)
endforeach()
turn_down("--objects" --objects 0)
turn_down("--noise" --noise -1)
turn_down("--seed" --seed -1)
turn_down("--nonsense" --nonsense)
turn_down("cannot make the folder" --out ${scans}/text.tiff/pictures)
turn_down("cannot write" --objects 1 --save-scan ${scans}/missing/scan.tiff)
