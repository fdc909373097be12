# Runs the program on its own scene, on that scene read back from a file, and on input that it must
# turn down. Wants PROGRAM, MAKE_BAD_SCANS and FOLDER, a folder to work in.

set(scans ${FOLDER}/scans)
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${scans})
include(${CMAKE_CURRENT_LIST_DIR}/turn_down.cmake)
execute_process(COMMAND ${MAKE_BAD_SCANS} ${scans} COMMAND_ERROR_IS_FATAL ANY)

# Runs the program; wants exit code 0, silence on the standard error stream, and both pictures.
# Gives the report from the line of the scan's size on in `report`.
function(trace report)
  set(out ${FOLDER}/trace_features_out)
  file(REMOVE_RECURSE ${out})
  execute_process(
    COMMAND ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE code
    OUTPUT_VARIABLE text
    ERROR_VARIABLE errors)
  if(NOT code STREQUAL "0" OR NOT errors STREQUAL "")
    message(SEND_ERROR "'${ARGN}' ended with ${code}: ${errors}")
    return()
  endif()
  foreach(picture IN ITEMS map profile)
    file(READ ${out}/trace_features_${picture}.png magic LIMIT 4 HEX)
    if(NOT magic STREQUAL "89504e47")
      message(SEND_ERROR "'${ARGN}' wrote no ${picture} picture")
    endif()
  endforeach()
  string(FIND "${text}" "\n" end)
  string(SUBSTRING "${text}" ${end} -1 text)
  set(${report} "${text}" PARENT_SCOPE)
endfunction()

# The scene: the table's tilt of 2.95 degrees is found and gone afterwards, and one thread or many,
# memory or file, the report is the same.
trace(scene --threads 2 --save-scan ${scans}/scene.tiff)
if(NOT scene MATCHES "before levelling +2\\.9[0-9] deg.*after levelling +0\\.0[0-9] deg")
  message(SEND_ERROR "the table is not level:\n${scene}")
endif()
if(NOT scene MATCHES "all +[0-9 ]+ +1[0-9]\n")
  message(SEND_ERROR "not the trees that the scene shows:\n${scene}")
endif()
trace(alone --threads 1)
trace(reread ${scans}/scene.tiff --unit mm --cut-above 60)
foreach(other IN ITEMS alone reread)
  if(NOT scene STREQUAL ${other})
    message(SEND_ERROR "the reports differ:\n${scene}\n${${other}}")
  endif()
endforeach()

# Files that are odd but good.
set(range_options --pitch-x 0.5 --pitch-y 0.2 --z-scale 0.01)
trace(png ${scans}/range.png ${range_options})
trace(tiff ${scans}/range.tiff ${range_options})
if(NOT png STREQUAL tiff OR NOT png MATCHES "jump rise +60 +60 +1\n")
  message(SEND_ERROR "the ridge is not traced:\n${png}\n${tiff}")
endif()
trace(wild ${scans}/wild.tiff ${range_options})
trace(turned ${scans}/range.png --axes swap)
trace(distance ${scans}/range.png --z-is-distance ${range_options})
trace(negative ${scans}/range.png --z-scale -1 --z-offset 6000)
trace(flat ${scans}/flat.tiff)

turn_down("no such file" ${scans}/missing.tiff)
turn_down("not a file" ${scans})
foreach(name IN ITEMS short.png short.tiff stub.tiff text.tiff empty.tiff)
  turn_down("${name}': no image, or damaged" ${scans}/${name})
endforeach()
foreach(name IN ITEMS grey8.png colour8.png colour16.png)
  turn_down("its pixels are" ${scans}/${name})
endforeach()
foreach(name IN ITEMS one_pixel.tiff one_line.tiff one_column.tiff same_place.tiff)
  turn_down("too small" ${scans}/${name})
endforeach()
turn_down("no measurement" ${scans}/holes.tiff)
turn_down("no measurement" ${scans}/range.png --z-scale -1)
turn_down("a million units" ${scans}/steep.tiff)

foreach(value IN ITEMS -1 0 nan inf abc 1e300)
  turn_down("--scale" --scale ${value})
endforeach()
turn_down("--corner-angle" --corner-angle 181)
turn_down("--smooth-window" --smooth-window 0)
turn_down("--threads" --threads 0)
turn_down("--axes" --axes sideways)
turn_down("--line: the scan has lines 0 to 59" ${scans}/range.png --line 60)
turn_down("--nonsense" --nonsense)
turn_down("--out" --out)
turn_down("cannot make the folder" --out ${scans}/text.tiff/pictures)
turn_down("cannot write" ${scans}/range.png --save-scan ${scans}/missing/scan.tiff)
